// What the contract tests stand on: a machine of the side under test, with a scratch folder and a scratch key.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "platform/owned.h"
#include "platform/platform.h"
#include "tests/support/printers.h"

namespace contract {

// What the package of Bench::package holds (see package.wxs).
inline constexpr const char* PackageName = "Contract Package";
inline constexpr const char* PackageVersion = "1.2.3";
inline constexpr const char* PackageCode = "{5F0C1D52-7A1E-4C0B-9C55-0A1B2C3D4E5F}";

class Bench {
 public:
  virtual ~Bench() = default;
  virtual platform::Platform& machine() = 0;
  /// A command line that runs for so long and ends with this exit code.
  virtual std::string command(int milliseconds, int exitCode) = 0;
  /// What the system's question at a log-off is answered with; the session does not end.
  virtual bool agreesToSessionEnd() = 0;
  /// The session ends as far as the program is told of it.
  virtual void endSession() = 0;
  /// Path of a batch file that ends with this exit code.
  virtual std::string batchFile(const std::string& folder, int exitCode) = 0;
  /// Gives the file another name (a hard link); false where none can be had.
  virtual bool addName(const std::string& file, const std::string& name) = 0;
  /// Lets everybody do everything with a file or folder.
  virtual bool openToAll(const std::string& path) = 0;
  /// Path of a real package in the folder; "" when the tests were built where none can be made.
  virtual std::string package(const std::string& folder) = 0;
};

/// The bench of the side that this program was built for. Deletes what earlier tests left.
std::unique_ptr<Bench> MakeBench();

inline constexpr const char* ScratchFolder = "C:\\QX Contract";
inline constexpr const char* ScratchKey = "Software\\QX Contract";

class Test : public testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  platform::Platform& machine() { return bench_->machine(); }
  platform::Registry& registry() { return machine().registry(); }
  platform::Files& files() { return machine().files(); }
  Bench& bench() { return *bench_; }
  /// A path in the scratch folder.
  static std::string path(const std::string& name) { return std::string(ScratchFolder) + "\\" + name; }
  void write(const std::string& name, const std::string& bytes);
  std::string content(const std::string& name);

 private:
  void deleteKeyTree(const std::string& key);
  void deleteFolderTree(const std::string& folder);

  std::unique_ptr<Bench> bench_ = MakeBench();
};

}  // namespace contract
