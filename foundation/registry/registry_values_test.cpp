#include <cstdlib>
#include <functional>

#include "foundation/registry/registry_key.h"
#include "testing/registry.h"

namespace owlkit {
namespace {

using namespace test;

using namespace std::string_literals;

TEST_F(RegistryTest, ReadsValuesOfAnyTypeAndForm) {
    constexpr const char* kInvalid = "invalid type";
    const struct Case {
        const char* name;
        std::uint32_t type;
        std::string bytes;
        std::string dword;  // what readDword answers, then the other two
        std::string qword;
        std::string text;
    } cases[] = {
        {"dword 42", 4, "\x2A\0\0\0"s, "42", "42", "42"},
        {"dword of ones", 4, "\xFF\xFF\xFF\xFF", "-1", "-1", "-1"},
        {"short dword", 4, "\x01\x02", "failed", "failed", "failed"},
        {"long dword", 4, "\x01\0\0\0\0"s, "failed", "failed", "failed"},
        {"qword -1", 11, std::string(8, '\xFF'), "-1", "-1", "-1"},
        {"largest dword", 11, "\xFF\xFF\xFF\x7F\0\0\0\0"s, "2147483647", "2147483647", "2147483647"},
        {"too large", 11, "\0\0\0\x80\0\0\0\0"s, "range error", "2147483648", "2147483648"},
        {"too small", 11, "\0\0\0\0\xFF\xFF\xFF\xFF"s, "range error", "-4294967296", "-4294967296"},
        {"text", 1, "a\0b\0\0\0"s, kInvalid, kInvalid, "ab"},
        {"text without NUL", 1, "a\0b\0"s, kInvalid, kInvalid, "ab"},
        {"text with two NULs", 1, "a\0\0\0\0\0"s, kInvalid, kInvalid, "a\0"s},
        {"text of odd size", 1, "a\0b\0c"s, kInvalid, kInvalid, "ab"},
        {"text of one byte", 2, "a", kInvalid, kInvalid, ""},
        {"empty text", 1, "", kInvalid, kInvalid, ""},
        {"multi-string", 7, "a\0\0\0b\0\0\0\0\0"s, kInvalid, kInvalid, "a\0b\0"s},
        {"binary", 3, "a\0"s, kInvalid, kInvalid, kInvalid},
        {"big-endian dword", 5, "\0\0\0\x2A"s, kInvalid, kInvalid, kInvalid},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.name);
        putRaw(row.type, row.bytes.data(), row.bytes.size());
        EXPECT_EQ(outcome([&] { return key.readDword(u"v"); }), row.dword);
        EXPECT_EQ(outcome([&] { return key.readQword(u"v"); }), row.qword);
        EXPECT_EQ(outcome([&] { return key.readString(u"v"); }), row.text);
    }
    putRaw(platform::kRegSz, "a\0b\0c", 5);
    const std::u16string odd = key.readString(u"v");
    EXPECT_EQ(odd.c_str()[2], u'\0') << "the odd byte lies over the end of the text";
    EXPECT_EQ(outcome([&] { return key.readDword(u"none"); }), "not found");
    EXPECT_EQ(outcome([&] { return key.readBinary(u"none", nullptr, 0); }), "not found");
}

TEST_F(RegistryTest, SplitsMultiStringsAtEveryNul) {
    using Items = std::vector<std::u16string>;
    const struct Case {
        const char* name;
        std::u16string stored;
        Items items;
    } cases[] = {{"regular", u"a\0\0b\0\0"s, {u"a", u"", u"b"}},
                 {"no final NUL", u"a\0b"s, {u"a", u"b"}},
                 {"empty list", u"\0"s, {}},
                 {"one empty item", u"\0\0"s, {u""}},
                 {"nothing", u"", {}}};
    Items items{u"old"};
    for (const Case& row : cases) {
        SCOPED_TRACE(row.name);
        putRaw(platform::kRegMultiSz, row.stored.data(), row.stored.size() * 2);
        EXPECT_EQ(key.readMultiString(u"v", items), row.items.size());
        EXPECT_EQ(items, row.items);
        key.writeMultiString(u"v", row.items);
        key.readMultiString(u"v", items);
        EXPECT_EQ(items, row.items);
    }
    items = {u"old"};
    EXPECT_EQ(outcome([&] { key.readMultiString(u"none", items); }), "not found");
    EXPECT_TRUE(items.empty());
}

TEST_F(RegistryTest, WritesWithinTheLimits) {
    const auto text = [](std::size_t length) { return std::u16string(length, u'x'); };
    const std::string bytes(16384, 'b');
    const struct Case {
        std::function<void()> write;
        std::uint32_t size = 0;  // of the stored value; 0 when it is refused
        RegistryValueType type = RegistryValueType::None;
    } cases[] = {{[&] { key.writeQword(u"v", 1); }, 8, RegistryValueType::Qword},
                 {[&] { key.writeString(u"v", text(8190)); }, 16382, RegistryValueType::String},
                 {[&] { key.writeString(u"v", text(8191)); }},
                 {[&] { key.writeExpandableString(u"v", u""); }, 2, RegistryValueType::ExpandableString},
                 {[&] { key.writeMultiString(u"v", {text(8189)}); }, 16382, RegistryValueType::MultiString},
                 {[&] { key.writeMultiString(u"v", {text(8190)}); }},
                 {[&] { key.writeBinary(u"v", bytes.data(), 16383); }, 16383, RegistryValueType::Binary},
                 {[&] { key.writeBinary(u"v", bytes.data(), 16384); }},
                 {[&] { key.writeBinary(u"v", nullptr, 0); }}};
    for (const Case& row : cases) {
        SCOPED_TRACE(&row - cases);
        static_cast<void>(key.deleteValue(u"v"));  // of the row before, if it was written
        EXPECT_EQ(outcome(row.write), row.size != 0 ? "" : "invalid size");
        ASSERT_EQ(key.valueExists(u"v"), row.size != 0);
        EXPECT_EQ(row.size != 0 ? key.valueSize(u"v") : 0, row.size);
        EXPECT_EQ(row.size != 0 ? key.valueType(u"v") : RegistryValueType::None, row.type);
    }
    EXPECT_EQ(outcome([&] { key.writeBinary(u"v", nullptr, 5); }), "invalid pointer");
}

TEST_F(RegistryTest, ReadsBinaryIntoTheRoomGiven) {
    std::string buffer = "....";
    putRaw(platform::kRegBinary, "abc", 3);
    for (const std::uint32_t room : {3U, 4U})
        EXPECT_EQ(key.readBinary(u"v", buffer.data(), room), 3U);
    EXPECT_EQ(buffer, "abc.");
    EXPECT_EQ(outcome([&] { key.readBinary(u"v", buffer.data(), 2); }), "invalid size");
    EXPECT_EQ(outcome([&] { key.readBinary(u"v", nullptr, 2); }), "invalid pointer");
    putRaw(platform::kRegBinary, "", 0);
    EXPECT_EQ(key.readBinary(u"v", buffer.data(), 4), 0U);
}

TEST_F(RegistryTest, ExpandsWhatFits) {
    const std::string value = std::getenv("PATH");
    const std::u16string expansion(value.begin(), value.end());
    const std::u16string fill(16382 - expansion.size(), u'x');
    const std::u16string fits = u"%Path%" + fill;
    const auto read = [&](std::uint32_t type, const std::u16string& text) {
        putRaw(type, text.c_str(), text.size() * 2 + 2);
        return key.readExpandedString(u"v");
    };
    EXPECT_EQ(read(platform::kRegExpandSz, u"%NMSHELL_NONE%%PATH%%"), u"%NMSHELL_NONE%" + expansion + u"%");
    EXPECT_EQ(read(platform::kRegSz, u"%PATH%"), u"%PATH%");
    EXPECT_EQ(read(platform::kRegExpandSz, fits), expansion + fill);
    EXPECT_EQ(read(platform::kRegExpandSz, fits + u"x"), fits + u"x");
    EXPECT_EQ(RegistryKey::readStringOr(kUser, kTestPath, u"none", u"<%PATH%>"), u"<" + expansion + u">");
    EXPECT_EQ(RegistryKey::readStringOr(kUser, kTestPath + u"\\none", u"v", fits), expansion + fill);
    EXPECT_EQ(RegistryKey::readStringOr(kUser, kTestPath, u"none", fits + u"x"), fits + u"x");
    const std::u16string shrinks = u"%PATH%%" + std::u16string(16384, u'x');  // too long to be tried
    EXPECT_EQ(RegistryKey::readStringOr(kUser, kTestPath, u"none", shrinks), shrinks);
    putRaw(platform::kRegBinary, "a", 1);  // a read that throws
    EXPECT_EQ(RegistryKey::readStringOr(kUser, kTestPath, u"v", u"%PATH%"), u"%PATH%");
}

}  // namespace
}  // namespace owlkit
