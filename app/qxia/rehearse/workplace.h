// A simulated workstation, ready to start the program on it with the media at hand.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/qxia/media.h"
#include "platform/simulated/workstation.h"

namespace qxia {

struct WorkplaceSettings {
  const Media& media;
  std::string at;  ///< where the first disc lies on a hard disk; "" for the CD-ROM drive
  /// Of the program, be it that it has none; else those of the machine file or, without any, a verbose silent run.
  std::optional<std::string> arguments;
  std::string machineFile;
  std::string system;  ///< "" for the machine file's
};

/// The workstation with its discs. A disc that the program asks for is put into the CD-ROM drive, where the media have
/// it; the local copy that the program starts is remembered.
class Workplace {
 public:
  /// Makes the machine in a folder, or goes on with the one that is there. Raises UsageError or std::runtime_error for
  /// what cannot be set up.
  Workplace(const std::string& folder, const WorkplaceSettings& settings);

  simulated::Workstation& machine() { return *machine_; }
  /// The discs as the machine has them: copies.
  const std::vector<Disc>& discs() const { return staged_; }
  /// Whether the last of the discs is in its drive.
  bool reachedLastDisc() const;
  /// Links of the media that were not followed.
  const std::vector<std::string>& leftOut() const { return leftOut_; }
  /// The program as it was started first, with the first disc in its place.
  void startAfresh();
  /// Everything that nobody declared succeeds at once.
  void permitEverything() { permitsEverything_ = true; }
  /// The command line by which the program started itself anew since this was asked last; "" for none.
  std::string takeRestartedCopy();

 private:
  void stageDiscs(const WorkplaceSettings& settings);
  void mount(const WorkplaceSettings& settings);
  void setProgram(const WorkplaceSettings& settings);
  std::optional<simulated::Outcome> carryOn(const std::string& commandLine);
  std::optional<platform::BoxAnswer> answer(const platform::MessageBoxRequest& request);

  std::string folder_;
  std::vector<Disc> staged_;
  std::vector<std::string> leftOut_;
  std::unique_ptr<simulated::Workstation> machine_;
  std::string copy_;
  std::string at_;
  std::string program_;
  std::string commandLine_;
  bool permitsEverything_ = false;
};

/// The folder of the first disc as the machine sees it, without a backslash at its end: "D:".
std::string FirstFolder(const std::string& at);

}  // namespace qxia
