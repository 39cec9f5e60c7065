// The kinds of component file: one row says how such a file is run, what its exit code means and how it is removed.
#pragma once

#include <span>
#include <string>

namespace assistant {

enum class Runner {
  Itself,   ///< the file is the program
  Host,     ///< another program is given the file
  Msiexec,  ///< a package of Windows Installer
};

/// Which exit codes other than those of success make the component fail. What the component says itself comes first.
enum class BadExitCode {
  NeverCounts,
  CountsWhenNotStarted,  ///< the code that stands for a program that could not be started, and no other
  Counts,
};

/// Letter case in which the extension must be written for its exit code to count at all.
enum class LetterCase { Any, Lower };

/// What judges a component that said nothing itself.
enum class JudgedBy { Nothing, InstalledProducts };

/// What takes such a component off again.
enum class RemovedBy {
  Command,  ///< its recorded command
  Msiexec,  ///< its product code, as long as Windows Installer has that
};

struct FileKind {
  const char* extension;  ///< in lower case
  Runner runner;
  const char* host;  ///< what stands in front of the file in a command line, its blank included
  BadExitCode badExitCode;
  LetterCase letterCase;
  JudgedBy judgedBy;
  RemovedBy removedBy;
};

/// All kinds, in the order of their document.
std::span<const FileKind> FileKinds();

/// The kind of a file by its extension, in letters of any case; null for one that cannot be run.
const FileKind* KindOf(const std::string& file);

/// The kind whose extension the text ends in, with or without a point before it; null for none. So packages are found
/// before their data are read, and scripts among pre-install actions.
const FileKind* KindByEnding(const std::string& text);

bool IsPackage(const FileKind* kind);

/// How a component with this file is removed; one of no kind by its command.
RemovedBy RemovalOf(const std::string& file);

/// True when a bad exit code counts at all for a file with this extension as it is written.
bool ExitCodeCounts(const FileKind& kind, const std::string& extension);

}  // namespace assistant
