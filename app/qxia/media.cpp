#include "app/qxia/media.h"

#include <algorithm>
#include <filesystem>
#include <optional>
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

/// A key's value in the section [Product] of an ini of the host; nothing when it is not there.
std::optional<std::string> ProductValue(const std::string& path, const std::string& key) {
  bool inProduct = false;
  for (const std::string& raw : simulated::Split(simulated::ReadHostFile(path), '\n')) {
    const std::string line = simulated::Trim(raw);
    if (line.rfind('[', 0) == 0) inProduct = simulated::SameText(line, "[product]");
    if (inProduct && simulated::StartsWithText(line, key + "=")) return simulated::Trim(line.substr(key.size() + 1));
  }
  return std::nullopt;
}

/// By its key PackageRoot an application ini is known.
bool IsApplicationIni(const std::string& path) {
  return ProductValue(path, "PackageRoot").has_value();
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

std::string WithBackslashes(std::string path) {
  std::replace(path.begin(), path.end(), '/', '\\');
  return path;
}

/// The host's file for a path with backslashes below a folder, in whatever letter case; "" when there is none.
std::string FileBelow(const std::string& folder, const std::string& path) {
  std::string host = folder;
  for (const std::string& name : simulated::Split(path, '\\')) {
    if (name.empty() || name == ".") continue;
    const std::string entry = name == ".." ? "" : simulated::FindHostEntry(host, name);
    if (entry.empty()) return "";
    host += "/" + entry;
  }
  return host == folder || simulated::IsHostFolder(host) ? "" : host;
}

/// The inis of a disc that may name its neighbours, the one that counts first: the product ini as the application ini
/// names it, then that. They lie at the same places on every disc.
std::vector<std::string> NamingInis(const Media& media, const Disc& disc) {
  const std::string application = FileBelow(disc.folder, WithBackslashes(media.applicationIni));
  if (application.empty()) return {};
  std::string named = ProductValue(application, "ProductIni").value_or("");
  const std::size_t open = named.find('(');
  if (open != std::string::npos) named = named.substr(open + 1, named.find(')', open) - open - 1);
  if (named.size() > 1 && named[1] == ':') named.erase(0, 2);
  const std::string product = FileBelow(disc.folder, named);
  return product.empty() ? std::vector<std::string>{application} : std::vector<std::string>{product, application};
}

std::string NamedNeighbour(const Media& media, const Disc& disc, const char* key) {
  for (const std::string& ini : NamingInis(media, disc))
    if (const std::string name = ProductValue(ini, key).value_or(""); !name.empty()) return name;
  return "";
}

/// The label that the named neighbour has; its own one wins, and one that differs is a contradiction.
void Agree(Media& media, const Disc& naming, const char* key, Disc& neighbour) {
  const std::string name = NamedNeighbour(media, naming, key);
  if (name.empty()) return;
  if (neighbour.label.empty()) neighbour.label = name;
  if (simulated::SameText(neighbour.label, name)) return;
  media.contradictions.push_back(naming.folder + ": its inis say " + key + "=" + name + ", but " + neighbour.folder +
                                 " is labelled " + neighbour.label + ": write the same name in both places");
}

/// A disc that names no next one is the last: those behind it would never be asked for.
void RequireNext(Media& media, const Disc& disc, const Disc& next) {
  if (!NamedNeighbour(media, disc, "NextVolumeName").empty() || NamingInis(media, disc).empty()) return;
  media.contradictions.push_back(disc.folder + ": its inis name no next disc, but " + next.folder +
                                 " is given: write NextVolumeName, or give the folders in their order");
}

void AgreeOnLabels(Media& media) {
  for (std::size_t i = 0; i + 1 < media.discs.size(); ++i) {
    RequireNext(media, media.discs[i], media.discs[i + 1]);
    Agree(media, media.discs[i], "NextVolumeName", media.discs[i + 1]);
    Agree(media, media.discs[i + 1], "PreviousVolumeName", media.discs[i]);
  }
}

}  // namespace

void RequireAgreement(const Media& media) {
  if (!media.contradictions.empty()) throw UsageError(media.contradictions[0]);
}

Media FindMedia(const Arguments& arguments) {
  Media media;
  media.discs = FindDiscs(arguments.operands(), arguments.all(LabelOption.name));
  const std::string& first = media.discs[0].folder;
  media.applicationIni =
      arguments.has(IniOption.name) ? GivenIni(first, arguments.text(IniOption.name)) : FindApplicationIni(first);
  media.product = ProductValue(first + "/" + media.applicationIni, "Name").value_or("");
  AgreeOnLabels(media);
  return media;
}

}  // namespace qxia
