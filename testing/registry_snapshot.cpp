// Saves HKLM\Software and HKCU\Software into the files machine.reg and user.reg of the folder that is named:
// in a tenth of the time that an export takes. The system's own format, which under Wine is text.
#include "platform/process.h"
#include "platform/win32/win32_api.h"

namespace {

bool mayReadEverything() {
    const platform::TokenHandle token = platform::openProcessToken(platform::kTokenAdjustPrivileges);
    std::uint64_t privilege = 0;
    return token && platform::lookupPrivilege(u"SeBackupPrivilege", privilege).succeeded() &&
           platform::adjustTokenPrivilege(token, privilege, platform::kPrivilegeEnabled).succeeded();
}

LSTATUS save(HKEY root, const std::wstring& file) {
    HKEY key = nullptr;
    if (const LSTATUS error = RegOpenKeyExW(root, L"Software", 0, KEY_READ, &key); error != ERROR_SUCCESS)
        return error;
    const LSTATUS error = RegSaveKeyW(key, file.c_str(), nullptr);
    RegCloseKey(key);
    return error;
}

}  // namespace

int main(int, char** arguments) {
    const std::string folder = arguments[1];
    const std::wstring place(folder.begin(), folder.end());
    if (!mayReadEverything())
        return 1;
    const LSTATUS machine = save(HKEY_LOCAL_MACHINE, place + L"\\machine.reg");
    const LSTATUS user = save(HKEY_CURRENT_USER, place + L"\\user.reg");
    return machine != ERROR_SUCCESS ? machine : user;
}
