#include "app/qxia/new_media/media_plan.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iterator>

#include "base/paths.h"
#include "platform/simulated/text.h"

namespace qxia::new_media {
namespace {

constexpr std::size_t LongestName = 40;
constexpr int MostDiscs = 99;

struct KindName {
  const char* name;
  Kind kind;
};

constexpr KindName Kinds[] = {{"msi", Kind::Msi}, {"exe", Kind::Exe}, {"exe-restart", Kind::ExeRestart},
                              {"bat", Kind::Bat}, {"vbs", Kind::Vbs}, {"copy", Kind::Copy}};

/// A name becomes a folder, a registry key and an ini key or value, on every system and in every code page.
void RequireName(const std::string& what, const std::string& name) {
  const bool plain = std::all_of(name.begin(), name.end(), [](char c) { return c >= ' ' && c <= '~'; });
  const bool fits = assistant::IsUsableName(name) && name.find_first_of("[]=;,'") == std::string::npos &&
                    simulated::Trim(name) == name && !name.ends_with('.') && !name.empty();
  if (plain && fits && name.size() <= LongestName && !simulated::StartsWithText(name, "rem")) return;
  throw UsageError(what + " \"" + name + "\": write 1 to " + std::to_string(LongestName) +
                   " letters, digits and blanks that do not begin with \"rem\"");
}

PlannedComponent ParseComponent(const std::string& text) {
  const std::size_t colon = text.rfind(':');
  const std::string kind = colon == std::string::npos ? "" : text.substr(colon + 1);
  const auto* known =
      std::find_if(std::begin(Kinds), std::end(Kinds), [&](const KindName& k) { return kind == k.name; });
  if (known == std::end(Kinds))
    throw UsageError("--component " + text + ": write NAME:KIND, KIND being msi, exe, exe-restart, bat, vbs or copy");
  PlannedComponent component{text.substr(0, colon), known->kind};
  RequireName("--component", component.name);
  return component;
}

std::vector<PlannedComponent> ParseComponents(const std::vector<std::string>& texts) {
  std::vector<PlannedComponent> components;
  for (const std::string& text : texts) {
    PlannedComponent component = ParseComponent(text);
    const bool twice = std::any_of(components.begin(), components.end(), [&](const PlannedComponent& known) {
      return simulated::SameText(known.name, component.name);
    });
    if (twice) throw UsageError("--component " + text + " stands twice: give each component a name of its own");
    components.push_back(std::move(component));
  }
  if (components.empty()) throw UsageError("no component given: write --component NAME:KIND for each");
  return components;
}

int ParseDiscs(const std::string& text, std::size_t components) {
  char* end = nullptr;
  const long discs = std::strtol(text.c_str(), &end, 10);
  if (text.empty() || *end != '\0' || discs < 1 || discs > MostDiscs || static_cast<std::size_t>(discs) > components)
    throw UsageError("--discs " + text + ": write a number from 1 to that of the components, so that none is empty");
  return static_cast<int>(discs);
}

std::vector<std::vector<PlannedComponent>> Distribute(const std::vector<PlannedComponent>& components, int discs) {
  std::vector<std::vector<PlannedComponent>> all(static_cast<std::size_t>(discs));
  for (std::size_t i = 0; i < components.size(); ++i) all[i * all.size() / components.size()].push_back(components[i]);
  return all;
}

std::string ParseFolder(const std::vector<std::string>& operands) {
  if (operands.size() != 1) throw UsageError("write one DIR: the folder to make the media in");
  std::error_code failure;
  const std::filesystem::file_status status = std::filesystem::status(operands[0], failure);
  const bool isThere = std::filesystem::exists(status);
  if (isThere && !std::filesystem::is_directory(status)) throw UsageError(operands[0] + " is a file: write a folder");
  if (isThere && !std::filesystem::is_empty(operands[0], failure))
    throw UsageError(operands[0] + " is not empty: write a folder that is empty or not there yet");
  return operands[0];
}

}  // namespace

MediaPlan ReadPlan(const Arguments& arguments) {
  MediaPlan plan;
  plan.folder = ParseFolder(arguments.operands());
  plan.product = arguments.text("--product");
  if (!arguments.has("--product")) throw UsageError("no product given: write --product NAME");
  RequireName("--product", plan.product);
  const std::vector<PlannedComponent> components = ParseComponents(arguments.all("--component"));
  plan.discs = Distribute(components, ParseDiscs(arguments.text("--discs", "1"), components.size()));
  return plan;
}

}  // namespace qxia::new_media
