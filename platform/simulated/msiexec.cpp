// What msiexec does with packages.
#include <algorithm>
#include <cstdlib>

#include "platform/simulated/command_line.h"
#include "platform/simulated/text.h"
#include "platform/simulated/windows_installer.h"

namespace simulated {
namespace {

// Exit codes of msiexec.
constexpr std::int32_t Success = 0;
constexpr std::int32_t UnknownProduct = 1605;
constexpr std::int32_t PackageNotFound = 1619;
constexpr std::int32_t PackageInvalid = 1620;
constexpr std::int32_t LogNotWritable = 1622;
constexpr std::int32_t OtherVersionInstalled = 1638;
constexpr std::int32_t InvalidCommandLine = 1639;
constexpr std::int32_t RestartStarted = 1641;
constexpr std::int32_t RestartRequired = 3010;
constexpr std::int32_t RestartNeeded = 3011;

bool Succeeds(std::int32_t exitCode) {
  return exitCode == Success || exitCode == RestartStarted || exitCode == RestartRequired || exitCode == RestartNeeded;
}

Outcome Ends(std::int32_t exitCode) {
  Outcome outcome;
  outcome.exitCode = exitCode;
  return outcome;
}

bool IsNewer(const std::string& version, const std::string& than) {
  const std::vector<std::string> a = Split(version, '.');
  const std::vector<std::string> b = Split(than, '.');
  for (std::size_t i = 0; i < a.size() && i < b.size(); ++i)
    if (std::atoi(a[i].c_str()) != std::atoi(b[i].c_str())) return std::atoi(a[i].c_str()) > std::atoi(b[i].c_str());
  return false;
}

bool IsSwitch(const std::string& argument) {
  return argument.size() >= 2 && (argument[0] == '/' || argument[0] == '-');
}

}  // namespace

/// The three things that matter of a command line.
struct WindowsInstaller::Request {
  char action = 0;     ///< i, x or f
  std::string target;  ///< package or product code
  std::string log;
};

namespace {

template <typename Request>
Request Read(const std::vector<std::string>& arguments) {
  Request request;
  for (std::size_t i = 1; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (!IsSwitch(argument)) continue;
    const char letter = Lower(argument)[1];
    const std::string next = i + 1 < arguments.size() ? arguments[i + 1] : "";
    if (letter == 'i' || letter == 'x' || letter == 'f') {
      const bool attached = letter != 'f' && argument.size() > 2;
      request.action = letter;
      request.target = attached ? argument.substr(2) : next;
      if (!attached) ++i;
    } else if (letter == 'l') {
      request.log = next;
      ++i;
    }
  }
  return request;
}

}  // namespace

void WindowsInstaller::declare(Package package) {
  package.path = files_.fullPath(package.path);
  packages_.push_back({std::move(package), false});
}

std::vector<std::string> WindowsInstaller::unused() const {
  std::vector<std::string> all;
  for (const Declared& declared : packages_)
    if (!declared.used) all.push_back("package " + declared.package.path);
  return all;
}

WindowsInstaller::Declared* WindowsInstaller::findByCode(const std::string& code, const std::string& version) {
  for (Declared& declared : packages_)
    if (SameText(declared.package.code, code) && declared.package.version == version) return &declared;
  return nullptr;
}

std::string WindowsInstaller::versionOf(const std::string& code) {
  const auto product = find(code);
  return product == products_.end() ? "" : product->version;
}

Outcome WindowsInstaller::installPackage(const Request& request) {
  if (!files_.exists(request.target)) return Ends(PackageNotFound);
  Declared* declared = findPackage(request.target);
  if (declared == nullptr) {
    journal_.undeclared.push_back("package " + request.target);
    return Ends(PackageInvalid);
  }
  declared->used = true;
  const Package& package = declared->package;
  const auto there = find(package.code);
  const bool installed = there != products_.end() && !there->version.empty();
  if (installed && there->version != package.version) return Ends(OtherVersionInstalled);
  Outcome outcome = package.install;
  if (Succeeds(outcome.exitCode)) outcome.installs.push_back({package.code, package.name, package.version});
  return outcome;
}

/// What is no code is the path of a package.
bool WindowsInstaller::isMissingPackage(const std::string& target) const {
  return target[0] != '{' && !files_.exists(target);
}

Outcome WindowsInstaller::removeProduct(const Request& request) {
  if (isMissingPackage(request.target)) return Ends(PackageNotFound);
  const Declared* byPath = findPackage(request.target);
  const std::string code = byPath == nullptr ? request.target : byPath->package.code;
  if (find(code) == products_.end()) return Ends(UnknownProduct);
  Declared* declared = findByCode(code, versionOf(code));
  if (declared != nullptr) declared->used = true;
  Outcome outcome = declared == nullptr ? Outcome{} : declared->package.removal;
  if (Succeeds(outcome.exitCode)) outcome.removes.push_back(code);
  return outcome;
}

Outcome WindowsInstaller::repairProduct(const Request& request) {
  if (isMissingPackage(request.target)) return Ends(PackageNotFound);
  Declared* declared = findPackage(request.target);
  if (declared == nullptr) declared = findByCode(request.target, versionOf(request.target));
  const std::string code = declared == nullptr ? request.target : declared->package.code;
  if (versionOf(code).empty()) return Ends(UnknownProduct);
  if (declared == nullptr) return {};
  declared->used = true;
  const Package& package = declared->package;
  Outcome outcome = package.repair;
  // A repair from a newer package makes the product that version.
  if (Succeeds(outcome.exitCode) && IsNewer(package.version, versionOf(code)))
    outcome.installs.push_back({package.code, package.name, package.version});
  return outcome;
}

Outcome WindowsInstaller::execute(const std::string& commandLine) {
  const auto request = Read<Request>(Arguments(commandLine));
  if (request.action == 0 || request.target.empty()) return Ends(InvalidCommandLine);
  if (!request.log.empty()) {
    const std::string log = files_.fullPath(request.log);
    if (!files_.isFolder(log.substr(0, log.rfind('\\')))) return Ends(LogNotWritable);
  }
  Outcome outcome = request.action == 'i'   ? installPackage(request)
                    : request.action == 'x' ? removeProduct(request)
                                            : repairProduct(request);
  if (!request.log.empty())
    outcome.files.push_back({request.log, commandLine + "\r\nresult " + std::to_string(outcome.exitCode) + "\r\n"});
  return outcome;
}

}  // namespace simulated
