// What a simulated program does, as data.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/simulated/files.h"
#include "platform/status.h"

namespace simulated {

/// An installed product of Windows Installer.
struct Product {
  std::string code;
  std::string name;
  std::string version;  ///< "" for one that is only advertised
};

/// A value that a program writes. The key is a full path (HKLM\... or HKCU\...). Data is a text, or dword:, hex: or
/// hex(n): in the form of .reg files.
struct RegistryWrite {
  std::string key;
  std::string name;
  std::string data;
};

struct FileWrite {
  std::string path;
  std::string bytes;
  std::string declaredIn = {};  ///< the machine file, for what it is told when the write cannot be carried out
};

struct Outcome {
  std::int32_t exitCode = 0;
  std::uint32_t milliseconds = 1000;                    ///< how long the program runs
  platform::Status cannotStart = platform::Status::Ok;  ///< a status: the program does not even start

  std::vector<RegistryWrite> registry = {};
  std::vector<std::string> deletedKeys = {};  ///< full paths; with all that is in them
  std::vector<FileWrite> files = {};
  std::vector<std::string> deletedFiles = {};
  std::vector<Product> installs = {};
  std::vector<std::string> removes = {};  ///< product codes
  std::vector<Drive> drives = {};         ///< drives that appear, such as a mapped one
  std::string removedDrives = {};         ///< letters
  std::function<void()> also = {};        ///< what data cannot say
};

/// How a declaration finds its command lines; letter case never counts.
enum class Match {
  Contains,
  Exactly,
  Prefix,
  End,      ///< of the command line: switches behind a program that is not known
  Program,  ///< the program's file name, with or without .exe
};

/// A program declared several times answers successive runs in the order of its declarations; the last one answers all
/// further runs.
struct Program {
  std::string pattern;
  Outcome outcome = {};
  Match match = Match::Contains;
};

/// A Windows Installer package. What msiexec does with it follows from the product list; the outcomes say how that
/// ends.
struct Package {
  std::string path;
  std::string name;
  std::string version;
  std::string code;
  Outcome install = {};
  Outcome removal = {};
  Outcome repair = {};
  /// Rows of the Property table beside ProductName, ProductVersion and ProductCode.
  std::vector<std::pair<std::string, std::string>> properties = {};
};

}  // namespace simulated
