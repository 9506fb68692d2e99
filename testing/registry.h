// For tests of the registry: a key of their own under HKEY_CURRENT_USER, gone before and after each test.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "foundation/registry/registry_key.h"
#include "testing/errors.h"

namespace test {

inline const std::u16string kTestPath = u"Software\\nmshell-tests";
inline constexpr owlkit::RegistryRoot kUser = owlkit::RegistryRoot::CurrentUser;

class RegistryTest : public testing::Test {
  protected:
    RegistryTest();
    ~RegistryTest() override;

    // Stores any bytes under any type in the value "v", as RegistryKey would not.
    static void putRaw(std::uint32_t type, const void* data, std::size_t size);

    owlkit::RegistryKey key;  // open for writing on kTestPath
};

}  // namespace test
