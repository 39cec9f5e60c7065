#include "env/change_disk.h"

#include "base/identity.h"
#include "base/text.h"
#include "exec/captions.h"

namespace assistant::frmChangeDisk {
namespace {

constexpr int AttemptsBeforeQuestion = 5;
constexpr std::uint32_t RestMilliseconds = 300;
constexpr std::uint32_t PollMilliseconds = 50;
constexpr std::uint32_t TimerMilliseconds = 1000;

/// While it is enabled, the disk is looked for at each of its ticks as well.
class DiskChangeTimer {
 public:
  explicit DiskChangeTimer(platform::Clock& clock) : clock_(clock) {}

  void enable() {
    if (!enabled_) lastTick_ = clock_.ticks();
    enabled_ = true;
  }
  void disable() { enabled_ = false; }
  bool hasTicked() {
    if (!enabled_ || clock_.ticks() - lastTick_ < TimerMilliseconds) return false;
    lastTick_ += TimerMilliseconds;
    return true;
  }

 private:
  platform::Clock& clock_;
  bool enabled_ = false;
  std::uint32_t lastTick_ = 0;
};

/// The open window and the wait behind it.
class DiskWait {
 public:
  DiskWait(const Services& services, const std::string& volumeName)
      : machine_(services.machine),
        window_(services.window),
        volume_(volumeName),
        prompt_("Insert the disk labelled " + volumeName + " and click OK to continue"),
        timer_(machine_.clock()) {
    machine_.dialogs().openDiskWindow({.title = Title,
                                       .prompt = prompt_,
                                       .okCaption = modLanguage::Text(modLanguage::Caption::OK),
                                       .cancelCaption = modLanguage::Text(modLanguage::Caption::Cancel)});
  }
  ~DiskWait() { machine_.dialogs().closeDiskWindow(); }
  DiskWait(const DiskWait&) = delete;
  DiskWait& operator=(const DiskWait&) = delete;

  std::optional<char> wait() {
    while (isWaiting()) {
      if (attempts_ == 0) {
        machine_.dialogs().messageBox({.title = Title, .text = prompt_, .icon = platform::BoxIcon::Information});
      }
      check();
      rest();
    }
    return letter_;
  }

 private:
  bool isWaiting() const { return !letter_ && !cancelled_; }

  /// What the window's OK does: looks for the disk.
  void check() {
    letter_ = FindVolume(machine_.files(), volume_);
    if (letter_) return;
    if (++attempts_ == AttemptsBeforeQuestion) {
      askForRetry();
    } else {
      timer_.enable();
    }
  }

  void askForRetry() {
    timer_.disable();
    const platform::BoxAnswer answer =
        machine_.dialogs().messageBox({.title = Title,
                                       .text = "Error - cannot find the disk named " + volume_ + LineBreak +
                                               "Insert the disk and click retry to try again",
                                       .icon = platform::BoxIcon::Exclamation,
                                       .buttons = platform::BoxButtons::RetryCancel,
                                       .defaultAnswer = platform::BoxAnswer::Retry});
    if (answer == platform::BoxAnswer::Retry) {
      attempts_ = 0;
    } else {
      cancelled_ = true;
    }
  }

  /// The pause between two looks, in which the window and the timer are served. It ends early when there is nothing to
  /// wait for.
  void rest() {
    platform::Clock& clock = machine_.clock();
    const std::uint32_t start = clock.ticks();
    while (isWaiting() && attempts_ != 0 && clock.ticks() - start < RestMilliseconds) {
      window_.pump();
      serve();
      if (isWaiting() && timer_.hasTicked()) check();
      if (cancelled_) return;
      clock.sleep(PollMilliseconds);
    }
  }

  void serve() {
    const auto event = machine_.dialogs().takeDiskEvent();
    if (event == platform::DiskEvent::Cancel) cancelled_ = true;
    if (event == platform::DiskEvent::Ok) check();
  }

  platform::Platform& machine_;
  frmMain& window_;
  const std::string volume_;
  const std::string prompt_;
  DiskChangeTimer timer_;
  int attempts_ = 0;
  std::optional<char> letter_;
  bool cancelled_ = false;
};

}  // namespace

std::optional<char> FindVolume(platform::FileReader& files, const std::string& volumeName) {
  for (const platform::Drive& drive : files.drives()) {
    std::string label;
    const platform::Status read = files.volumeLabel(drive.letter, label);
    if (read == platform::Status::Ok && EqualIgnoringCase(label, volumeName)) return drive.letter;
  }
  return std::nullopt;
}

std::optional<char> Show(const Services& services, const std::string& volumeName) {
  return DiskWait(services, volumeName).wait();
}

}  // namespace assistant::frmChangeDisk
