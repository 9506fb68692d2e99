#include "foundation/registry/registry_key.h"

#include "testing/registry.h"

namespace owlkit {
namespace {

using namespace test;

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

}  // namespace
}  // namespace owlkit
