// The ini files of new media: every key with a comment that says what it does.
#pragma once

#include <cstddef>
#include <string>

#include "app/qxia/new_media/media_plan.h"

namespace qxia::new_media {

inline constexpr const char* ProductVersion = "1.0.0";

/// The label that a disc must bear, counted from 0: "OFFICESUI2".
std::string LabelOf(const MediaPlan& plan, std::size_t disc);

/// Without blanks, in small letters: "office runtime" of a name becomes the file "officeruntime".
std::string FileNameOf(const PlannedComponent& component);

/// The component's folder below the package root, with slashes; that of a copied one ends in its version.
std::string FolderOf(const PlannedComponent& component);

std::string ApplicationIni(const MediaPlan& plan);
std::string ProductIni(const MediaPlan& plan, std::size_t disc);
std::string ComponentIni(const PlannedComponent& component);

}  // namespace qxia::new_media
