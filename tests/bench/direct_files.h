// The host's own files with nothing in between, so that a benchmark sees the program's work and not a simulation's.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "platform/files.h"

class DirectFiles : public platform::Files {
 public:
  std::vector<platform::Drive> drives() override { return {}; }
  platform::Status volumeLabel(char, std::string&) override { return notHere; }
  platform::Status freeSpace(char, std::uint64_t&) override { return notHere; }
  std::string fullPath(const std::string& path) override { return path; }
  platform::Status attributes(const std::string& path, platform::Attributes& attributes) override {
    attributes = {};
    return ::access(path.c_str(), F_OK) == 0 ? platform::Status::Ok : platform::Status::FileNotFound;
  }
  platform::Status setAttributes(const std::string&, const platform::Attributes&) override { return notHere; }
  platform::Status list(const std::string&, std::vector<platform::FolderEntry>&) override { return notHere; }

  platform::Status read(const std::string& path, std::string& bytes) override {
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) return platform::Status::FileNotFound;
    bytes.resize(static_cast<std::size_t>(::lseek(file, 0, SEEK_END)));
    const ssize_t got = ::pread(file, bytes.data(), bytes.size(), 0);
    ::close(file);
    return got == static_cast<ssize_t>(bytes.size()) ? platform::Status::Ok : platform::Status::AccessDenied;
  }
  platform::Status openForAppending(const std::string& path, platform::FileHandle& file) override {
    const int opened = ::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
    if (opened < 0) return platform::Status::AccessDenied;
    file.value = static_cast<std::uintptr_t>(opened);
    return platform::Status::Ok;
  }
  platform::Status openForWriting(const std::string&, platform::FileHandle&) override { return notHere; }
  platform::Status write(platform::FileHandle file, const std::string& bytes) override {
    const ssize_t put = ::write(static_cast<int>(file.value), bytes.data(), bytes.size());
    return put == static_cast<ssize_t>(bytes.size()) ? platform::Status::Ok : platform::Status::DiskFull;
  }
  platform::Status close(platform::FileHandle file) override {
    ::close(static_cast<int>(file.value));
    return platform::Status::Ok;
  }

  platform::Status copyFile(const std::string&, const std::string&) override { return notHere; }
  platform::Status moveFile(const std::string&, const std::string&) override { return notHere; }
  platform::Status deleteFile(const std::string& path) override {
    return ::unlink(path.c_str()) == 0 ? platform::Status::Ok : platform::Status::FileNotFound;
  }
  platform::Status createFolder(const std::string&) override { return notHere; }
  platform::Status deleteFolder(const std::string&) override { return notHere; }
  platform::Status numberOfNames(const std::string&, std::uint32_t&) override { return notHere; }
  platform::Status ordinaryUsersMayWrite(const std::string&, bool&) override { return notHere; }
  platform::Status setOwner(const std::string&, platform::Account) override { return notHere; }
  platform::Status addAccess(const std::string&, const std::vector<platform::AccessGrant>&) override { return notHere; }
  platform::Status setAccess(const std::string&, const std::vector<platform::AccessGrant>&) override { return notHere; }

 private:
  static constexpr platform::Status notHere = platform::Status::CallNotImplemented;
};
