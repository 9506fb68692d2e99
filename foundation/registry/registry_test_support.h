// What the tests of the registry share: a key of their own under HKEY_CURRENT_USER, gone before and after
// each test.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "foundation/registry/registry_key.h"

namespace owlkit {

inline const std::u16string kTestPath = u"Software\\nmshell-tests";
inline constexpr RegistryRoot kUser = RegistryRoot::CurrentUser;

// What `action` gives as narrow text, "" for nothing, or the text of the error it throws.
template <class Action>
std::string outcome(Action action) {
    try {
        if constexpr (requires { std::to_string(action()); }) {
            return std::to_string(action());
        } else if constexpr (requires { action().size(); }) {
            const std::u16string text = action();
            return std::string(text.begin(), text.end());
        } else {
            action();
            return "";
        }
    } catch (const std::exception& error) {
        return error.what();
    }
}

class RegistryTest : public ::testing::Test {
  protected:
    RegistryTest() {
        removeTree(kTestPath);
        EXPECT_TRUE(key.create(kUser, kTestPath));
    }
    ~RegistryTest() override { removeTree(kTestPath); }

    static void removeTree(const std::u16string& path) {
        RegistryKey tree;
        if (!tree.open(kUser, path, RegistryMode::ReadOnly))
            return;
        while (tree.subkeyCount() > 0)
            removeTree(path + u"\\" + tree.subkeyName(0));
        tree.deleteKey(kUser, path);
    }

    // Stores any bytes under any type in the value "v", as RegistryKey would not.
    static void putRaw(std::uint32_t type, const void* data, std::size_t size) {
        // What follows the data must not be a NUL: the platform would take it along as the missing end of a
        // text.
        const std::string bytes = std::string(static_cast<const char*>(data), size) + "##";
        platform::RegistryHandle handle;
        platform::openKey(platform::predefinedKey(platform::kHkeyCurrentUser), kTestPath, 0,
                          platform::kKeyWrite, handle);
        ASSERT_EQ(
            platform::setValue(handle.get(), u"v", type, bytes.data(), static_cast<std::uint32_t>(size)), 0U);
    }

    RegistryKey key;  // open for writing on kTestPath
};

}  // namespace owlkit
