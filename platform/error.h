// How a platform call went. A function that stands for a call with an error code answers a Status and gives
// what it found through its last parameters, which a failure leaves as they were unless its comment says
// otherwise. A text, a list or a handle that is made is the answer itself: on failure a handle is empty and
// an optional holds nothing. Where no caller needs to tell an empty answer from a failure it is plain, and
// empty on failure: localeInfo, moduleFileName, fileVersion, processAccount, finalPath, readDropList.
// (accountName gives back what it was given.) A call whose one number tells both, such as GetFileAttributesW,
// answers that number.
#pragma once

#include <cstdint>

namespace platform {

// A system error code, as GetLastError and the Reg* functions number them; 0 means success. A call that fails
// without a code has another one. That of queryRecycleBin holds the HRESULT of its call.
struct [[nodiscard]] Status {
    std::uint32_t code = 0;

    constexpr bool succeeded() const { return code == 0; }
    friend constexpr bool operator==(Status, Status) = default;
};

inline constexpr Status kSuccess{0};
inline constexpr Status kErrorFileNotFound{2};
inline constexpr Status kErrorPathNotFound{3};
inline constexpr Status kErrorAccessDenied{5};
inline constexpr Status kErrorInvalidHandle{6};
inline constexpr Status kErrorNotEnoughMemory{8};
inline constexpr Status kErrorGeneralFailure{31};
inline constexpr Status kErrorFileExists{80};
inline constexpr Status kErrorInvalidParameter{87};
inline constexpr Status kErrorBrokenPipe{109};
inline constexpr Status kErrorDiskFull{112};
inline constexpr Status kErrorInvalidName{123};
inline constexpr Status kErrorBadPathName{161};
inline constexpr Status kErrorMoreData{234};
inline constexpr Status kErrorNoMoreItems{259};
inline constexpr Status kErrorKeyDeleted{1018};
inline constexpr Status kErrorNotAllAssigned{1300};
inline constexpr Status kErrorNoSuchPrivilege{1313};
inline constexpr Status kErrorInvalidMenuHandle{1401};

}  // namespace platform
