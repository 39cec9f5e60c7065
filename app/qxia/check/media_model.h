// The media as the inis tell them: discs, components, packages, each fact with the line that says it.
#pragma once

#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/qxia/check/disc_files.h"
#include "app/qxia/check/source_ini.h"
#include "app/qxia/media.h"
#include "app/qxia/package.h"
#include "env/shares.h"
#include "exec/action_entry.h"
#include "exec/condition_text.h"
#include "exec/file_kinds.h"

namespace qxia::check {

/// A condition as the program takes it apart, and its line.
struct ConditionFact {
  assistant::Condition condition;  ///< its name as it is written; "" where it cannot be taken apart
  std::string text;
  int line = 0;
  bool isQuoted = false;  ///< of the older notation: asks for something else than a product's version
};

struct Disc;

struct ComponentFact {
  std::string name;
  int place = 0;  ///< among all components of the media, from 0
  const Disc* disc = nullptr;
  int listedOn = 0;  ///< the line of [Actions] in the disc's product ini
  assistant::ActionEntry entry;
  bool isLookedFor = false;  ///< its ini would lie on the disc
  Found iniFile;
  const SourceIni* ini = nullptr;       ///< null where it is not there or was not looked for
  const IniSection* section = nullptr;  ///< null where the ini has none of that name
  std::string path;                     ///< the folder as recorded: relative to the package root, or in full
  std::optional<std::string> folder;    ///< the folder on the disc; nothing where it is elsewhere
  std::string install;                  ///< "" where none is given
  std::optional<std::string> file;      ///< its path on the disc; nothing where it is elsewhere
  Found found;                          ///< what that leads to
  const assistant::FileKind* kind = nullptr;
  char copyCode = '\0';
  std::optional<MsiPackage> package;  ///< of a package that is there and can be read
  std::string packageDefect;          ///< why its package cannot be read; "" where it can be, or is none
  bool isOlder = false;               ///< its conditions are in the older notation
  std::vector<ConditionFact> conditions;

  std::string value(const std::string& key, const std::string& otherwise = "") const;
  /// The line that has to change for a key.
  int lineOf(const std::string& key) const { return ini->lineOf(name, key); }
  bool isCopied() const { return copyCode == '1' || copyCode == '2'; }
  /// The file is run, by itself or from a copy.
  bool isRun() const { return copyCode != '1'; }
};

/// A line of Config\Shares.csv.
struct ShareFact {
  assistant::ShareLine parsed;
  int line = 0;
};

/// An entry of [Actions] that makes no component.
struct PassedOverEntry {
  enum class Why { Empty, Doubled, BadName };
  Why why;
  std::string name;
  int line;
};

struct ActionFact {
  std::string name;
  int listedOn = 0;
  const IniSection* section = nullptr;
  std::string install;
  std::optional<std::string> file;  ///< on the disc
  Found found;
};

struct Disc {
  explicit Disc(std::string folder) : files(std::move(folder)) {}

  DiscFiles files;
  std::string shownPrefix;  ///< in front of paths where there are several discs
  std::string label;        ///< as given; "" where it was not
  Found applicationFile;
  const SourceIni* application = nullptr;
  Found productFile;
  const SourceIni* product = nullptr;
  std::string applicationFolder;  ///< on the disc
  std::string productFolder;
  std::optional<std::string> packageRoot;  ///< the folder on the disc; nothing where it is elsewhere
  std::string hostPrefix;  ///< in lower case: the full path that stands for the disc's root, if any does
  std::map<std::string, std::unique_ptr<SourceIni>> sources;  ///< by the path on the disc as it is spelt there
  std::vector<ComponentFact> components;
  std::vector<PassedOverEntry> passedOver;
  std::vector<ActionFact> actions;
  const SourceIni* sharesFile = nullptr;
  std::vector<ShareFact> shares;

  /// The file as a text that was read; null where it is not there.
  const SourceIni* source(const Found& file);
  /// Where a full path lies on the disc; nothing where it lies elsewhere.
  std::optional<std::string> onDisc(const std::string& fullPath) const;
};

struct MediaModel {
  std::deque<Disc> discs;  ///< at least one
  std::string productName;
  std::string codePage = "1252";

  std::vector<const ComponentFact*> components() const;
  /// Whether one of the media's shares has that name.
  bool hasShare(const std::string& name) const;
};

/// Reads the media.
std::unique_ptr<MediaModel> ReadMedia(const Media& media, const std::string& codePage);

/// The facts of the components, pre-install actions and shares of one disc; its inis and package root are known.
void ReadComponents(MediaModel& model, Disc& disc);
void ReadActions(const MediaModel& model, Disc& disc);
void ReadShares(Disc& disc);

/// The text of a file of this computer, up to so many bytes; nothing where it cannot be read.
std::optional<std::string> ReadText(const std::string& hostPath, std::size_t most);

}  // namespace qxia::check
