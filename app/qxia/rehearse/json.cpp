#include "app/qxia/rehearse/json.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "app/qxia/command.h"
#include "platform/simulated/host.h"

namespace qxia {
namespace {

using Json = nlohmann::json;

constexpr int Format = 1;

Json Texts(const std::vector<std::string>& texts) {
  Json all = Json::array();
  for (const std::string& text : texts) all.push_back(ToUtf8(text));
  return all;
}

Json Data(const std::optional<std::string>& data) {
  return data ? Json(ToUtf8(*data)) : Json(nullptr);
}

Json Registry(const std::vector<RegistryChange>& changes) {
  Json all = Json::array();
  for (const RegistryChange& change : changes)
    all.push_back({{"key", ToUtf8(change.key)},
                   {"value", ToUtf8(change.value)},
                   {"before", Data(change.before)},
                   {"after", Data(change.after)}});
  return all;
}

Json Files(const std::vector<FileChange>& changes) {
  Json all = Json::array();
  for (const FileChange& change : changes) all.push_back({{"path", ToUtf8(change.path)}, {"change", change.change}});
  return all;
}

Json Components(const std::vector<ComponentResult>& components) {
  Json all = Json::array();
  for (const ComponentResult& component : components) all.push_back(ToJson(component));
  return all;
}

Json ToJson(const RehearsedRun& run) {
  return {{"format", Format},
          {"system", run.system},
          {"exitCode", run.played.exitCode},
          {"finished", run.finished()},
          {"restarts", run.played.restarts},
          {"product", ToJson(run.product)},
          {"components", Components(run.components)},
          {"commands", Texts(run.commands)},
          {"registry", Registry(run.registry)},
          {"files", Files(run.files)},
          {"looseEnds", Texts(run.looseEnds)},
          {"log", run.log}};
}

/// The runs of either form.
std::vector<Json> RunsOf(const Json& json, const std::string& file) {
  const bool isOurs = json.is_object() && json.value("format", 0) == Format;
  if (!isOurs) throw UsageError("--expect " + file + ": is no JSON of a rehearsal: make it with --json");
  std::vector<Json> runs;
  if (json.contains("runs")) {
    for (const Json& run : json["runs"]) runs.push_back(run);
  } else {
    runs.push_back(json);
  }
  for (Json& run : runs) run.erase("log");
  return runs;
}

/// Short enough for a line of a report.
std::string Shown(const Json& value) {
  constexpr std::size_t longest = 120;
  const std::string text = value.dump(-1, ' ', false, Json::error_handler_t::replace);
  return text.size() <= longest ? text : text.substr(0, longest) + "...";
}

/// The name of what a path of the document is in: that of the component, key or file.
std::string NameAt(const Json& run, const std::string& path) {
  const Json::json_pointer pointer(path);
  const std::string list = path.substr(1, path.find('/', 1) - 1);
  const std::size_t second = path.find('/', 1);
  if (second == std::string::npos || !run.contains(list) || !run[list].is_array()) return path;
  const std::size_t third = path.find('/', second + 1);
  const Json::json_pointer element(path.substr(0, third));
  if (!run.contains(element) || !run[element].is_object()) return path;
  for (const char* name : {"name", "path", "key"})
    if (run[element].contains(name))
      return "/" + list + "/" + run[element][name].get<std::string>() +
             (third == std::string::npos ? "" : path.substr(third));
  return path;
}

void Compare(const Json& expected, const Json& got, std::vector<std::string>& differences) {
  const std::string system = got.value("system", "");
  for (const Json& change : Json::diff(expected, got)) {
    const std::string path = change["path"];
    const std::string what = change["op"];
    const Json::json_pointer place(path);
    const std::string was = what == "add" ? "nothing" : Shown(expected.at(place));
    const std::string now = what == "remove" ? "nothing" : Shown(change["value"]);
    differences.push_back(system + " " + NameAt(what == "remove" ? expected : got, path) + ": expected " + was +
                          ", got " + now);
  }
}

Json Read(const std::string& file) {
  const std::string text = simulated::ReadHostFile(file);
  if (text.empty()) throw UsageError("--expect " + file + ": is missing or empty: make it with --json");
  return Json::parse(text, nullptr, false);
}

}  // namespace

Json ToJson(const std::vector<RehearsedRun>& runs) {
  if (runs.size() == 1) return ToJson(runs[0]);
  Json all = Json::array();
  for (const RehearsedRun& run : runs) all.push_back(ToJson(run));
  return {{"format", Format}, {"runs", all}};
}

std::vector<std::string> Differences(const std::vector<RehearsedRun>& runs, const std::string& file) {
  std::vector<Json> expected = RunsOf(Read(file), file);
  std::vector<std::string> differences;
  for (const Json& got : RunsOf(ToJson(runs), file)) {
    const auto same = std::find_if(expected.begin(), expected.end(),
                                   [&](const Json& run) { return run.value("system", "") == got.value("system", ""); });
    if (same == expected.end()) {
      differences.push_back(got.value("system", "") + ": was not rehearsed before");
      continue;
    }
    Compare(*same, got, differences);
    expected.erase(same);
  }
  for (const Json& run : expected) differences.push_back(run.value("system", "") + ": is not rehearsed any more");
  return differences;
}

}  // namespace qxia
