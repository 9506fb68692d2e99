#include "platform/registry.h"

#include <gtest/gtest.h>

#include <functional>

namespace platform {
namespace {

const std::u16string kPath = u"Software\\nmshell-contract";

KeyRef user() {
    return predefinedKey(kHkeyCurrentUser);
}

void removeTree() {
    for (const char16_t* below : {u"\\B", u"\\a", u"\\C", u""})
        static_cast<void>(deleteKey(user(), kPath + below));
}

class RegistryContract : public testing::Test {
  protected:
    RegistryContract() {
        removeTree();
        EXPECT_EQ(createKey(user(), kPath, 0, kKeyAllAccess, key), kSuccess);
        EXPECT_EQ(setValue(key.get(), u"Value", kRegSz, u"abc", 8), kSuccess);
    }
    ~RegistryContract() override { removeTree(); }

    RegistryHandle opened(std::uint32_t access) {
        RegistryHandle handle;
        EXPECT_EQ(openKey(user(), kPath, 0, access, handle), kSuccess);
        return handle;
    }

    RegistryHandle key;
};

// Each row is an answer of the system's that the stand-in gives too.
TEST_F(RegistryContract, AnswersWithTheSystemsCodes) {
    RegistryHandle other;
    char16_t room[8] = {};
    const RegistryHandle reader = opened(kKeyRead), writer = opened(kKeySetValue);
    ASSERT_EQ(createKey(key.get(), u"B", 0, kKeyAllAccess, other), kSuccess);
    const auto size = [&](const char16_t* name, void* data, std::uint32_t bytes) {
        return queryValue(key.get(), name, nullptr, data, &bytes);
    };
    const auto name = [&](auto call, std::uint32_t index, std::uint32_t units) {
        return call(key.get(), index, room, units);
    };
    const struct Case {
        const char* name;
        Status expected;
        std::function<Status()> call;
    } cases[] = {
        {"missing key", kErrorFileNotFound,
         [&] { return openKey(user(), kPath + u"\\x", 0, kKeyRead, other); }},
        {"empty path", kSuccess, [&] { return openKey(key.get(), u"", 0, kKeyRead, other); }},
        {"no parent", kErrorInvalidHandle, [&] { return openKey(nullptr, kPath, 0, kKeyRead, other); }},
        {"missing value", kErrorFileNotFound, [&] { return size(u"x", nullptr, 0); }},
        {"other letter case", kSuccess, [&] { return size(u"vALUE", nullptr, 0); }},
        {"exact room", kSuccess, [&] { return size(u"Value", room, 8); }},
        {"little room", kErrorMoreData, [&] { return size(u"Value", room, 7); }},
        {"data without a size", kErrorInvalidParameter,
         [&] { return queryValue(key.get(), u"Value", nullptr, room, nullptr); }},
        {"write by a reader", kErrorAccessDenied,
         [&] { return setValue(reader.get(), u"v", kRegSz, u"", 2); }},
        {"delete by a reader", kErrorAccessDenied, [&] { return deleteValue(reader.get(), u"Value"); }},
        {"read by a writer", kErrorAccessDenied,
         [&] { return queryValue(writer.get(), u"Value", nullptr, nullptr, nullptr); }},
        {"list by a writer", kErrorAccessDenied,
         [&] {
             std::uint32_t length = 8;
             return enumKey(writer.get(), 0, room, length);
         }},
        {"delete no value", kErrorFileNotFound, [&] { return deleteValue(key.get(), u"x"); }},
        {"delete no key", kErrorFileNotFound, [&] { return deleteKey(user(), kPath + u"\\x"); }},
        {"delete a key with subkeys", kErrorAccessDenied, [&] { return deleteKey(user(), kPath); }},
        {"value name with its zero", kSuccess, [&] { return name(enumValue, 0, 6); }},
        {"value name without room for it", kErrorMoreData, [&] { return name(enumValue, 0, 5); }},
        {"no second value", kErrorNoMoreItems, [&] { return name(enumValue, 1, 8); }},
        {"subkey name", kSuccess, [&] { return name(enumKey, 0, 2); }},
        {"subkey name without room", kErrorMoreData, [&] { return name(enumKey, 0, 1); }},
        {"no second subkey", kErrorNoMoreItems, [&] { return name(enumKey, 1, 8); }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(c.call().code, c.expected.code);
        EXPECT_TRUE(other);
    }
}

TEST_F(RegistryContract, GivesSizesTypesAndNames) {
    std::uint32_t type = kRegNone, size = 3, subkeys = 9, values = 9;
    char16_t small = u'#';
    EXPECT_EQ(queryValue(key.get(), u"Value", &type, &small, &size), kErrorMoreData);
    EXPECT_EQ(size, 8u);
    EXPECT_EQ(type, kRegSz);
    EXPECT_EQ(setValue(key.get(), u"VALUE", 99, nullptr, 0), kSuccess);  // any type; the name stays as it was
    EXPECT_EQ(queryValue(key.get(), u"Value", &type, nullptr, &size), kSuccess);
    EXPECT_EQ(size, 0u);
    EXPECT_EQ(type, 99u);
    RegistryHandle below;
    for (const char16_t* name : {u"C", u"a", u"B"})
        EXPECT_EQ(createKey(key.get(), name, 0, kKeyRead, below), kSuccess);
    EXPECT_EQ(queryInfoKey(key.get(), &subkeys, &values), kSuccess);
    EXPECT_EQ(subkeys, 3u);
    EXPECT_EQ(values, 1u);
    std::u16string listed;
    char16_t name[8] = {};
    std::uint32_t length = 8;
    EXPECT_EQ(enumValue(key.get(), 0, name, length), kSuccess);
    listed.append(name, length);
    for (std::uint32_t index = 0; index < 3; ++index) {
        length = 8;
        EXPECT_EQ(enumKey(key.get(), index, name, length), kSuccess);
        listed.append(u" ").append(name, length);
    }
    EXPECT_EQ(listed, u"Value a B C");
}

TEST_F(RegistryContract, AKeyThatIsDeletedIsGoneForItsHandles) {
    ASSERT_EQ(deleteKey(user(), kPath), kSuccess);
    EXPECT_EQ(queryValue(key.get(), u"Value", nullptr, nullptr, nullptr).code, kErrorKeyDeleted.code);
    EXPECT_EQ(setValue(key.get(), u"Value", kRegSz, u"", 2).code, kErrorKeyDeleted.code);
}

TEST(Registry, ExpandsIntoTheRoomGiven) {
    char16_t room[8] = u"#######";
    EXPECT_EQ(expandEnvironmentStrings(u"ab%c", room, 5), 5u);
    EXPECT_EQ(std::u16string(room), u"ab%c");
    EXPECT_EQ(expandEnvironmentStrings(u"longer", room, 5), 7u);
    EXPECT_EQ(expandEnvironmentStrings(std::u16string(u"a\0b", 3), room, 8), 2u);
}

}  // namespace
}  // namespace platform
