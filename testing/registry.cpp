#include "testing/registry.h"

namespace test {

using namespace owlkit;

namespace {

void removeTree(const std::u16string& path) {
    RegistryKey tree;
    if (!tree.open(kUser, path, RegistryMode::ReadOnly))
        return;
    while (tree.subkeyCount() > 0)
        removeTree(path + u"\\" + tree.subkeyName(0));
    EXPECT_TRUE(tree.deleteKey(kUser, path));
}

}  // namespace

RegistryTest::RegistryTest() {
    removeTree(kTestPath);
    EXPECT_TRUE(key.create(kUser, kTestPath));
}

RegistryTest::~RegistryTest() {
    removeTree(kTestPath);
}

void RegistryTest::putRaw(std::uint32_t type, const void* data, std::size_t size) {
    // What follows the data must not be a NUL: the platform would take it along as the missing end of a text.
    const std::string bytes = std::string(static_cast<const char*>(data), size) + "##";
    platform::RegistryHandle handle;
    ASSERT_EQ(platform::openKey(platform::predefinedKey(platform::kHkeyCurrentUser), kTestPath, 0,
                                platform::kKeyWrite, handle),
              platform::kSuccess);
    ASSERT_EQ(platform::setValue(handle.get(), u"v", type, bytes.data(), static_cast<std::uint32_t>(size)),
              platform::kSuccess);
}

}  // namespace test
