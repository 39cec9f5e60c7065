// A product on several discs: what lies on each of them, and the local copy of the program that is started from the
// first.
#pragma once

#include <string>

#include "tests/support/media.h"

inline constexpr const char* DiscProgram = "D:\\QX Installation Assistant.exe";
inline constexpr const char* DiscIni = "D:\\QX Installation Assistant.ini";
/// What starts the local copy, without switches.
inline constexpr const char* LocalCommand =
    "\"C:\\Program Files\\Tarvel\\Installation\\QX Installation Assistant\\QX Installation Assistant.exe\" "
    "/is=D:\\QX Installation Assistant.ini /ia=D:\\product.ini";
inline constexpr const char* DiscPrompt = "Insert the disk labelled DISC2 and click OK to continue";

/// Discs of the Office Suite, each with the program, both ini files and components that are programs.
class Discs {
 public:
  explicit Discs(Rig& rig) : rig_(rig) {}

  /// Writes a disc and leaves it in the drive; `lines` are lines of its product ini's [Product].
  void write(const std::string& label, const std::string& lines, const Names& components,
             const std::string& componentLines = "");
  /// The usual pair: components One and Two on the first disc, which is in the drive, Three on the second.
  void writePair(const std::string& secondLines = "");
  void declare(const std::string& component, simulated::Outcome outcome = {});
  /// A person changes the disc when the box with this text shows, and answers it.
  void changeAt(const std::string& text, const std::string& label);

  int startFromDisc(const std::string& switches = "/s");
  /// Starts the program from the disc and then, as the machine would do at once, the local copy that it started.
  int installLocally(const std::string& switches = "/s");
  /// Components that ran, in order.
  Names ran();

 private:
  Rig& rig_;
};
