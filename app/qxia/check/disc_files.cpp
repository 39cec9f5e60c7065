#include "app/qxia/check/disc_files.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "app/qxia/command.h"
#include "app/qxia/result.h"
#include "base/text.h"

namespace qxia::check {
namespace {

namespace fs = std::filesystem;

/// The elements of a path without "." and, as far as there is something to go up from, without "..".
std::vector<std::string> Elements(const std::string& path) {
  std::vector<std::string> elements;
  for (const std::string& element : assistant::Split(assistant::Replace(path, "/", "\\"), '\\')) {
    if (element == ".." && !elements.empty()) {
      elements.pop_back();
    } else if (!element.empty() && element != "." && element != "..") {
      elements.push_back(ToUtf8(element));
    }
  }
  return elements;
}

const FolderItem* FindItem(const std::vector<FolderItem>& items, const std::string& name) {
  const FolderItem* other = nullptr;
  for (const FolderItem& item : items) {
    if (item.name == name) return &item;
    if (assistant::EqualIgnoringCase(item.name, name)) other = &item;
  }
  return other;
}

}  // namespace

DiscFiles::DiscFiles(std::string root) : root_(std::move(root)) {
  std::error_code failure;
  realRoot_ = fs::canonical(root_, failure).string();
}

const Found& DiscFiles::look(const std::string& path) const {
  const auto known = found_.find(path);
  return known != found_.end() ? known->second : found_.emplace(path, walk(path)).first->second;
}

Found DiscFiles::walk(const std::string& path) const {
  Found found{.is = Found::Is::There, .isFolder = true, .host = root_, .shown = ""};
  for (const std::string& element : Elements(path)) {
    const FolderItem* item = found.isFolder ? FindItem(items(found.host), element) : nullptr;
    if (item == nullptr) return {};
    if (item->leadsOut) return {.is = Found::Is::OutOfMedia, .host = "", .shown = ""};
    if (item->name != element) found.is = Found::Is::OtherCase;
    found.isFolder = item->isFolder;
    found.host += "/" + item->name;
    found.shown += (found.shown.empty() ? "" : "/") + item->name;
  }
  found.isReadable = access(found.host.c_str(), R_OK) == 0;
  return found;
}

bool DiscFiles::leadsOut(const std::string& hostPath) const {
  std::error_code failure;
  const std::string target = fs::canonical(hostPath, failure).string();
  return !failure && target != realRoot_ && !target.starts_with(realRoot_ + "/");
}

const std::vector<FolderItem>& DiscFiles::items(const std::string& hostFolder) const {
  const auto known = listed_.find(hostFolder);
  if (known != listed_.end()) return known->second;
  std::vector<FolderItem> items;
  std::error_code failure;
  for (fs::directory_iterator entry(hostFolder, failure), end; !failure && entry != end; entry.increment(failure)) {
    std::error_code gone;
    const bool out = entry->is_symlink(gone) && leadsOut(entry->path().string());
    const bool isFolder = entry->is_directory(gone);
    if (out || isFolder || entry->is_regular_file(gone))
      items.push_back({entry->path().filename().string(), isFolder, out});
  }
  if (failure)
    throw UsageError(hostFolder + " cannot be read (" + failure.message() + "): check the rights of the media");
  std::sort(items.begin(), items.end(), [](const FolderItem& a, const FolderItem& b) { return a.name < b.name; });
  return listed_.emplace(hostFolder, std::move(items)).first->second;
}

}  // namespace qxia::check
