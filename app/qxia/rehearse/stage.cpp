#include "app/qxia/rehearse/stage.h"

#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "app/qxia/command.h"
#include "base/identity.h"
#include "platform/simulated/host.h"
#include "platform/simulated/text.h"

namespace qxia {
namespace {

namespace fs = std::filesystem;

/// Folders below each other that a disc may have: a link to a folder above it would go on without end.
constexpr int DeepestFolder = 64;

[[noreturn]] void RefuseUnreadable(const fs::path& path, const std::error_code& failure) {
  throw UsageError(path.string() + " cannot be read (" + failure.message() + "): check the rights of the media");
}

class Stage {
 public:
  Stage(const fs::path& disc, Staged how) : root_(fs::canonical(disc)), how_(how) {}

  void copyFolder(const fs::path& from, const fs::path& to, int depth);
  const std::vector<std::string>& leftOut() const { return leftOut_; }

 private:
  bool leadsOut(const fs::path& entry) const;
  void copyEntry(const fs::directory_entry& entry, const fs::path& to, int depth);
  void copyFile(const fs::path& from, const fs::path& to) const;

  fs::path root_;
  Staged how_;
  std::vector<std::string> leftOut_;
};

/// A link that leads nowhere counts as one that leads out.
bool Stage::leadsOut(const fs::path& entry) const {
  std::error_code failure;
  const fs::path target = fs::canonical(entry, failure);
  if (failure) return true;
  const fs::path inside = target.lexically_relative(root_);
  return inside.empty() || *inside.begin() == "..";
}

void Stage::copyFile(const fs::path& from, const fs::path& to) const {
  std::error_code failure;
  if (access(from.c_str(), R_OK) != 0) RefuseUnreadable(from, {errno, std::generic_category()});
  fs::remove(to, failure);
  if (how_ == Staged::Copied) {
    simulated::CopyHostFile(from.string(), to.string());
    fs::permissions(to, fs::perms::owner_read | fs::perms::owner_write | fs::perms::owner_exec, failure);
  } else {
    fs::create_symlink(fs::canonical(from), to, failure);
  }
  if (failure) RefuseUnreadable(from, failure);
}

void Stage::copyEntry(const fs::directory_entry& entry, const fs::path& to, int depth) {
  if (entry.is_symlink() && leadsOut(entry.path())) {
    leftOut_.push_back(entry.path().string());
  } else if (entry.is_directory()) {
    copyFolder(entry.path(), to / entry.path().filename(), depth + 1);
  } else if (entry.is_regular_file()) {
    copyFile(entry.path(), to / entry.path().filename());
  }
}

void Stage::copyFolder(const fs::path& from, const fs::path& to, int depth) {
  if (depth > DeepestFolder) throw UsageError(from.string() + " lies too deep: is there a link to a folder above it?");
  std::error_code failure;
  fs::create_directories(to, failure);
  if (failure) throw UsageError(to.string() + " cannot be made: " + failure.message());
  for (fs::directory_iterator entry(from, failure), end; !failure && entry != end; entry.increment(failure))
    copyEntry(*entry, to, depth);
  if (failure) RefuseUnreadable(from, failure);
}

}  // namespace

std::vector<std::string> StageDisc(const std::string& folder, const std::string& target, Staged how) {
  if (how == Staged::Linked) fs::remove_all(target);
  Stage stage(folder, how);
  stage.copyFolder(folder, target, 0);
  const std::string program = ProgramFileName();
  if (simulated::FindHostEntry(target, program).empty())
    simulated::WriteHostFile(target + "/" + program, "The program, as far as a rehearsal needs its file.\r\n");
  return stage.leftOut();
}

std::string ProgramFileName() {
  return std::string(assistant::Title) + ".exe";
}

}  // namespace qxia
