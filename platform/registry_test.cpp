#include "platform/registry.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

const std::u16string kPath = u"Software\\nmshell-contract";

KeyRef user() {
    return predefinedKey(kHkeyCurrentUser);
}

void removeTree() {
    for (const char16_t* below : {u"\\B", u"\\C", u""})
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

// Each line is an answer of the system's that the stand-in gives too.
TEST_F(RegistryContract, AnswersWithTheSystemsCodes) {
    const RegistryHandle reader = opened(kKeyRead), writer = opened(kKeySetValue);
    RegistryHandle other;
    ASSERT_EQ(createKey(key.get(), u"B", 0, kKeyAllAccess, other), kSuccess);
    EXPECT_EQ(openKey(user(), kPath + u"\\x", 0, kKeyRead, other), kErrorFileNotFound);
    EXPECT_TRUE(other) << "what fails leaves the key";
    EXPECT_EQ(openKey(nullptr, kPath, 0, kKeyRead, other), kErrorInvalidHandle);
    EXPECT_TRUE(other) << "what fails leaves the key";
    EXPECT_EQ(openKey(key.get(), u"", 0, kKeyRead, other), kSuccess);
    char16_t room[8] = {};
    const auto value = [&](const char16_t* name, void* data, std::uint32_t bytes) {
        return queryValue(key.get(), name, nullptr, data, &bytes);
    };
    EXPECT_EQ(value(u"x", nullptr, 0), kErrorFileNotFound);
    EXPECT_EQ(value(u"vALUE", nullptr, 0), kSuccess);
    EXPECT_EQ(value(u"Value", room, 8), kSuccess);
    EXPECT_EQ(value(u"Value", room, 7), kErrorMoreData);
    EXPECT_EQ(queryValue(key.get(), u"Value", nullptr, room, nullptr), kErrorInvalidParameter);
    const auto name = [&](auto call, const RegistryHandle& in, std::uint32_t index, std::uint32_t units) {
        return call(in.get(), index, room, units);
    };
    EXPECT_EQ(name(enumValue, key, 0, 6), kSuccess) << "with its zero";
    EXPECT_EQ(name(enumValue, key, 0, 5), kErrorMoreData);
    EXPECT_EQ(name(enumValue, key, 1, 8), kErrorNoMoreItems);
    EXPECT_EQ(name(enumKey, key, 0, 2), kSuccess);
    EXPECT_EQ(name(enumKey, key, 0, 1), kErrorMoreData);
    EXPECT_EQ(name(enumKey, key, 1, 8), kErrorNoMoreItems);
    EXPECT_EQ(name(enumKey, writer, 0, 8), kErrorAccessDenied);
    EXPECT_EQ(queryValue(writer.get(), u"Value", nullptr, nullptr, nullptr), kErrorAccessDenied);
    EXPECT_EQ(setValue(reader.get(), u"v", kRegSz, u"", 2), kErrorAccessDenied);
    EXPECT_EQ(deleteValue(reader.get(), u"Value"), kErrorAccessDenied);
    EXPECT_EQ(deleteValue(key.get(), u"x"), kErrorFileNotFound);
    EXPECT_EQ(deleteKey(user(), kPath + u"\\x"), kErrorFileNotFound);
    EXPECT_EQ(deleteKey(user(), kPath), kErrorAccessDenied) << "with a subkey";
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
    EXPECT_EQ(createKey(key.get(), u"C", 0, kKeyRead, below), kSuccess);
    EXPECT_EQ(queryInfoKey(key.get(), &subkeys, &values), kSuccess);
    EXPECT_EQ(subkeys, 1u);
    EXPECT_EQ(values, 1u);
    char16_t name[8] = {};
    std::uint32_t length = 8;
    EXPECT_EQ(enumValue(key.get(), 0, name, length), kSuccess);
    EXPECT_EQ(std::u16string(name, length), u"Value");
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
