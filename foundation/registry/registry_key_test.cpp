#include "foundation/registry/registry_key.h"

#include <cstdlib>
#include <functional>

#include "testing/registry.h"

namespace owlkit {
namespace {

using namespace test;
using namespace std::string_literals;

TEST_F(RegistryTest, NamesOfRoots) {
    EXPECT_EQ(RegistryKey::rootName(RegistryRoot::CurrentConfig), u"HKKEY_CURRENT_CONFIG");
    EXPECT_EQ(RegistryKey::rootName(static_cast<RegistryRoot>(6)), u"");
}

TEST_F(RegistryTest, RefusesPathsAndNames) {
    using enum RegistryMode;
    key.writeDword(u"v", 1);
    // The platform would take what stands before the zero: another key, another value.
    const std::u16string zero = kTestPath + std::u16string(u"\0x", 2), name(u"v\0x", 3);
    EXPECT_EQ(outcome([&] { return key.create(kUser, zero); }), "0");
    EXPECT_EQ(outcome([&] { return key.valueExists(name); }), "0");
    EXPECT_EQ(outcome([&] { return key.valueSize(name); }), "not found");
    EXPECT_EQ(outcome([&] { return key.readDword(name); }), "not found");
    EXPECT_EQ(outcome([&] { key.writeDword(name, 2); }), "failed");
    EXPECT_EQ(outcome([&] { return key.deleteValue(name); }), "0");
    EXPECT_EQ(platform::deleteKey(platform::predefinedKey(platform::kHkeyCurrentUser), zero),
              platform::kErrorInvalidName);
    const std::u16string longest(254, u'x'), tooLong(255, u'x');
    for (const std::u16string& path : {zero, longest, tooLong}) {
        SCOPED_TRACE(path.size());
        const char* const answer = path == tooLong ? "invalid argument" : "0";
        EXPECT_EQ(outcome([&] { return key.open(kUser, path, ReadWrite); }), answer);
        EXPECT_EQ(outcome([&] { return key.exists(kUser, path); }), answer);
        EXPECT_EQ(outcome([&] { return key.isWritable(kUser, path); }), answer);
        EXPECT_EQ(outcome([&] { return key.deleteKey(kUser, path); }), answer);
        EXPECT_EQ(outcome([&] { return key.create(RegistryRoot::None, path); }), answer);
        EXPECT_EQ(RegistryKey::readDwordOr(kUser, path, u"v", -7), -7) << "throws nothing";
    }
    EXPECT_EQ(outcome([&] { return key.create(kUser, u""); }), "invalid argument");
    EXPECT_EQ(key.path(), kTestPath) << "what fails leaves the open key as it is";
    EXPECT_EQ(key.readDword(u"v"), 1);
    EXPECT_TRUE(key.open(kUser, u"", ReadOnly));
    EXPECT_FALSE(key.open(RegistryRoot::None, u"", ReadOnly));
}

TEST_F(RegistryTest, OperationsAskForTheRightState) {
    RegistryKey closed, readOnly;
    ASSERT_TRUE(readOnly.open(kUser, kTestPath, RegistryMode::ReadOnly));
    const std::u16string tooLong(9000, u'x');
    for (RegistryKey* const k : {&closed, &readOnly}) {
        const char* const error = k == &closed ? "invalid state" : "read-only error";
        EXPECT_EQ(outcome([&] { return k->clear(); }), error);
        EXPECT_EQ(outcome([&] { return k->flush(); }), error);
        EXPECT_EQ(outcome([&] { return k->deleteValue(u"n"); }), error);
        EXPECT_EQ(outcome([&] { k->writeDword(u"n", 2); }), error);
        EXPECT_EQ(outcome([&] { k->writeString(u"n", tooLong); }), error);
        EXPECT_EQ(outcome([&] { k->writeMultiString(u"n", {tooLong}); }), error);
        EXPECT_EQ(outcome([&] { k->writeBinary(u"n", nullptr, 5); }), error);
    }
    EXPECT_EQ(outcome([&] { closed.valueExists(u"n"); }), "invalid state");
    EXPECT_EQ(outcome([&] { closed.readBinary(u"n", nullptr, 0); }), "invalid state");
    EXPECT_EQ(outcome([&] { closed.subkeyName(-1); }), "invalid state");
    EXPECT_EQ(key.valueCount(), 0);
}

TEST_F(RegistryTest, MovesAndSwapsExchangeKeysButNotViews) {
    RegistryKey other;
    other.setView(RegistryView::Bits64);
    other.swap(key);
    EXPECT_EQ(key.state(), KeyAccessState::Closed);
    EXPECT_EQ(key.root(), RegistryRoot::None);
    EXPECT_EQ(key.view(), RegistryView::Default);
    EXPECT_EQ(other.path(), kTestPath);
    EXPECT_EQ(other.view(), RegistryView::Bits64);
    other.setView(RegistryView::Bits64);
    key = std::move(other);
    EXPECT_TRUE(key.flush());
    key.setView(RegistryView::Bits64);
    EXPECT_EQ(key.state(), KeyAccessState::Closed);
}

TEST_F(RegistryTest, DeletesAndClearsKeysWithoutSubkeys) {
    const std::u16string below = kTestPath + u"\\Below";
    ASSERT_TRUE(key.create(kUser, below));
    EXPECT_FALSE(key.deleteKey(kUser, kTestPath));
    EXPECT_TRUE(key.deleteKey(kUser, kTestPath + u"\\BELOW"));
    EXPECT_EQ(key.state(), KeyAccessState::ReadWrite) << "another spelling is another path";
    ASSERT_TRUE(key.create(kUser, below));
    EXPECT_TRUE(key.exists(kUser, below));
    EXPECT_TRUE(key.isWritable(kUser, below));
    EXPECT_TRUE(key.deleteKey(key.root(), key.path()));
    EXPECT_EQ(key.state(), KeyAccessState::Closed);
    EXPECT_FALSE(key.exists(kUser, below));
    EXPECT_FALSE(key.deleteKey(kUser, below));
    ASSERT_TRUE(key.create(kUser, kTestPath));
    key.writeDword(u"gone", 1);
    EXPECT_TRUE(key.clear());
    EXPECT_EQ(key.valueCount(), 0);
    ASSERT_TRUE(RegistryKey::writeDword(kUser, below, u"", 1));
    EXPECT_FALSE(key.clear());
    EXPECT_EQ(key.state(), KeyAccessState::Closed);
}

TEST_F(RegistryTest, ListsSubkeysAndValues) {
    for (const char16_t* name : {u"\\b", u"\\A", u"\\c"})
        ASSERT_TRUE(RegistryKey::writeDword(kUser, kTestPath + name, u"", 1));
    const std::u16string longest(254, u'v');
    key.writeDword(u"Kept Case", 1);
    key.writeDword(longest, 2);
    ASSERT_EQ(key.subkeyCount(), 3);
    EXPECT_EQ(key.subkeyName(0) + key.subkeyName(1) + key.subkeyName(2), u"Abc");
    EXPECT_EQ(key.valueName(0) + key.valueName(1), u"Kept Case" + longest);
    for (const std::int32_t index : {-1, 3}) {
        EXPECT_EQ(outcome([&] { key.subkeyName(index); }), "invalid index");
        EXPECT_EQ(outcome([&] { key.valueName(index); }), "invalid index");
    }
    EXPECT_TRUE(key.deleteValue(u"KEPT CASE"));
    EXPECT_FALSE(key.deleteValue(u"KEPT CASE"));
    key.writeDword(longest + u"v", 3);
    EXPECT_EQ(outcome([&] { key.valueName(1); }), "failed");
}

TEST_F(RegistryTest, HelpersMakeKeysForWritesAndTypesOnly) {
    using Key = RegistryKey;
    const std::u16string path = kTestPath + u"\\deep\\er";
    EXPECT_EQ(Key::readDwordOr(kUser, path, u"v", -7), -7);
    EXPECT_FALSE(Key::deleteValue(kUser, path, u"v"));
    EXPECT_FALSE(key.exists(kUser, path));
    EXPECT_EQ(outcome([&] { Key::valueType(kUser, path, u"v"); }), "not found");
    EXPECT_TRUE(key.exists(kUser, path));
    EXPECT_TRUE(Key::writeQword(kUser, path, u"v", 0x80000000));
    EXPECT_EQ(Key::readQwordOr(kUser, path, u"v", 0), 0x80000000);
    EXPECT_EQ(Key::readDwordOr(kUser, path, u"v", -7), -7) << "out of its range";
    EXPECT_TRUE(Key::deleteValue(kUser, path, u"v"));
    const std::vector<std::u16string> items = {u"a", u"", u"b"}, none = {u"none"};
    EXPECT_TRUE(Key::writeMultiString(kUser, path, u"m", items));
    EXPECT_EQ(Key::readMultiStringOr(kUser, path, u"m", none), items);
    EXPECT_EQ(Key::readMultiStringOr(kUser, path, u"v", none), none);
    EXPECT_TRUE(Key::writeExpandableString(kUser, path, u"e", u"%x"));
    EXPECT_EQ(Key::valueType(kUser, path, u"e"), RegistryValueType::ExpandableString);
    putRaw(platform::kRegBinary, "a", 1);
    EXPECT_EQ(Key::readMultiStringOr(kUser, kTestPath, u"v", none), none) << "a read that throws";
    EXPECT_FALSE(Key::writeDword(RegistryRoot::None, path, u"v", 1));
    EXPECT_FALSE(Key::writeMultiString(RegistryRoot::None, path, u"m", items));
    EXPECT_FALSE(Key::writeExpandableString(RegistryRoot::None, path, u"e", u"%x"));
}

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
