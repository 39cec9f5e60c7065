#include "tests/support/discs.h"

#include <utility>

namespace {

std::string Folder(const std::string& component) {
  return "D:\\Packages\\" + component + "\\";
}

}  // namespace

void Discs::write(const std::string& label, const std::string& lines, const Names& components,
                  const std::string& componentLines) {
  rig_.insertDisc(label);
  rig_.file(DiscProgram, "the program");
  rig_.file(DiscIni,
            "[Product]\nName=Office Suite\nVersion=2.1.0\nPackageRoot=CDROM(\\Packages)\nProductIni=PATH(product.ini)\n"
            "AbortOnFail=false\nForceUninstallReboot=False\nCopyOpRoot=N/A\nCopyOpHold=N/A\n"
            "[Config]\nVerbose=true\nSilent=false\nRequestLogonDetails=false\n");
  std::string actions;
  for (const std::string& name : components) {
    actions += name + "=" + name + "\\c.ini\n";
    rig_.file(Folder(name) + name + ".exe", "program");
    rig_.file(Folder(name) + "c.ini", "[" + name + "]\nInstall=" + name + ".exe\n" + componentLines + RequiredLines);
  }
  rig_.file("D:\\product.ini",
            "[Product]\nName=Office Suite\n" + lines + "[General]\nVersion=2.1.0\n[Actions]\n" + actions);
}

void Discs::writePair(const std::string& secondLines) {
  write("DISC2", "PreviousVolumeName=DISC1\n" + secondLines, {"Three"});
  write("DISC1", "NextVolumeName=DISC2\n", {"One", "Two"});
  for (const char* name : {"One", "Two", "Three"}) declare(name);
}

void Discs::declare(const std::string& component, simulated::Outcome outcome) {
  rig_.program(Folder(component).substr(2) + component + ".exe", std::move(outcome));
}

void Discs::changeAt(const std::string& text, const std::string& label) {
  rig_.machine().screen().answer({Title, text, platform::BoxAnswer::Ok, [this, label] { rig_.insertDisc(label); }});
}

int Discs::startFromDisc(const std::string& switches) {
  rig_.machine().machine().setProgram(DiscProgram, "");
  return rig_.run(switches);
}

int Discs::installLocally(const std::string& switches) {
  rig_.program(LocalCommand);
  EXPECT_EQ(startFromDisc(switches), 0);
  const std::string command = rig_.ran().back();
  rig_.machine().machine().setProgram(LocalProgram, "");
  return rig_.run(command.substr(std::string(LocalProgram).size() + 3));
}

Names Discs::ran() {
  Names names;
  for (const std::string& command : rig_.ran()) {
    const std::size_t at = command.find("\\Packages\\");
    if (at != std::string::npos) names.push_back(command.substr(at + 10, command.find('\\', at + 10) - at - 10));
  }
  return names;
}
