// The ini examples of the documents are media as `qxia check` wants them.
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>

#include "app/qxia/check/rules.h"
#include "tests/qxia/check_media.h"

namespace qxia {
namespace {

constexpr const char* App = "disc1/QX Installation Assistant.ini";
constexpr const char* Product = "disc1/product.ini";

struct Example {
  std::string name;  ///< the file that it is; "" for a part of one
  std::string text;
};

/// The blocks of a page that are marked so.
std::vector<Example> ExamplesOf(const std::string& page) {
  static const std::regex block("(?:`([^`\n]+)`[^`\n]*(?:`[^`\n]*`[^`\n]*)*\n\n)?```(\\w*)\n((?:[^`]|`[^`])*?)```");
  const std::string text = SourceText(page);
  std::vector<Example> examples;
  for (std::sregex_iterator found(text.begin(), text.end(), block), end; found != end; ++found)
    examples.push_back({(*found)[1], (*found)[3]});
  return examples;
}

const Example& ExampleWith(const std::vector<Example>& examples, const std::string& part) {
  for (const Example& example : examples)
    if (example.text.find(part) != std::string::npos) return example;
  throw std::runtime_error("no example with " + part);
}

std::string WithSlashes(std::string path) {
  for (char& c : path)
    if (c == '\\') c = '/';
  return path;
}

/// Errors and warnings alone.
std::vector<std::string> FaultsOf(const TestMedia& media) {
  std::vector<std::string> faults;
  for (const std::string& told : FindingsOf(media))
    if (check::FindRule(check::RuleNumber(told.substr(0, 5)))->severity != check::Severity::Note)
      faults.push_back(told);
  return faults;
}

void ExpectClean(const TestMedia& media) {
  EXPECT_EQ(FaultsOf(media), std::vector<std::string>{});
}

TEST(Check_Documents, CompleteMediumIsClean) {
  TestMedia media;
  for (const Example& example : ExamplesOf("docs/ini-reference.md"))
    if (!example.name.empty()) media.put("disc1/" + WithSlashes(example.name), example.text);
  media.put("disc1/Packages/Runtime/runtime.msi",
            MadePackage{"Office Runtime", "1.2.0", "{AAAAAAAA-0000-0000-0000-000000000001}"});
  media.put("disc1/Packages/Settings/settings.vbs", "WScript.Quit 0");
  ExpectClean(media);
  media.replace("disc1/Packages/Settings/settings.ini", "Install", "Instal");
  EXPECT_EQ(FaultsOf(media).size(), 1U);
}

TEST(Check_Documents, WorkedExampleIsClean) {
  TestMedia media;
  for (const Example& example : ExamplesOf("docs/preparing.md"))
    if (!example.name.empty())
      media.put(example.name == "app.ini" ? App : "disc1/" + WithSlashes(example.name), example.text);
  ExpectClean(media);
  media.replace(Product, "; qxia: allow", "; not allowed");
  EXPECT_EQ(FaultsOf(media).size(), 1U);
}

TEST(Check_Documents, PartsOfFilesAreClean) {
  const std::vector<Example> examples = ExamplesOf("docs/ini-reference.md");
  TestMedia media = TestMedia::oneDisc();
  media.replace(App, "[ForceUninstall]\nOldOffice=\n[ForceDelete]\nC:\\Temp\\old.dll\n",
                ExampleWith(examples, "[ForceDelete]").text);
  media.replace(Product,
                "[PreInstallActions]\nCheckServer;RFI Version=1.0\n[CheckServer_Office "
                "Suite]\nInstall=Checks\\server.vbs\nCommandLine=N/A\n",
                ExampleWith(examples, "[PreInstallActions]").text);
  media.put("disc1/check.vbs", "WScript.Quit 0");
  ExpectClean(media);
}

TEST(Check_Documents, ProductOnTwoDiscsIsClean) {
  const std::string columns = ExampleWith(ExamplesOf("docs/preparing.md"), "NextVolumeName").text;
  const std::size_t second = columns.find("; product.ini of the disc OFFICE2");
  TestMedia media = TestMedia::twoDiscs();
  std::string texts[2];
  std::size_t at = 0;
  while (at < columns.size()) {
    const std::size_t end = columns.find('\n', at);
    const std::string line = columns.substr(at, end - at);
    texts[0] += line.substr(0, second).substr(0, line.find("  ")) + "\n";
    texts[1] += (line.size() > second ? line.substr(second) : "") + "\n";
    at = end + 1;
  }
  const char* parts[] = {"Runtime", "Core"};
  for (const std::string disc : {"1", "2"}) {
    const std::string name = parts[disc == "1" ? 0 : 1];
    const std::string folder = "disc" + disc + "/Packages/" + name + "/";
    const std::string ini = disc == "1" ? "runtime.ini" : "core.ini";
    media.put("disc" + disc + "/product.ini", texts[disc == "1" ? 0 : 1]);
    media.rename("disc" + disc + "/Packages/Part/part.ini", folder + ini);
    media.replace(folder + ini, "[Part" + disc + "]", "[" + name + "]");
    media.rename("disc" + disc + "/Packages/Part/part.msi", folder + "part.msi");
  }
  ExpectClean(media);
}

TEST(Check_Documents, RecipesAreClean) {
  TestMedia media;
  for (const char* ini : {"QX Installation Assistant.ini", "product.ini"})
    media.put(std::string("disc1/") + ini, SourceText(std::string("samples/recipes/media/") + ini));
  std::string folder;  // a component's other files stand behind its ini
  for (const Example& example : ExamplesOf("docs/recipes.md")) {
    const std::size_t section = example.text.find('[');
    if (example.name.ends_with(".ini"))
      folder = "disc1/Packages/" + example.text.substr(section + 1, example.text.find(']') - section - 1) + "/";
    media.put(folder + example.name, example.text);
  }
  for (const char* file :
       {"Ropes/ropes.exe", "Lamps/lamps.exe", "Charts/charts.exe", "Sonar/sonar.exe", "Desk/bergen.mst"})
    media.put(std::string("disc1/Packages/") + file, "made by its own tool");
  media.put("disc1/Packages/Desk/desk.msi", MadePackage{"Desk", "1.0.0", "{AAAAAAAA-0000-0000-0000-000000000001}"});
  media.put("disc1/Packages/Meter/meter.msi", MadePackage{"Meter", "1.0.0", "{AAAAAAAA-0000-0000-0000-000000000002}"});
  ExpectClean(media);
  media.replace("disc1/Packages/Charts/charts.ini", "; qxia: allow", "; not allowed");
  EXPECT_EQ(FaultsOf(media).size(), 1U);
}

TEST(Check_Documents, EveryIniExampleIsOneOfThese) {
  int count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(std::string(SOURCE_FOLDER) + "/docs")) {
    const std::string text = entry.is_regular_file() ? SourceText("docs/" + entry.path().filename().string()) : "";
    for (std::size_t at = text.find("```ini"); at != std::string::npos; at = text.find("```ini", at + 1)) ++count;
  }
  EXPECT_EQ(count, 20) << "check the new example here as well";
}

}  // namespace
}  // namespace qxia
