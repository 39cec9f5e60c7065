#include "env/change_disk.h"

#include "base/error.h"
#include "base/text.h"
#include "exec/captions.h"

namespace frmChangeDisk {
namespace {

constexpr int AttemptsBeforeQuestion = 5;
constexpr std::uint32_t RestMilliseconds = 300;
constexpr std::uint32_t PollMilliseconds = 50;
constexpr std::uint32_t TimerMilliseconds = 1000;

/// While it is enabled, the disk is looked for at each of its ticks as well.
class DiskChangeTimer {
 public:
  explicit DiskChangeTimer(platform::Clock& clock) : clock_(clock) {}

  void Enable() {
    if (!enabled_) lastTick_ = clock_.ticks();
    enabled_ = true;
  }
  void Disable() { enabled_ = false; }
  bool HasTicked() {
    if (!enabled_ || clock_.ticks() - lastTick_ < TimerMilliseconds) return false;
    lastTick_ += TimerMilliseconds;
    return true;
  }

 private:
  platform::Clock& clock_;
  bool enabled_ = false;
  std::uint32_t lastTick_ = 0;
};

[[noreturn]] void Cancelled(Run& run) {
  run.cancelled = true;
  throw Error(GeneralError, "User cancelled disk change prompt", "Change Disk Dialog");
}

/// The open window and the wait behind it.
class DiskWait {
 public:
  DiskWait(Run& run, const std::string& volumeName)
      : run_(run),
        volume_(volumeName),
        prompt_("Insert the disk labelled " + volumeName + " and click OK to continue"),
        timer_(run.machine.clock()) {
    run.machine.dialogs().openDiskWindow({.title = Title,
                                          .prompt = prompt_,
                                          .okCaption = modLanguage::Text(run, modLanguage::Caption::OK),
                                          .cancelCaption = modLanguage::Text(run, modLanguage::Caption::Cancel)});
  }
  ~DiskWait() { run_.machine.dialogs().closeDiskWindow(); }
  DiskWait(const DiskWait&) = delete;
  DiskWait& operator=(const DiskWait&) = delete;

  char Wait() {
    while (letter_ == 0) {
      if (attempts_ == 0) {
        run_.machine.dialogs().messageBox({.title = Title, .text = prompt_, .icon = platform::BoxIcon::Information});
      }
      Check();
      Rest();
    }
    return letter_;
  }

 private:
  /// What the window's OK does: looks for the disk.
  void Check() {
    letter_ = FindVolume(run_, volume_);
    if (letter_ != 0) return;
    if (++attempts_ == AttemptsBeforeQuestion) {
      AskForRetry();
    } else {
      timer_.Enable();
    }
  }

  void AskForRetry() {
    timer_.Disable();
    const platform::BoxAnswer answer =
        run_.machine.dialogs().messageBox({.title = Title,
                                           .text = "Error - cannot find the disk named " + volume_ + LineBreak +
                                                   "Insert the disk and click retry to try again",
                                           .icon = platform::BoxIcon::Exclamation,
                                           .buttons = platform::BoxButtons::RetryCancel,
                                           .defaultAnswer = platform::BoxAnswer::Retry});
    if (answer != platform::BoxAnswer::Retry) Cancelled(run_);
    attempts_ = 0;
  }

  /// The pause between two looks, in which the window and the timer are served. It ends early when there is nothing to
  /// wait for.
  void Rest() {
    platform::Clock& clock = run_.machine.clock();
    const std::uint32_t start = clock.ticks();
    while (letter_ == 0 && attempts_ != 0 && clock.ticks() - start < RestMilliseconds) {
      run_.window.Pump();
      Serve();
      if (letter_ == 0 && timer_.HasTicked()) Check();
      clock.sleep(PollMilliseconds);
    }
  }

  void Serve() {
    const auto event = run_.machine.dialogs().takeDiskEvent();
    if (event == platform::DiskEvent::Cancel) Cancelled(run_);
    if (event == platform::DiskEvent::Ok) Check();
  }

  Run& run_;
  const std::string volume_;
  const std::string prompt_;
  DiskChangeTimer timer_;
  int attempts_ = 0;
  char letter_ = 0;
};

}  // namespace

char FindVolume(Run& run, const std::string& volumeName) {
  platform::Files& files = run.machine.files();
  for (const platform::Drive& drive : files.drives()) {
    std::string label;
    const platform::Status read = files.volumeLabel(drive.letter, label);
    if (read == platform::Status::Ok && EqualIgnoringCase(label, volumeName)) return drive.letter;
  }
  return 0;
}

char Show(Run& run, const std::string& volumeName) {
  return DiskWait(run, volumeName).Wait();
}

}  // namespace frmChangeDisk
