// Stands in for a class of GoogleTest that needs std::mutex, which the win32 thread model lacks. GoogleTest itself
// never waits on it: only threads of its own tests do.
#pragma once

namespace testing::internal {

class Notification {
 public:
  void Notify() {}
  void WaitForNotification() {}
};

}  // namespace testing::internal
