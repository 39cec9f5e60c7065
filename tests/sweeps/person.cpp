#include "tests/sweeps/person.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include "platform/simulated/text.h"
#include "tests/support/media.h"
#include "tests/support/procedures.h"

namespace sweeps {
namespace {

/// A run of the lives told here takes some thousand operations and a few minutes.
constexpr int MostOperations = 400000;
constexpr std::uint64_t MostMilliseconds = 3ULL * 24 * 3600 * 1000;
constexpr int MostStarts = 12;

/// Thrown at a limit. No std::exception, so that no error handler of the program swallows it.
struct Endless {};

std::string ReadHost(const std::filesystem::path& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

bool IsTold(const std::string& line) {
  return line.find(ErrorMark) != std::string::npos || line.find(WarningMark) != std::string::npos;
}

/// The third cell of a row.
std::string Description(const std::string& line) {
  const std::size_t at = line.find("<TD width=\"550\">");
  return at == std::string::npos ? line : line.substr(at + 16);
}

}  // namespace

bool IsGone(Rig& rig, const std::string& product) {
  const std::string entry = std::string("SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\") + product;
  return !rig.hasKey(std::string(ProductsRecord) + "\\" + product) && !rig.hasKey(entry) &&
         !rig.hasKey(std::string(InstallationRecord) + "\\Earlier Records\\" + product) &&
         !simulated::ContainsText(rig.value(ProductsRecord, "Uninstalled"), product);
}

Person::Person(Rig& rig) : rig_(rig) {
  rig_.tolerateUnused();
}

End Person::use(const Start& start) {
  std::optional<Start> next = start;
  End end;
  for (int starts = 0; next; ++starts) {
    if (starts == MostStarts) {
      broken_.push_back("started again and again: " + next->program + " " + next->arguments);
      break;
    }
    end = runOnce(*next);
    next = follows(end);
    // A restart that nothing comes of leaves the person with nothing.
    if (!next && restarted_) end.known = false;
  }
  return end;
}

/// A person does what is asked: any number of times, and with what was prepared at the last start.
void Person::beReady() {
  simulated::Screen& screen = rig_.machine().screen();
  for (int i = 0; i < 2; ++i) {
    screen.press(platform::WindowEvent::Continue);
    screen.type({"secret", "secret"});
    screen.answer({"Confirm Uninstall", "", platform::BoxAnswer::Yes, {}});
    screen.answer({"", "Insert the disk", platform::BoxAnswer::Ok, [this] {
                     if (!nextDisc_.empty()) rig_.insertDisc(nextDisc_);
                   }});
  }
}

void Person::limit(faults::Faults& faults) {
  simulated::Clock& clock = rig_.machine().clock();
  clock.at(clock.elapsed() + MostMilliseconds, [] { throw Endless(); });
  int operations = 0;
  faults.watch([operations](const std::string&, const std::string&) mutable {
    if (++operations > MostOperations) throw Endless();
  });
}

void Person::arrange(faults::Faults& faults) {
  limit(faults);
  faults.noteReads();
  const int number = trouble_.operation - static_cast<int>((trouble_.isRead ? readHistory_ : history_).size());
  if (number <= 0 || !hit_.empty()) return;
  if (trouble_.isCut) {
    faults.cutPowerBefore(number);
  } else if (trouble_.isRead) {
    faults.failReadAt(number, trouble_.status);
  } else {
    faults.failAt(number, trouble_.status);
  }
}

void Person::takeNote(const faults::Faults& faults, bool cut) {
  const std::size_t number = static_cast<std::size_t>(trouble_.operation);
  const std::vector<std::string>& counted = trouble_.isRead ? readHistory_ : history_;
  const std::size_t before = counted.size();
  history_.insert(history_.end(), faults.history().begin(), faults.history().end());
  readHistory_.insert(readHistory_.end(), faults.readHistory().begin(), faults.readHistory().end());
  if (cut) hit_ = "behind " + (history_.empty() ? "nothing" : history_.back());
  if (!trouble_.isCut && number > before && number <= counted.size()) hit_ = counted[number - 1];
  if (!hit_.empty() && hitProgram_.empty()) hitProgram_ = rig_.machine().machine().programPath();
}

End Person::runOnce(const Start& start) {
  simulated::Workstation& machine = rig_.machine();
  beReady();
  ranBefore_ = rig_.ran().size();
  const std::size_t shownBefore = machine.screen().shown(platform::Control::LongMessage).size();
  machine.machine().setProgram(start.program, "");
  faults::Platform faulty(machine);
  arrange(faulty.faults());
  End end;
  bool cut = false;
  try {
    end.exitCode = rig_.run(start.arguments, faulty);
    end.known = true;
  } catch (const faults::PowerLoss&) {
    cut = true;
  } catch (const Endless&) {
    broken_.push_back("no end: " + start.program + " " + start.arguments);
  } catch (const std::exception& failure) {
    broken_.push_back(std::string("crashed: ") + failure.what());
  }
  takeNote(faulty.faults(), cut);
  const auto& shown = machine.screen().shown(platform::Control::LongMessage);
  const bool endShown = !endMessage_.empty() && shown.size() > shownBefore && shown.back() == endMessage_;
  carryOutSchedule();
  // What closing down could not do is told in a box behind the end message.
  const bool errorBox = readTold();
  end.toldSuccess = (end.known && end.exitCode == 0) || (endShown && !errorBox);
  return end;
}

std::optional<Start> Person::follows(const End& end) {
  restarted_ = !end.known || rig_.machine().restartRequested();
  return restarted_ ? logon() : startedCopy();
}

/// The copy that the program has started and left to itself.
std::optional<Start> Person::startedCopy() {
  const std::string beginning = std::string("\"") + LocalProgram + "\"";
  for (std::size_t i = ranBefore_; i < rig_.ran().size(); ++i) {
    const std::string& command = rig_.ran()[i];
    if (command.rfind(beginning, 0) == 0) return Start{LocalProgram, simulated::Trim(command.substr(beginning.size()))};
  }
  return std::nullopt;
}

std::optional<Start> Person::logon() {
  rig_.restart();
  std::vector<Start> starts;
  for (const std::string& command : rig_.machine().logonCommands()) {
    const std::size_t end = command.find("\"", 1);
    if (command.find("QX Installation Assistant") == std::string::npos || end == std::string::npos) continue;
    starts.push_back({command.substr(1, end - 1), simulated::Trim(command.substr(end + 1))});
  }
  if (starts.size() > 1) broken_.push_back("the logon starts the program more than once");
  if (starts.empty() || !rig_.exists(starts.front().program)) return std::nullopt;
  return starts.front();
}

/// The system's scheduler: what is to be deleted goes when the program has ended. It deletes nothing that is read-only.
void Person::carryOutSchedule() {
  for (; scheduleSeen_ < rig_.ran().size(); ++scheduleSeen_) {
    const std::string& command = rig_.ran()[scheduleSeen_];
    const std::size_t quote = command.find('"');
    if (command.rfind("AT ", 0) != 0 || quote == std::string::npos) continue;
    rig_.machine().files().deleteFile(command.substr(quote + 1, command.size() - quote - 2));
  }
}

/// True when a box told of an error since the last look.
bool Person::readTold() {
  for (const auto& entry : std::filesystem::recursive_directory_iterator(rig_.machine().ownFolder('C'))) {
    const bool isLog = entry.path().extension() == ".html";
    if (!isLog && entry.path().filename() != "IAStartupLog.txt") continue;
    std::istringstream lines(ReadHost(entry.path()));
    for (std::string line; std::getline(lines, line);)
      if (!isLog || IsTold(line)) told_.insert(isLog ? Description(line) : line);
  }
  const auto& effects = rig_.machine().effects();
  bool errorBox = false;
  for (; effectsSeen_ < effects.size(); ++effectsSeen_) {
    const std::string& effect = effects[effectsSeen_];
    if (effect.rfind("event log", 0) == 0 || effect.rfind("box ", 0) == 0) told_.insert(effect);
    errorBox = errorBox || effect.rfind("box \"QX Installation Assistant Error\"", 0) == 0;
  }
  // A box of an error that nobody expected is answered by its default.
  rig_.machine().journal().unscripted.clear();
  return errorBox;
}

}  // namespace sweeps
