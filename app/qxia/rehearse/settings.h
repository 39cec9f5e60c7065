// What a rehearsal is asked to do.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/qxia/command.h"
#include "app/qxia/media.h"
#include "app/qxia/rehearse/play.h"

namespace qxia {

struct RehearsalSettings {
  Media media;
  std::vector<std::string> systems;  ///< as they are named in System; "" for the machine file's
  std::string at;
  std::optional<std::string> arguments;
  std::string machineFile;
  std::string state;
  Limits limits;
};

/// Raises UsageError for what cannot be understood.
RehearsalSettings ReadSettings(const Arguments& arguments);

}  // namespace qxia
