// Windows paths as text; nothing here looks at a disk.
#pragma once

#include <string>
#include <string_view>

namespace assistant {

// The second byte of a character of two may look like a separator or a forbidden character: it never counts as one.

/// True for a path that begins with a drive letter and ":" or with two backslashes.
bool IsFullPath(std::string_view path);

/// True for a full path of something below a drive's or a network share's root, without an element of dots only: what
/// may be deleted on somebody's word.
bool IsBelowRoot(std::string_view path);

/// True for a name of nothing but dots, and blanks behind them, which systems pass over: no file's name, and on some
/// systems a folder far above.
bool IsDots(std::string_view name);

/// True for a path like "D:file", which means another file with every current folder.
bool StartsAtDriveFolder(std::string_view path);

/// The path as the system is to be asked for it: "D:" means the drive's root, for which the system takes "D:\".
std::string AsAsked(const std::string& path);

/// Folder + "\" + name, with one backslash between them.
std::string Joined(const std::string& folder, const std::string& name);

/// The part before the last backslash, without it; "" when there is none.
std::string FolderPart(const std::string& path);
/// The part behind the last backslash.
std::string LastElement(const std::string& path);
/// The part of the last element behind its last point; "" when there is none.
std::string Extension(const std::string& path);
std::string WithoutExtension(const std::string& path);

/// Without a backslash at the end and without doubled ones inside (a network path keeps the two that it begins with).
std::string Normalised(const std::string& path);

/// True for a text that can name a folder, a file and a registry key.
bool IsUsableName(const std::string& name);
/// The text as the name of a file: what no such name may hold is replaced by "_".
std::string AsFileName(std::string text);

/// The file as it stands in a command line: in double quotes when it holds a blank.
std::string CommandLineFile(const std::string& path);

}  // namespace assistant
