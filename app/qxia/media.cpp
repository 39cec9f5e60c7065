#include "app/qxia/media.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "base/identity.h"
#include "platform/simulated/host.h"
#include "platform/simulated/text.h"

namespace qxia {
namespace {

namespace fs = std::filesystem;

std::string WithoutSlash(std::string folder) {
  while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
  return folder;
}

/// Names of the files at the top of a folder, sorted. Raises UsageError when the folder cannot be read.
std::vector<std::string> FilesAtTop(const std::string& folder) {
  std::error_code failure;
  std::vector<std::string> names;
  for (fs::directory_iterator entry(folder, failure), end; !failure && entry != end; entry.increment(failure))
    if (entry->is_regular_file(failure)) names.push_back(entry->path().filename().string());
  if (failure) throw UsageError(folder + " cannot be read (" + failure.message() + "): check the rights of the folder");
  std::sort(names.begin(), names.end());
  return names;
}

std::string LabelBeside(const std::string& folder) {
  const std::string text = simulated::ReadHostFile(folder + ".label.txt");
  return text.substr(0, text.find_first_of("\r\n"));
}

std::vector<Disc> FindDiscs(const std::vector<std::string>& folders, const std::vector<std::string>& labels) {
  if (folders.empty()) throw UsageError("no MEDIA given: write the folder of each disc, in order");
  if (labels.size() > folders.size())
    throw UsageError("there are more labels than discs: write --label once per folder at most");
  std::vector<Disc> discs;
  for (const std::string& given : folders) {
    const std::string folder = WithoutSlash(given);
    if (!simulated::IsHostFolder(folder)) throw UsageError(given + " is no folder: write the folder of a disc's files");
    discs.push_back({folder, discs.size() < labels.size() ? labels[discs.size()] : LabelBeside(folder)});
  }
  return discs;
}

/// Whether the file's [Product] has the key PackageRoot, by which an application ini is known.
bool IsApplicationIni(const std::string& path) {
  bool inProduct = false;
  for (const std::string& raw : simulated::Split(simulated::ReadHostFile(path), '\n')) {
    const std::string line = simulated::Lower(simulated::Trim(raw));
    if (line.rfind('[', 0) == 0) inProduct = line == "[product]";
    if (inProduct && line.rfind("packageroot=", 0) == 0) return true;
  }
  return false;
}

std::string FindApplicationIni(const std::string& folder) {
  const std::vector<std::string> files = FilesAtTop(folder);
  std::vector<std::string> candidates;
  std::string named;
  for (const std::string& file : files) {
    if (!simulated::EndsWithText(file, ".ini")) continue;
    if (simulated::SameText(file, std::string(assistant::Title) + ".ini")) return file;
    if (!IsApplicationIni(folder + "/" + file)) continue;
    candidates.push_back(file);
    named += (named.empty() ? "" : ", ") + file;
  }
  if (candidates.size() == 1) return candidates[0];
  if (candidates.empty())
    throw UsageError(folder + " has no application ini (an *.ini with PackageRoot in [Product]): name it with --ini");
  throw UsageError(folder + " has several application inis (" + named + "): choose one with --ini");
}

std::string GivenIni(const std::string& folder, const std::string& given) {
  std::error_code failure;
  const fs::path inside = fs::relative(given, folder, failure);
  if (!failure && !inside.empty() && *inside.begin() != ".." && fs::is_regular_file(given, failure))
    return inside.string();
  if (fs::is_regular_file(folder + "/" + given, failure)) return given;
  throw UsageError("--ini " + given + ": there is no such file on the first disc");
}

}  // namespace

Media FindMedia(const Arguments& arguments) {
  Media media;
  media.discs = FindDiscs(arguments.operands(), arguments.all(LabelOption.name));
  const std::string& first = media.discs[0].folder;
  media.applicationIni =
      arguments.has(IniOption.name) ? GivenIni(first, arguments.text(IniOption.name)) : FindApplicationIni(first);
  return media;
}

}  // namespace qxia
