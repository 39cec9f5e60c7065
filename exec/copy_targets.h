// Where a component is copied to.
#pragma once

#include <string>
#include <vector>

#include "base/component.h"
#include "base/ini.h"
#include "base/product_record.h"

namespace assistant {

/// The folders that a component is copied to. `appendPath`: they are roots below which the component's own "Path"
/// follows.
struct CopyTargets {
  std::vector<std::string> folders;
  bool appendPath = true;
  bool held = false;  ///< they are the product's own folder for what runs from a copy

  /// The first folder; "" when there is none.
  std::string first() const { return folders.empty() ? std::string() : folders.front(); }
};

/// Name of the n-th target's key or value.
std::string NumberedTarget(int number);

/// The numbered keys "CopyOpTarget1", "CopyOpTarget2", ... of a component ini's section up to the first empty one. A
/// failure is logged and shown.
std::vector<std::string> ReadIniCopyOps(const modINI::IniFile& ini, const std::string& section);

/// The targets that the component's record holds: its list, or else its single "CopyOpTarget". Raises a failure, which
/// is logged and shown: a list that cannot be read is no reason to take another target.
CopyTargets ReadRegCopyOps(const Services& services, const Component& component);

/// The targets, or where there is no first one the product's own folder for such copies ("CopyOpRoot", "CopyOpHold").
CopyTargets WithDefaultTarget(const ProductRecord& record, const CopyTargets& targets, const RecordValue& root);

/// The folder that a target means for this component.
std::string CopyDestination(const Component& component, const std::string& target, bool appendPath);

/// The last character of the component's "CopyOp", which alone counts.
namespace CopyCode {
inline constexpr char None = '\0';
inline constexpr char IsTheInstallation = '1';
inline constexpr char RunsFromThere = '2';
}  // namespace CopyCode
char CopyCodeOf(const Component& component);

}  // namespace assistant
