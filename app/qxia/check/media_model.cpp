#include "app/qxia/check/media_model.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

#include "base/paths.h"
#include "base/product_record.h"
#include "base/text.h"
#include "core/coded_paths.h"
#include "core/discovery.h"

namespace qxia::check {
namespace {

using assistant::PathCode;

constexpr std::size_t LargestIni = 16U << 20;

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

std::string WindowsPath(const std::string& path) {
  return assistant::Replace(path, "/", "\\");
}

/// The part of a full path that is on the disc, tried from its longest end.
std::optional<std::string> LongestEndOnDisc(const DiscFiles& files, const std::string& fullPath) {
  std::string end = fullPath;
  for (std::size_t at = end.find('\\'); at != std::string::npos; at = end.find('\\')) {
    end.erase(0, at + 1);
    if (!end.empty() && files.look(end).is != Found::Is::Missing) return end;
  }
  return std::nullopt;
}

/// A path below the root where nothing else is known of a full path.
void LearnPrefix(Disc& disc, const std::string& fullPath) {
  const auto end = LongestEndOnDisc(disc.files, fullPath);
  if (end) disc.hostPrefix = assistant::LowerCase(fullPath.substr(0, fullPath.size() - end->size()));
}

std::string ProductIniPath(Disc& disc, const std::string& given) {
  if (assistant::IsFullPath(given)) {
    LearnPrefix(disc, assistant::Normalised(given));
    return disc.onDisc(given).value_or("");
  }
  const assistant::CodedPath coded = assistant::TakeApart(given);
  const std::string inner = coded.inner.empty() ? "product.ini" : coded.inner;
  if (coded.code == PathCode::None) return assistant::Joined(disc.applicationFolder, given);
  const bool fromRoot = coded.code == PathCode::CdRom || coded.code == PathCode::Floppy;
  return fromRoot ? inner : assistant::Joined(disc.applicationFolder, inner);
}

/// The folder of the packages on the disc; nothing for one that is elsewhere, or cannot be told.
std::optional<std::string> PackageRootOf(Disc& disc, const std::string& given) {
  if (assistant::IsFullPath(given)) {
    if (disc.hostPrefix.empty()) LearnPrefix(disc, assistant::Normalised(given));
    return disc.onDisc(given);
  }
  if (!assistant::CanBeResolved(given) || assistant::MeansRecordedRoot(given)) return std::nullopt;
  const assistant::CodedPath coded = assistant::TakeApartByLetters(given);
  const bool fromProgram = coded.code == PathCode::Current;
  const std::string path =
      assistant::Normalised(fromProgram ? assistant::Joined(disc.applicationFolder, coded.inner) : coded.inner);
  return disc.files.look(path).isThere() ? std::optional(path) : std::nullopt;
}

void ReadInis(Disc& disc, const std::string& applicationPath, const std::string& productPath) {
  disc.applicationFile = disc.files.look(applicationPath);
  disc.application = disc.source(disc.applicationFile);
  disc.applicationFolder = assistant::FolderPart(applicationPath);
  if (disc.application == nullptr) return;
  const std::string given = disc.application->value("Product", assistant::Value::ProductIni.name);
  if (assistant::IsNotGiven(given)) return;
  const std::string path = productPath.empty() ? ProductIniPath(disc, given) : productPath;
  if (path.empty()) return;
  disc.productFile = disc.files.look(path);
  disc.product = disc.source(disc.productFile);
  disc.productFolder = assistant::FolderPart(path);
}

void ReadDisc(MediaModel& model, Disc& disc) {
  if (disc.application == nullptr) return;
  const std::string root = disc.application->value("Product", assistant::Value::PackageRoot.name);
  disc.packageRoot = PackageRootOf(disc, root);
  ReadShares(disc);
  if (disc.product == nullptr) return;
  ReadActions(model, disc);
  ReadComponents(model, disc);
}

}  // namespace

const SourceIni* Disc::source(const Found& file) {
  if (!file.isFile()) return nullptr;
  const auto known = sources.find(file.shown);
  if (known != sources.end()) return known->second.get();
  errno = 0;
  const auto bytes = ReadText(file.host, LargestIni);
  const std::string shown = shownPrefix + file.shown;
  auto read = bytes ? SourceIni(shown, *bytes) : SourceIni::unreadable(shown, std::strerror(errno));
  return sources.emplace(file.shown, std::make_unique<SourceIni>(std::move(read))).first->second.get();
}

std::optional<std::string> Disc::onDisc(const std::string& fullPath) const {
  const std::string path = assistant::Normalised(fullPath);
  if (!hostPrefix.empty() && assistant::StartsWithIgnoringCase(path, hostPrefix)) return path.substr(hostPrefix.size());
  return std::nullopt;
}

std::vector<const ComponentFact*> MediaModel::components() const {
  std::vector<const ComponentFact*> all;
  for (const Disc& disc : discs)
    for (const ComponentFact& component : disc.components) all.push_back(&component);
  return all;
}

bool MediaModel::hasShare(const std::string& name) const {
  for (const Disc& disc : discs)
    for (const ShareFact& share : disc.shares)
      if (share.parsed.defect.empty() && assistant::EqualIgnoringCase(share.parsed.share.name, name)) return true;
  return false;
}

std::unique_ptr<MediaModel> ReadMedia(const Media& media, const std::string& codePage) {
  auto model = std::make_unique<MediaModel>();
  model->codePage = codePage;
  for (const qxia::Disc& given : media.discs) {
    Disc& disc = model->discs.emplace_back(given.folder);
    disc.label = given.label;
    if (media.discs.size() > 1) disc.shownPrefix = given.folder + "/";
    const Disc& first = model->discs.front();
    ReadInis(disc, WindowsPath(media.applicationIni), &disc == &first ? "" : WindowsPath(first.productFile.shown));
    if (&disc == &first && disc.application != nullptr) model->productName = disc.application->value("Product", "Name");
    ReadDisc(*model, disc);
  }
  return model;
}

std::optional<std::string> ReadText(const std::string& hostPath, std::size_t most) {
  const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(hostPath.c_str(), "rb"));
  if (!file) return std::nullopt;
  std::string bytes;
  char buffer[1 << 14];
  while (bytes.size() < most) {
    const std::size_t count = std::fread(buffer, 1, sizeof buffer, file.get());
    if (count == 0) break;
    bytes.append(buffer, count);
  }
  if (std::ferror(file.get()) != 0) return std::nullopt;
  return bytes;
}

}  // namespace qxia::check
