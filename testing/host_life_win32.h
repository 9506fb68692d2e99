// What is compared before and after lives of a module in this process.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <iostream>

#include "comserver/identifiers.h"
#include "platform/com.h"
#include "testing/footprint_win32.h"
#include "testing/module_faults_win32.h"
#include "tools/rightclick/com_pointer.h"
#include "tools/rightclick/shell_selection_win32.h"

namespace dll_tests {

using platform::wide;
using rightclick::ComPointer;
using rightclick::receive;

inline constexpr const wchar_t* kModule = L"nmshell.dll";

inline void setSetting(const wchar_t* name, DWORD type, const std::string& bytes) {
    const std::u16string path(nmshell::kSettingsPath);
    EXPECT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, wide(path), name, type, bytes.data(),
                              static_cast<DWORD>(bytes.size())),
              ERROR_SUCCESS);
}

class HostLife : public ::testing::Test {
  protected:
    HostLife() {
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
        RegDeleteTreeW(HKEY_CURRENT_USER, wide(std::u16string(nmshell::kSettingsPath)));
    }
    ~HostLife() override {
        EXPECT_EQ(GetModuleHandleW(kModule), nullptr);
        CoUninitialize();
    }

    // Runs `life` a few times, for what the system itself keeps, and then compares what is held before and
    // after it.
    static void expectNothingLost(int times, const std::function<void()>& life, int warmUp = 6) {
        for (int i = 0; i < warmUp; ++i)
            life();
        const Footprint before = Footprint::now();
        faults.thrown = 0;
        for (int i = 0; i < times && !HasFailure(); ++i)
            life();
        const Footprint after = Footprint::now();
        EXPECT_EQ(after, before);
        std::cout << times << " times: " << after << ", " << faults.thrown << " exceptions\n";
    }
};

}  // namespace dll_tests
