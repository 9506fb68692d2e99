#include "tests/life_walk/answers.h"

#include <gtest/gtest.h>

namespace nmshell {
namespace {

struct Answer {
    std::string_view operation;
    std::uint32_t mayDiffer;
};

// A selection that cannot be read is an empty one: files and drives add nothing then.
constexpr std::uint32_t kNoSelection = kNoEntries | kWithoutData;

// What a setting's default changes: an approval that cannot be read is none.
constexpr std::uint32_t kDefaultSetting = kNotServed | kOtherLanguage;

constexpr Answer kAnswers[] = {
    // Loading. Without every language file there is no menu, without its folder there are no files.
    {"GetModuleFileNameW", kNotServed},
    {"FindFirstFileW", kNotServed},
    {"FindNextFileW", kNotServed},
    {"ReadFile", kNotServed},
    {"ReadFile, short", kNotServed},
    {"GetCPInfoExW", 0},  // only narrow copies of file names need it
    {"GetLocaleInfoW", kOtherLanguage},
    // The two files that are opened later are the volume and the hand-over file.
    {"CreateFileW", kNotServed | kWithoutData},
    {"GetFileSizeEx", kNotServed | kWithoutData},
    {"DeviceIoControl", 0},
    {"WriteFile", kWithoutData},
    {"WriteFile, short", kWithoutData},
    {"GetTempPathW", kHandoverMoved},
    {"DeleteFileW", 0},  // of a file that is not there
    // Settings.
    {"RegOpenKeyExW", kDefaultSetting},
    {"RegQueryValueExW", kDefaultSetting},
    // The selection.
    {"IDataObject::GetData", kNoSelection},
    {"GlobalLock", kNoSelection},
    {"GlobalSize", kNoSelection},
    {"IShellItemArray::GetCount", kNotServed | kNoEntries | kNoText | kNotStarted},
    {"IShellItemArray::GetItemAt", kNoText | kPathLeftOut | kWithoutData},
    {"IShellItem::GetDisplayName", kNoText | kPathLeftOut | kWithoutData},
    // The menu. A system drive that is not known is no drive's.
    {"GetFileAttributesW", kNoText | kHandoverMoved},
    {"GetWindowsDirectoryW", kOffered},
    {"SHQueryRecycleBinW", kGrayed},
    {"OpenProcessToken", kGrayed},
    {"GetTokenInformation", kGrayed},
    {"CreateMenu", kEntryLost},
    {"InsertMenuItemW", kEntryLost},
    {"GetSystemMetrics", 0},
    {"LoadImageW", kIconLost},
    {"CoTaskMemAlloc", kNoText | kIconLost | kNoHelp},
    // The start.
    {"GetCursorPos", kWithoutCursor},
    {"ShellExecuteW", kNotStarted | kHandoverLeft},
    {"ShellExecuteExW", kNotStarted},
};

}  // namespace

std::uint32_t mayDifferAfter(std::string_view operation) {
    for (const Answer& answer : kAnswers)
        if (answer.operation == operation)
            return answer.mayDiffer;
    ADD_FAILURE() << "what may come of a failing " << operation << "?";
    return 0;
}

std::uint32_t mayDifferAfterAny() {
    std::uint32_t any = 0;
    for (const Answer& answer : kAnswers)
        any |= answer.mayDiffer;
    return any;
}

std::uint32_t mayDifferWithoutMemory() {
    return kNotLoaded | kDefaultSetting | kNoEntries | kNoHelp | kNotStarted | kHandoverLeft;
}

}  // namespace nmshell
