#include "core/await.h"

#include "core/end_wanted.h"

namespace assistant {
namespace {

constexpr int LongestWait = 120;  // seconds
constexpr std::uint32_t OneSecond = 1000;

}  // namespace

bool IsThereInTime(const Run& run, const Procedure& here, const std::string& what,
                   const std::function<bool()>& isThere) {
  if (isThere()) return true;
  if (run.state.kind != RunKind::Resumed) return false;
  const std::string text = what + " is not there yet and is looked for every second for up to two minutes. Put its " +
                           "disc in, or connect the drive or network that it lies on.";
  here.warn(text);
  run.services.window.status(text);
  run.services.window.enableButtons(false);
  for (int second = 0; second < LongestWait; ++second) {
    EndIfWanted(run.services);
    run.machine.clock().sleep(OneSecond);
    if (isThere()) return true;
  }
  return false;
}

}  // namespace assistant
