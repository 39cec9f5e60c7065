#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <stdexcept>

#include "app/qxia/html_page.h"
#include "app/qxia/new_media/ini_texts.h"
#include "app/qxia/new_media/placeholder_files.h"
#include "platform/simulated/host.h"
#include "platform/simulated/text.h"

namespace qxia::new_media {
namespace {

constexpr const char* Maker = "wixl";

/// The path of a program of the host; "" when the search path has none of that name.
std::string FindOnPath(const std::string& name) {
  const char* path = std::getenv("PATH");
  for (const std::string& folder : simulated::Split(path == nullptr ? "" : path, ':'))
    if (std::string file = folder + "/" + name; !folder.empty() && access(file.c_str(), X_OK) == 0) return file;
  return "";
}

/// A random GUID of version 4, in capitals as packages have them.
std::string NewGuid() {
  std::random_device random;
  std::array<unsigned, 4> parts{};
  for (unsigned& part : parts) part = random();
  char text[40];
  std::snprintf(text, sizeof text, "{%08X-%04X-4%03X-%04X-%04X%08X}", parts[0], parts[1] >> 16, parts[1] & 0xfff,
                0x8000 | (parts[2] >> 16 & 0x3fff), parts[2] & 0xffff, parts[3]);
  return text;
}

std::string Source(const PlannedComponent& component, const std::string& product) {
  const std::string name = EscapedHtml(product + " " + component.name);
  return "<?xml version='1.0' encoding='utf-8'?>\n<Wix xmlns='http://schemas.microsoft.com/wix/2006/wi'>\n"
         "  <Product Id='" +
         NewGuid() + "' UpgradeCode='" + NewGuid() + "' Name='" + name + "' Manufacturer='" + EscapedHtml(product) +
         "' Language='1033' Version='" + ProductVersion +
         "'>\n"
         "    <Package InstallerVersion='100' Compressed='yes'/>\n"
         "    <Media Id='1' Cabinet='files.cab' EmbedCab='yes'/>\n"
         "    <Directory Id='TARGETDIR' Name='SourceDir'>\n"
         "      <Component Id='Mark' Guid='" +
         NewGuid() +
         "'>\n"
         "        <RegistryValue Root='HKLM' Key='Software\\" +
         EscapedHtml(product) + "\\" + EscapedHtml(component.name) + "' Name='Version' Type='string' Value='" +
         ProductVersion +
         "' KeyPath='yes'/>\n"
         "      </Component>\n    </Directory>\n"
         "    <Feature Id='All' Level='1'><ComponentRef Id='Mark'/></Feature>\n  </Product>\n</Wix>\n";
}

/// Waits for the program; its exit code, or -1 when it could not be started.
int RunHostProgram(const std::string& program, std::vector<std::string> words) {
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  pid_t child = 0;
  int status = 0;
  if (posix_spawn(&child, program.c_str(), nullptr, nullptr, arguments.data(), environ) != 0) return -1;
  if (waitpid(child, &status, 0) != child || !WIFEXITED(status)) return -1;
  return WEXITSTATUS(status);
}

}  // namespace

bool CanMakePackages() {
  return !FindOnPath(Maker).empty();
}

void MakePackage(const PlannedComponent& component, const std::string& product, const std::string& path) {
  const std::string source = path + ".wxs";
  simulated::WriteHostFile(source, Source(component, product));
  const int code = RunHostProgram(FindOnPath(Maker), {Maker, "-o", path, source});
  unlink(source.c_str());
  if (code != 0)
    throw std::runtime_error(path + " could not be made: " + Maker + " ended with " + std::to_string(code));
}

}  // namespace qxia::new_media
