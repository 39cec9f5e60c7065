#include "platform/simulated/host.h"

#include <dirent.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>

#include "platform/simulated/text.h"

namespace simulated {
namespace {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using HostFile = std::unique_ptr<std::FILE, CloseFile>;

struct CloseFolder {
  void operator()(DIR* folder) const { closedir(folder); }
};

}  // namespace

std::string ReadHostFile(const std::string& path) {
  const HostFile file(std::fopen(path.c_str(), "rb"));
  if (!file && errno == ENOENT) return "";
  std::string bytes;
  char buffer[65536];
  for (std::size_t got = 1; file && got > 0;) {
    got = std::fread(buffer, 1, sizeof buffer, file.get());
    bytes.append(buffer, got);
  }
  if (!file || std::ferror(file.get()) != 0) Refuse(path + ": cannot be read: " + std::strerror(errno));
  return bytes;
}

void WriteHostFile(const std::string& path, const std::string& bytes) {
  std::FILE* file = std::fopen(path.c_str(), "wb");
  if (file == nullptr) Refuse(path + ": cannot be written: " + std::strerror(errno));
  const bool whole = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
  if (std::fclose(file) != 0 || !whole) Refuse(path + ": cannot be written: " + std::strerror(errno));
}

void MakeHostFolder(const std::string& path) {
  std::error_code failure;
  std::filesystem::create_directories(path, failure);
  if (failure) Refuse(path + ": cannot be created: " + failure.message());
}

bool IsHostFolder(const std::string& path) {
  struct stat facts {};
  return !path.empty() && stat(path.c_str(), &facts) == 0 && S_ISDIR(facts.st_mode);
}

std::string FindHostEntry(const std::string& folder, const std::string& name) {
  struct stat facts {};
  if (stat((folder + "/" + name).c_str(), &facts) == 0) return name;
  const std::unique_ptr<DIR, CloseFolder> entries(opendir(folder.c_str()));
  if (!entries) return "";
  while (const dirent* entry = readdir(entries.get()))
    if (SameText(entry->d_name, name)) return entry->d_name;
  return "";
}

}  // namespace simulated
