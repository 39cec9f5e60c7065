#include "app/qxia/check/known_keys.h"

#include <algorithm>
#include <cstdlib>

#include "base/text.h"

namespace qxia::check {
namespace {

using enum IniKind;
using enum KeyNeed;

constexpr KnownKey Keys[] = {
    {Application, "Product", "Name", Vital},
    {Application, "Product", "Version", Logged},
    {Application, "Product", "PackageRoot", Vital},
    {Application, "Product", "ProductIni", Vital},
    {Application, "Product", "AbortOnFail", Logged, true},
    {Application, "Product", "EndMessage"},
    {Application, "Product", "NumberOfLoops"},
    {Application, "Product", "LogFilePath"},
    {Application, "Product", "ForceUninstallReboot", Logged, true},
    {Application, "Product", "CopyOpRoot", Logged},
    {Application, "Product", "CopyOpHold", Logged},
    {Application, "Product", "PreviousVolumeName"},
    {Application, "Product", "NextVolumeName"},
    {Application, "Config", "Verbose", Logged, true},
    {Application, "Config", "Silent", Logged, true},
    {Application, "Config", "RequestLogonDetails", Logged, true},
    {Product, "Product", "Name"},
    {Product, "Product", "ServerType"},
    {Product, "Product", "PreviousVolumeName"},
    {Product, "Product", "NextVolumeName"},
    {Product, "Product", "CanUninstall", Optional, true},
    {Product, "General", "Version", Logged},
    {Product, "Connection", "BuildServerDriveMapping"},
    {Product, "Connection", "IP"},
    {Product, "Connection", "DomainName"},
    {Product, "Connection", "Username"},
    {Product, "Connection", "Password"},
    {Product, ActionSection, "Install"},
    {Product, ActionSection, "CommandLine"},
    {Component, ComponentSection, "Install", Vital},
    {Component, ComponentSection, "CommandLine", Logged},
    {Component, ComponentSection, "Upgrade", Logged, true},
    {Component, ComponentSection, "MachineType", Logged},
    {Component, ComponentSection, "CopyOp", Logged},
    {Component, ComponentSection, "Cost", Logged},
    {Component, ComponentSection, "Path"},
    {Component, ComponentSection, "Transform"},
    {Component, ComponentSection, "AbortOnFail", Optional, true},
    {Component, ComponentSection, "Condition", Optional, false, true},
    {Component, ComponentSection, "CopyOpTarget", Optional, false, true},
    {Component, ComponentSection, "UninstallCommandLine"},
    {Component, ComponentSection, "Cleanup", Optional, true},
};

constexpr ListSection Lists[] = {
    {Application, "ForceUninstall", true}, {Application, "ForceDelete", false}, {Product, "Actions", true},
    {Product, "PreInstallActions", false}, {Product, "folders", true},          {Product, "ForceUninstall", true},
};

}  // namespace

std::span<const KnownKey> KnownKeys() {
  return Keys;
}

std::span<const ListSection> ListSections() {
  return Lists;
}

const KnownKey* FindKnownKey(IniKind ini, const std::string& section, const std::string& key) {
  const auto* found = std::find_if(std::begin(Keys), std::end(Keys), [&](const KnownKey& row) {
    if (row.ini != ini || !assistant::EqualIgnoringCase(row.section, section)) return false;
    return assistant::EqualIgnoringCase(row.key, key) || (row.isNumbered && NumberOf(key, row.key) > 0);
  });
  return found == std::end(Keys) ? nullptr : found;
}

int NumberOf(const std::string& key, const std::string& name) {
  if (!assistant::StartsWithIgnoringCase(key, name)) return 0;
  const std::string number = key.substr(name.size());
  const bool isNumber =
      !number.empty() && number.front() != '0' && number.find_first_not_of("0123456789") == std::string::npos;
  return isNumber ? std::atoi(number.c_str()) : 0;
}

}  // namespace qxia::check
