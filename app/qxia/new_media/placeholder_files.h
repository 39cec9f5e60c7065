// What stands on new media in the place of the files that their maker will put there.
#pragma once

#include <cstdint>
#include <string>

#include "app/qxia/new_media/media_plan.h"

namespace qxia::new_media {

/// A 32-bit Windows program that does nothing and ends with the code.
std::string PlaceholderProgram(std::uint32_t exitCode);

std::string PlaceholderBatch(const PlannedComponent& component);
std::string PlaceholderScript(const PlannedComponent& component, const std::string& product);
/// Runs the program beside it, and asks for a restart where that asks for one.
std::string RestartScript(const PlannedComponent& component);
std::string PlaceholderText(const PlannedComponent& component);

/// True when packages can be made: the host has wixl.
bool CanMakePackages();
/// Makes an empty package of the component's name with codes of its own. Raises std::runtime_error.
void MakePackage(const PlannedComponent& component, const std::string& product, const std::string& path);

}  // namespace qxia::new_media
