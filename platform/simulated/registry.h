// The simulated registry. It is loaded from a .reg file once; every change is appended to that file as one .reg line at
// the moment it is made, so a change costs the same however large the registry is, and nothing is lost when the power
// goes. Loading writes the file anew, in order.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/registry.h"
#include "platform/simulated/journal.h"
#include "platform/simulated/reg_file.h"

namespace simulated {

/// Keys that may lie below each other, the root not counted.
inline constexpr std::size_t MostKeyLevels = 512;

class Registry : public platform::Registry {
 public:
  /// Raises std::runtime_error when the file holds a line that is not .reg text, naming file, line and remedy. Names
  /// are in the Japanese code page or in one of single bytes: read by the wrong one, some would be one name.
  Registry(std::string file, Journal& journal, bool japanese);
  ~Registry() override;
  Registry(const Registry&) = delete;
  Registry& operator=(const Registry&) = delete;

  platform::Status openKey(platform::RegistryRoot root, const std::string& path, platform::KeyAccess access,
                           platform::KeyHandle& key) override;
  platform::Status createKey(platform::RegistryRoot root, const std::string& path, platform::KeyAccess access,
                             platform::KeyHandle& key) override;
  platform::Status queryValue(platform::KeyHandle key, const std::string& name, platform::ValueType& type,
                              std::string& data) override;
  platform::Status setValue(platform::KeyHandle key, const std::string& name, platform::ValueType type,
                            const std::string& data) override;
  platform::Status deleteValue(platform::KeyHandle key, const std::string& name) override;
  platform::Status deleteKey(platform::RegistryRoot root, const std::string& path) override;
  platform::Status enumerateKey(platform::KeyHandle key, std::uint32_t index, std::string& name) override;
  platform::Status enumerateValue(platform::KeyHandle key, std::uint32_t index, std::string& name) override;
  void closeKey(platform::KeyHandle key) override;

  // What simulated programs and set-ups use. Keys are full paths that begin with HKEY_LOCAL_MACHINE or HKLM,
  // HKEY_CURRENT_USER or HKCU; another beginning raises std::runtime_error.

  /// Writes a value, creating the key.
  void put(const std::string& fullPath, const RegistryValue& value);
  void putText(const std::string& fullPath, const std::string& name, const std::string& text);
  /// Deletes a key with all that is in it; nothing happens when it is not there.
  void removeTree(const std::string& fullPath);
  /// Deletes a value; nothing happens when it is not there.
  void remove(const std::string& fullPath, const std::string& name);
  /// The value, or nullptr.
  const RegistryValue* find(const std::string& fullPath, const std::string& name) const;
  /// A text without its terminator, a number in decimal; "" when the value is not there.
  std::string text(const std::string& fullPath, const std::string& name) const;
  bool hasKey(const std::string& fullPath) const;
  std::vector<std::string> keys(const std::string& fullPath) const;
  std::vector<std::string> values(const std::string& fullPath) const;

  /// Whether names are in the Japanese code page; what is stored is read again by it.
  void setJapanese(bool japanese) {
    if (std::exchange(japanese_, japanese) != japanese) reload();
  }
  /// Forgets everything in memory and open keys, and reads the file again.
  void reload();
  /// Keys that are open now.
  std::size_t openKeys() const { return handles_.size(); }

 private:
  struct Key {
    std::string name;
    std::vector<RegistryValue> values;        ///< in the order in which they were first written
    std::vector<std::shared_ptr<Key>> below;  ///< sorted by name
    bool deleted = false;
    std::size_t asked = 0;  ///< the value that was found last, and is mostly the one that is asked for next
  };
  struct OpenKey {
    std::uintptr_t handle;
    std::shared_ptr<Key> key;
    const std::string* fullPath;  ///< one of `located_`
    platform::KeyAccess access = platform::KeyAccess::Plain;
  };
  using Position = std::vector<std::shared_ptr<Key>>::iterator;
  /// Where a path that was asked for led to.
  struct Place {
    std::shared_ptr<Key> key;
    std::pair<const std::string, Place>* next = nullptr;  ///< the one that was asked for behind it, last time
  };
  using Located = std::pair<const std::string, Place>;

  Position place(Key& key, std::string_view name) const;
  RegistryValue* valueOf(Key& key, std::string_view name) const;
  static void markDeleted(Key& key);
  std::vector<OpenKey>::iterator opened(platform::KeyHandle handle);
  std::shared_ptr<Key> locate(const std::string& fullPath) const;
  const Located* known(const std::string& fullPath) const;
  const Located& remember(const std::string& fullPath, std::shared_ptr<Key> key) const;
  std::shared_ptr<Key> walk(const std::string& fullPath) const;
  std::shared_ptr<Key> make(const std::string& fullPath, bool& made);
  void detach(const std::string& fullPath);

  /// What an operation does with a key, and the key must have been opened for.
  enum class Right { Query, Set, Enumerate };

  static bool grants(platform::KeyAccess access, Right right);
  platform::Status use(platform::KeyHandle handle, Right right, OpenKey*& open);
  platform::Status enter(const Located& located, platform::KeyAccess access, platform::KeyHandle& handle);
  void store(Key& key, const std::string& fullPath, const RegistryValue& value);

  void load();
  void apply(const RegLine& line, std::string& currentKey);
  void rewrite();
  void writeTree(std::FILE* out, const Key& key, const std::string& fullPath) const;
  void append(const std::string& keyLine, const std::string& line);

  std::string file_;
  Journal& journal_;
  std::shared_ptr<Key> root_;
  /// Nearly all paths are asked for again and again, and most in the same order.
  mutable std::unordered_map<std::string, Place> located_;
  mutable Place unasked_;             ///< stands in front of the first
  mutable Place* asked_ = &unasked_;  ///< the one that was asked for last
  std::string path_;                  ///< the one that is being opened: its room is used again
  std::vector<OpenKey> handles_;      ///< few at any time
  std::uintptr_t nextHandle_ = 1;
  std::FILE* journalFile_ = nullptr;
  std::string currentKeyLine_;
  bool japanese_;
};

}  // namespace simulated
