// The installer's own actions: the steps of nmshell-setup, called from within the package, so that the
// installer runs nothing of the folder that it installs into, and told to the installer's log. Each is a
// deferred action whose data is the folder of the installation.
#include "platform/com.h"

#include <msi.h>
#include <msiquery.h>

#include <exception>
#include <string>

#include "tools/common/text.h"
#include "tools/setup/steps.h"

namespace setup {
namespace {

const wchar_t* native(const std::u16string& text) {
    return reinterpret_cast<const wchar_t*>(text.c_str());
}

class InstallerLog final : public Messages {
  public:
    explicit InstallerLog(MSIHANDLE session) : session_(session) {}

    void tell(const std::string& text) override { send(INSTALLMESSAGE_INFO, text); }
    void complain(const std::string& text) override {
        send(INSTALLMESSAGE_INFO, text);
        complaints_ += complaints_.empty() ? text : "\n" + text;
    }
    // Everything complained of, where there is somebody to read it.
    void show() {
        send(static_cast<INSTALLMESSAGE>(INSTALLMESSAGE_ERROR | MB_OK | MB_ICONERROR), complaints_);
    }

  private:
    void send(INSTALLMESSAGE kind, const std::string& text) {
        const MSIHANDLE record = MsiCreateRecord(1);
        MsiRecordSetStringW(record, 0, L"nmshell: [1]");  // a path in the text may have brackets of its own
        MsiRecordSetStringW(record, 1, native(tools::wide(text)));
        MsiProcessMessage(session_, kind, record);
        MsiCloseHandle(record);
    }

    MSIHANDLE session_;
    std::string complaints_;
};

std::u16string folderOf(MSIHANDLE session) {
    std::u16string folder(32768, u'\0');
    DWORD length = static_cast<DWORD>(folder.size());
    const UINT result =
        MsiGetPropertyW(session, L"CustomActionData", reinterpret_cast<wchar_t*>(folder.data()), &length);
    folder.resize(result == ERROR_SUCCESS ? length : 0);
    return folder;
}

template <class Step>
UINT run(MSIHANDLE session, Step step) noexcept {
    try {
        InstallerLog log(session);
        if (step(log) == Result::Done)
            return ERROR_SUCCESS;
        log.show();
    } catch (const std::exception&) {
    }
    return ERROR_INSTALL_FAILURE;
}

}  // namespace
}  // namespace setup

extern "C" {

__declspec(dllexport) UINT __stdcall CheckFolder(MSIHANDLE session) {
    return setup::run(
        session, [&](setup::Messages& log) { return setup::checkFolder(setup::folderOf(session), log); });
}

__declspec(dllexport) UINT __stdcall Register(MSIHANDLE session) {
    return setup::run(session, [&](setup::Messages& log) {
        return setup::registerModule(setup::folderOf(session), setup::Trial::Headers, log);
    });
}

__declspec(dllexport) UINT __stdcall Unregister(MSIHANDLE session) {
    return setup::run(session, [](setup::Messages& log) { return setup::unregisterModule(log); });
}
}
