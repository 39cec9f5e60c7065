// Keeps the system from asking a person for a disc while a drive is looked at; the caller gets the status instead.
// Only for the time of one call: started programs inherit the mode.
#pragma once

#include "platform/win32/windows_api.h"

namespace win32 {

class QuietErrors {
 public:
  QuietErrors() : before_(SetErrorMode(SEM_FAILCRITICALERRORS)) {}
  ~QuietErrors() { SetErrorMode(before_); }
  QuietErrors(const QuietErrors&) = delete;
  QuietErrors& operator=(const QuietErrors&) = delete;

 private:
  UINT before_;
};

}  // namespace win32
