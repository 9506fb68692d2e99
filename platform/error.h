// System error codes, as GetLastError and the Reg* functions number them. Platform functions return one of
// these; 0 means success.
#pragma once

#include <cstdint>

namespace platform {

using ErrorCode = std::uint32_t;

inline constexpr ErrorCode kSuccess = 0;
inline constexpr ErrorCode kErrorFileNotFound = 2;
inline constexpr ErrorCode kErrorPathNotFound = 3;
inline constexpr ErrorCode kErrorAccessDenied = 5;
inline constexpr ErrorCode kErrorInvalidHandle = 6;
inline constexpr ErrorCode kErrorNotEnoughMemory = 8;
inline constexpr ErrorCode kErrorSharingViolation = 32;
inline constexpr ErrorCode kErrorNotSupported = 50;
inline constexpr ErrorCode kErrorFileExists = 80;
inline constexpr ErrorCode kErrorInvalidParameter = 87;
inline constexpr ErrorCode kErrorBrokenPipe = 109;
inline constexpr ErrorCode kErrorDiskFull = 112;
inline constexpr ErrorCode kErrorCallNotImplemented = 120;
inline constexpr ErrorCode kErrorInsufficientBuffer = 122;
inline constexpr ErrorCode kErrorInvalidName = 123;
inline constexpr ErrorCode kErrorMoreData = 234;
inline constexpr ErrorCode kErrorNoMoreItems = 259;
inline constexpr ErrorCode kErrorPrivilegeNotHeld = 1314;

}  // namespace platform
