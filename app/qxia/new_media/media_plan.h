// What media are asked for: a product, its components and how many discs they lie on.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "app/qxia/command.h"

namespace qxia::new_media {

enum class Kind { Msi, Exe, ExeRestart, Bat, Vbs, Copy };

struct PlannedComponent {
  std::string name;
  Kind kind = Kind::Msi;
};

struct MediaPlan {
  std::string folder;
  std::string product;
  std::vector<std::vector<PlannedComponent>> discs;  ///< in order, at least one component on each
};

/// Reads DIR, --product, --component and --discs. Raises UsageError, which says what to write, for names that the
/// program could not use and for a folder that is not empty.
MediaPlan ReadPlan(const Arguments& arguments);

}  // namespace qxia::new_media
