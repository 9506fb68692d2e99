// The names under which Explorer knows the extension.
#pragma once

#include <string_view>

namespace nmshell {

// Class identifiers, one a kind of selection.
inline constexpr std::u16string_view kFileSystemClassId = u"{3D5C9A72-6E1B-4F08-A4C3-91B7E2D05F64}";
inline constexpr std::u16string_view kDriveClassId = u"{C84E10B6-2F7A-4D93-8E15-6A0B3FD7C921}";
inline constexpr std::u16string_view kRecycleBinClassId = u"{7A21E6D3-B94C-4E5F-9D08-13C6A8F4B2E7}";

// In the order of the selection kinds 0 to 2, which is the order of registration too.
inline constexpr std::u16string_view kClassIds[] = {kFileSystemClassId, kDriveClassId, kRecycleBinClassId};

// The root command of the first level of Windows 11's menu, which nmcommand.dll serves.
inline constexpr std::u16string_view kCommandClassId = u"{B1F60D94-52C8-4A37-8E7D-4C90A3D1E6F5}";

// Names every handler key and is the text that approves a class.
inline constexpr std::u16string_view kHandlerName = u"QuietOwl_NMark";

// Under HKEY_LOCAL_MACHINE: approved extensions, a value named by its class identifier for each class.
inline constexpr std::u16string_view kApprovalPath =
    u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Shell Extensions\\Approved";

// Under HKEY_CURRENT_USER: the user's settings.
inline constexpr std::u16string_view kSettingsPath = u"Software\\NMark Shell";

}  // namespace nmshell
