// The machine's status numbers, as the port methods return them (source: the system's winerror list).
#pragma once

#include <cstdint>

namespace platform {

using Status = std::uint32_t;

namespace status {
inline constexpr Status Ok = 0;
inline constexpr Status FileNotFound = 2;
inline constexpr Status PathNotFound = 3;
inline constexpr Status AccessDenied = 5;
inline constexpr Status InvalidHandle = 6;
inline constexpr Status NotReady = 21;
inline constexpr Status SharingViolation = 32;
inline constexpr Status FileExists = 80;
inline constexpr Status InvalidParameter = 87;
inline constexpr Status DiskFull = 112;
inline constexpr Status CallNotImplemented = 120;
inline constexpr Status FolderNotEmpty = 145;
inline constexpr Status AlreadyExists = 183;
inline constexpr Status BadProgramFormat = 193;
inline constexpr Status PathTooLong = 206;
inline constexpr Status MoreData = 234;
inline constexpr Status NoMoreItems = 259;
inline constexpr Status FolderNameInvalid = 267;
inline constexpr Status BadKey = 1010;
inline constexpr Status LibraryNotFound = 1157;
inline constexpr Status UnknownProduct = 1605;
inline constexpr Status UnknownProperty = 1608;
inline constexpr Status PackageOpenFailed = 1619;
inline constexpr Status BadQuerySyntax = 1615;
}  // namespace status

/// True for the two numbers by which the machine says that a file, folder, key or drive is not there.
/// Every other number but Ok means that the operation failed.
constexpr bool isNotThere(Status s) {
  return s == status::FileNotFound || s == status::PathNotFound;
}

}  // namespace platform
