// A component's record: what its ini file and its package say, kept under its own key below the product's. One table
// says what each value is called, which ini key it comes from and where it stands in the type.
#pragma once

#include <string>

#include "base/ini.h"
#include "base/product_record.h"

namespace assistant {

/// One component. Texts are as recorded: truth values are "True" or "False", what is not given may be "N/A" or
/// "<ERROR>".
struct Component {
  std::string name;
  std::string key;      ///< registry path of its record
  std::string install;  ///< the file to run
  std::string productName = NotApplicable;
  std::string productVersion = NotApplicable;
  std::string productCode = NotApplicable;
  std::string iniPath;
  std::string path;  ///< relative to the package root, or in full
  std::string commandLine;
  std::string transform;
  std::string upgrade;
  std::string copyOp;
  std::string cleanup;
  std::string copyTarget;
  std::string machineType;
  std::string cost;
  double sequenceNumber = 0;
  std::string uninstallCommandLine;
  std::string runOnUninstall;
  std::string abortOnFail;

  std::string folder;  ///< `path` in full

  /// The package's product name; the component's own where the package has none.
  std::string displayName() const;
};

/// Names of values of a component's key that are spoken of outside the table as well: those that are written while it
/// is worked on, and those that messages or keys below it name.
namespace ComponentValue {
inline constexpr const char* AbortOnFail = ValueName::AbortOnFail;
inline constexpr const char* CopyOpTarget = "CopyOpTarget";
inline constexpr const char* Message = ValueName::Message;
inline constexpr const char* OlderCondition = "Condition";
inline constexpr const char* ProcessReturn = ValueName::ProcessReturn;
inline constexpr const char* SequenceNumber = "SequenceNumber";
inline constexpr const char* UninstallCommandLine = "UninstallCommandLine";
inline constexpr const char* Uninstalled = ValueName::Uninstalled;
}  // namespace ComponentValue
std::string ConditionListKey(const std::string& componentKey);
std::string CopyTargetListKey(const std::string& componentKey);

/// Fills in what is copied from the component's ini file as it stands there. Missing required keys are logged.
void ReadFromIni(Component& component, const modINI::IniFile& ini);

/// Writes the values of the record, in the order of the table. Raises an error that names the ini key for a text that
/// could not be read back, and 6087 as a failure of `here` when the sequence number is refused: without it the
/// component would not be known to the loop.
void WriteRecord(const Services& services, const Procedure& here, const Component& component);

/// The component as recorded. `folder` is found below the package root.
Component ReadRecord(platform::RegistryReader& registry, const std::string& product, const std::string& component,
                     const std::string& packageRoot);

/// A single value of the record as it is now: what the component itself may have changed.
std::string ReadNow(platform::RegistryReader& registry, const Component& component, const char* value);
void WriteNow(const Services& services, const Component& component, const char* value, const std::string& text);

/// The sequence number of a recorded component; 0 without one.
double RecordedSequenceNumber(platform::RegistryReader& registry, const std::string& product,
                              const std::string& component);

}  // namespace assistant
