#include "tests/support/rig.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <sstream>

#include "core/program.h"
#include "platform/faults/platform.h"
#include "platform/simulated/text.h"

namespace {

constexpr const char* LogRoot = "C:\\Program Files\\Tarvel\\Installation\\QX Installation Assistant\\";

/// What looks at each workstation before it goes; nobody by default.
std::function<void(Rig&)>& Onlooker() {
  static std::function<void(Rig&)> onlooker = [](Rig&) {};
  return onlooker;
}

std::string WithCarriageReturns(const std::string& text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\n' && (i == 0 || text[i - 1] != '\r')) out += '\r';
    out += text[i];
  }
  return out;
}

std::string LocalMachine(const std::string& key) {
  return "HKEY_LOCAL_MACHINE\\" + key;
}

}  // namespace

Names Words(const std::string& text) {
  std::istringstream words(text);
  return {std::istream_iterator<std::string>(words), {}};
}

Rig::Rig() : machine_(std::make_unique<simulated::Workstation>(folder() + "/machine")) {
  machine_->files().makeFolder("C:\\QX");
  insertDisc("DISC1");
}

Rig::~Rig() {
  Onlooker()(*this);
  for (const std::string& what : machine_->undeclared()) ADD_FAILURE() << "came undeclared: " << what;
  for (const std::string& what : machine_->unused())
    if (!tolerateUnused_) ADD_FAILURE() << "declared and never used: " << what;
}

void Rig::lookAtEach(std::function<void(Rig&)> look) {
  Onlooker() = std::move(look);
}

std::string Rig::discFolder(const std::string& label) {
  const std::string disc = folder() + "/disc_" + label;
  std::filesystem::create_directories(disc);
  return disc;
}

void Rig::insertDisc(const std::string& label) {
  machine_->mount('D', discFolder(label), platform::DriveType::CdRom, label);
}

void Rig::file(const std::string& path, const std::string& text) {
  machine_->files().put(path, WithCarriageReturns(text));
}

void Rig::package(simulated::Package package) {
  if (!machine_->files().exists(package.path)) machine_->files().put(package.path, "package " + package.code);
  machine_->installer().declare(std::move(package));
}

void Rig::program(const std::string& pattern, simulated::Outcome outcome) {
  program(pattern, simulated::Match::Contains, std::move(outcome));
}

void Rig::program(const std::string& pattern, simulated::Match match, simulated::Outcome outcome) {
  machine_->processes().declare({pattern, std::move(outcome), match});
}

void Rig::answer(const std::string& title, platform::BoxAnswer answer, const std::string& textPart) {
  machine_->screen().answer({title, textPart, answer});
}

void Rig::press(std::initializer_list<platform::WindowEvent> events) {
  for (const platform::WindowEvent event : events) machine_->screen().press(event);
}

void Rig::set(const std::string& key, const std::string& name, const std::string& text) {
  machine_->registry().putText(LocalMachine(key), name, text);
}

int Rig::run(const std::string& arguments) {
  return run(arguments, *machine_);
}

int Rig::run(const std::string& arguments, platform::Platform& machine) {
  machine_->machine().setProgram(machine_->machine().programPath(), arguments);
  return assistant::RunProgram(machine);
}

int Rig::runFailing(const std::string& operation, const std::string& target, platform::Status status,
                    const std::string& arguments, int times) {
  faults::Platform faulty(*machine_);
  faulty.faults().fail(operation, target, status, times);
  return run(arguments, faulty);
}

int Rig::runCommand(const std::string& programPath, const std::string& commandLine) {
  machine_->machine().setProgram(programPath, "");
  machine_->machine().setCommandLine(commandLine);
  return assistant::RunProgram(*machine_);
}

bool Rig::runUntilPowerCut(const std::string& arguments, int operation) {
  faults::Platform faulty(*machine_);
  faulty.faults().cutPowerBefore(operation);
  try {
    run(arguments, faulty);
    return false;
  } catch (const faults::PowerLoss&) {
    restart();
    return true;
  }
}

std::string Rig::logonArguments() {
  const std::string program = "\"" + machine_->machine().programPath() + "\"";
  for (const std::string& command : machine_->logonCommands())
    if (simulated::StartsWithText(command, program)) return simulated::Trim(command.substr(program.size()));
  ADD_FAILURE() << "the logon does not start " << program;
  return "";
}

std::string Rig::value(const std::string& key, const std::string& name) {
  return machine_->registry().text(LocalMachine(key), name);
}

bool Rig::hasKey(const std::string& key) {
  return machine_->registry().hasKey(LocalMachine(key));
}

bool Rig::hasValue(const std::string& key, const std::string& name) {
  return machine_->registry().find(LocalMachine(key), name) != nullptr;
}

Names Rig::registryLines(const std::string& key) {
  Names lines;
  for (const std::string& name : machine_->registry().values(LocalMachine(key))) {
    lines.push_back(key + "\\" + name + "=" + value(key, name));
  }
  std::sort(lines.begin(), lines.end());
  for (const std::string& below : machine_->registry().keys(LocalMachine(key))) {
    const Names more = registryLines(key + "\\" + below);
    lines.insert(lines.end(), more.begin(), more.end());
  }
  return lines;
}

std::string Rig::text(const std::string& path) {
  return machine_->files().content(path).value_or("");
}

bool Rig::exists(const std::string& path) {
  return machine_->files().exists(path);
}

std::string Rig::log(const std::string& product) {
  return text(LogRoot + product + "\\QX Installation Assistant.html");
}

std::string Rig::uninstallLog(const std::string& product) {
  return text(LogRoot + product + "\\QX Installation Assistant Uninstall.html");
}

Names Rig::effects(const std::string& beginning) {
  Names found;
  for (const std::string& effect : machine_->effects())
    if (effect.rfind(beginning, 0) == 0) found.push_back(effect);
  return found;
}
