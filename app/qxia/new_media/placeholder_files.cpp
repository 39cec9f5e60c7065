#include "app/qxia/new_media/placeholder_files.h"

#include <initializer_list>

#include "app/qxia/new_media/ini_texts.h"

namespace qxia::new_media {
namespace {

constexpr std::uint32_t ImageBase = 0x400000;
constexpr std::uint32_t Page = 0x1000;
constexpr std::uint32_t FilePage = 0x200;

void Put(std::string& bytes, std::size_t at, std::uint32_t number, int size) {
  for (int i = 0; i < size; ++i) bytes[at + static_cast<std::size_t>(i)] = static_cast<char>(number >> 8 * i & 0xff);
}

void PutText(std::string& bytes, std::size_t at, std::string_view text) {
  bytes.replace(at, text.size(), text);
}

struct Field {
  std::size_t at;
  std::uint32_t number;
  int size;
};

/// The headers of a program with one section, in the fields that a loader looks at.
void PutHeaders(std::string& program) {
  constexpr std::size_t header = 0x40;
  PutText(program, 0, "MZ");
  PutText(program, header, std::string_view("PE\0\0", 4));
  constexpr std::size_t optional = header + 24;
  constexpr std::size_t section = optional + 0xe0;
  for (const Field& field : std::initializer_list<Field>{
           {0x3c, header, 4},
           {header + 4, 0x014c, 2},      // i386
           {header + 6, 1, 2},           // sections
           {header + 20, 0xe0, 2},       // size of what follows
           {header + 22, 0x010f, 2},     // without relocations, 32-bit, executable
           {optional, 0x010b, 2},        // PE32
           {optional + 4, FilePage, 4},  // code
           {optional + 16, Page, 4},     // entry
           {optional + 20, Page, 4},
           {optional + 28, ImageBase, 4},
           {optional + 32, Page, 4},
           {optional + 36, FilePage, 4},
           {optional + 40, 4, 2},  // oldest system: 4.0, and of its subsystem 3.10, which NT 3.51 takes
           {optional + 48, 3, 2},
           {optional + 50, 10, 2},
           {optional + 56, 2 * Page, 4},
           {optional + 60, FilePage, 4},
           {optional + 68, 2, 2},  // with windows, of which it has none
           {optional + 72, 0x100000, 4},
           {optional + 76, Page, 4},
           {optional + 80, 0x100000, 4},
           {optional + 84, Page, 4},
           {optional + 92, 16, 4},
           {optional + 104, Page + 0x20, 4},  // imports
           {optional + 108, 0x28, 4},
           {section + 8, FilePage, 4},
           {section + 12, Page, 4},
           {section + 16, FilePage, 4},
           {section + 20, FilePage, 4},
           {section + 36, 0xe0000020, 4}})
    Put(program, field.at, field.number, field.size);
  PutText(program, section, ".text");
}

/// push exitCode; call [ExitProcess]. The import is there for the systems that start no program without one.
void PutCode(std::string& program, std::uint32_t exitCode) {
  constexpr std::size_t at = FilePage;
  Put(program, at, 0x68, 1);
  Put(program, at + 1, exitCode, 4);
  Put(program, at + 5, 0x15ff, 2);
  Put(program, at + 7, ImageBase + Page + 0x60, 4);
  Put(program, at + 0x20, Page + 0x50, 4);  // names
  Put(program, at + 0x2c, Page + 0x80, 4);  // library
  Put(program, at + 0x30, Page + 0x60, 4);  // addresses
  Put(program, at + 0x50, Page + 0x70, 4);
  Put(program, at + 0x60, Page + 0x70, 4);
  PutText(program, at + 0x72, "ExitProcess");
  PutText(program, at + 0x80, "KERNEL32.dll");
}

std::string WindowsLines(std::initializer_list<std::string> lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\r\n";
  return text;
}

}  // namespace

std::string PlaceholderProgram(std::uint32_t exitCode) {
  std::string program(std::size_t{2} * FilePage, '\0');
  PutHeaders(program);
  PutCode(program, exitCode);
  return program;
}

std::string PlaceholderBatch(const PlannedComponent& component) {
  return WindowsLines({"@echo off", "rem " + component.name + ": write here what is to be done.",
                       "rem To report a failure, set Process Return of the component's key to Fail (see vbs)."});
}

std::string PlaceholderScript(const PlannedComponent& component, const std::string& product) {
  const std::string key = R"(HKLM\Software\Tarvel\Installation\Products\)" + product + "\\" + component.name + "\\";
  return WindowsLines({"' " + component.name + ": write here what is to be done.",
                       "' An exit code other than 0 is a failure; so is Fail, with a reason for the log:",
                       "' Set shell = CreateObject(\"WScript.Shell\")",
                       "' shell.RegWrite \"" + key + "Process Return\", \"Fail\"",
                       "' shell.RegWrite \"" + key + "Message\", \"The reason.\"", "WScript.Quit 0"});
}

std::string RestartScript(const PlannedComponent& component) {
  return WindowsLines(
      {"' " + component.name + ": runs the program beside this script and hands its request for a restart on.",
       "Option Explicit", "Dim shell, folder, command, argument, at, code",
       "Set shell = CreateObject(\"WScript.Shell\")",
       "folder = Left(WScript.ScriptFullName, InStrRev(WScript.ScriptFullName, \"\\\"))",
       "command = \"\"\"\" & folder & \"" + FileNameOf(component) + ".exe\"\"\"",
       "For at = 0 To WScript.Arguments.Count - 1", "  argument = WScript.Arguments(at)",
       "  If InStr(argument, \" \") > 0 Then argument = \"\"\"\" & argument & \"\"\"\"",
       "  command = command & \" \" & argument", "Next", "code = shell.Run(command, 1, True)",
       "' 3010 and 1641 are how programs ask for a restart.", "If code = 3010 Or code = 1641 Then",
       "  ' The machine restarts when this script has ended, and the run goes on with the next component.",
       "  shell.RegWrite \"HKLM\\Software\\Tarvel\\Installation\\Reboot\", \"immediate\"", "  code = 0", "End If",
       "WScript.Quit code"});
}

std::string PlaceholderText(const PlannedComponent& component) {
  return WindowsLines({component.name + ": put your files beside this one; sub-folders are copied, too."});
}

}  // namespace qxia::new_media
