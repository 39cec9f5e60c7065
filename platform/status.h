// How an operation of the machine ended (source: the system's winerror list).
#pragma once

#include <cstdint>

namespace platform {

/// The numbers that the ports name. Others occur on real machines and are passed through as they come, those of the
/// component object model (0x8...) among them. A status is no exit code and no number of an error: `Number` makes one.
enum class Status : std::uint32_t {
  Ok = 0,
  FileNotFound = 2,
  PathNotFound = 3,
  AccessDenied = 5,
  InvalidHandle = 6,
  NotReady = 21,
  SharingViolation = 32,
  FileExists = 80,
  InvalidParameter = 87,
  DiskFull = 112,
  CallNotImplemented = 120,
  FolderNotEmpty = 145,
  AlreadyExists = 183,
  BadProgramFormat = 193,
  PathTooLong = 206,
  MoreData = 234,
  NoMoreItems = 259,
  FolderNameInvalid = 267,
  BadKey = 1010,
  LibraryNotFound = 1157,
  UnknownProduct = 1605,
  UnknownProperty = 1608,
  BadQuerySyntax = 1615,
  PackageOpenFailed = 1619,
};

/// True for the two numbers by which the machine says that a file, folder, key or drive is not there.
/// Every other number but Ok means that the operation failed.
constexpr bool IsNotThere(Status status) {
  return status == Status::FileNotFound || status == Status::PathNotFound;
}

/// The system's number, for messages and for callers that hand it on. Numbers above 0x7fffffff become negative.
constexpr std::int32_t Number(Status status) {
  return static_cast<std::int32_t>(status);
}

}  // namespace platform
