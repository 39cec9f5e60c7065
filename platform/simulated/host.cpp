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

/// A file that is replaced. Whatever fails raises std::runtime_error.
class WrittenFile {
 public:
  explicit WrittenFile(const std::string& path) : path_(path), file_(std::fopen(path.c_str(), "wb")) {
    require(file_ != nullptr);
  }
  WrittenFile& write(std::string_view bytes) {
    require(std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) == bytes.size());
    return *this;
  }
  void close() { require(std::fclose(file_.release()) == 0); }

 private:
  void require(bool done) const {
    if (!done) Refuse(path_ + ": cannot be written: " + std::strerror(errno));
  }

  const std::string& path_;
  HostFile file_;
};

struct CloseFolder {
  void operator()(DIR* folder) const { closedir(folder); }
};

}  // namespace

void ReadHostFileInParts(const std::string& path, const std::function<void(std::string_view)>& use) {
  const HostFile file(std::fopen(path.c_str(), "rb"));
  if (!file && errno == ENOENT) return;
  char buffer[65536];
  for (std::size_t got = 1; file && got > 0;) {
    got = std::fread(buffer, 1, sizeof buffer, file.get());
    if (got > 0) use({buffer, got});
  }
  if (!file || std::ferror(file.get()) != 0) Refuse(path + ": cannot be read: " + std::strerror(errno));
}

std::string ReadHostFile(const std::string& path) {
  std::string bytes;
  ReadHostFileInParts(path, [&](std::string_view part) { bytes.append(part); });
  return bytes;
}

void WriteHostFile(const std::string& path, const std::string& bytes) {
  WrittenFile(path).write(bytes).close();
}

void CopyHostFile(const std::string& from, const std::string& to) {
  WrittenFile file(to);
  ReadHostFileInParts(from, [&](std::string_view part) { file.write(part); });
  file.close();
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

std::string FindHostEntry(const std::string& folder, const std::string& name, bool japanese) {
  struct stat facts {};
  if (stat((folder + "/" + name).c_str(), &facts) == 0) return name;
  const std::unique_ptr<DIR, CloseFolder> entries(opendir(folder.c_str()));
  if (!entries) return "";
  while (const dirent* entry = readdir(entries.get()))
    if (SameText(entry->d_name, name, japanese)) return entry->d_name;
  return "";
}

}  // namespace simulated
