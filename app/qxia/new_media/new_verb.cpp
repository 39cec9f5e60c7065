#include "app/qxia/new_media/new_verb.h"

#include <algorithm>
#include <cstdio>

#include "app/qxia/new_media/ini_texts.h"
#include "app/qxia/new_media/media_plan.h"
#include "app/qxia/new_media/placeholder_files.h"
#include "base/identity.h"
#include "platform/simulated/host.h"

namespace qxia {
namespace {

using new_media::Kind;
using new_media::MediaPlan;
using new_media::PlannedComponent;

/// What a program ends with that asks for a restart.
constexpr std::uint32_t RestartWanted = 3010;

void RequirePackageMaker(const MediaPlan& plan) {
  for (const auto& disc : plan.discs)
    for (const PlannedComponent& component : disc)
      if (component.kind == Kind::Msi && !new_media::CanMakePackages())
        throw UsageError("packages are made by wixl, which is not installed: apt install wixl");
}

void MakeFiles(const MediaPlan& plan, const PlannedComponent& component, const std::string& stem) {
  switch (component.kind) {
    case Kind::Msi:
      return MakePackage(component, plan.product, stem + ".msi");
    case Kind::Exe:
      return simulated::WriteHostFile(stem + ".exe", new_media::PlaceholderProgram(0));
    case Kind::ExeRestart:
      simulated::WriteHostFile(stem + ".exe", new_media::PlaceholderProgram(RestartWanted));
      return simulated::WriteHostFile(stem + ".vbs", RestartScript(component));
    case Kind::Bat:
      return simulated::WriteHostFile(stem + ".bat", PlaceholderBatch(component));
    case Kind::Vbs:
      return simulated::WriteHostFile(stem + ".vbs", PlaceholderScript(component, plan.product));
    case Kind::Copy:
      return simulated::WriteHostFile(stem + ".txt", PlaceholderText(component));
  }
}

void MakeComponent(const MediaPlan& plan, const PlannedComponent& component, const std::string& packages) {
  const std::string folder = packages + "/" + FolderOf(component);
  simulated::MakeHostFolder(folder);
  const std::string stem = folder + "/" + FileNameOf(component);
  simulated::WriteHostFile(stem + ".ini", ComponentIni(component));
  MakeFiles(plan, component, stem);
}

std::string DiscFolder(const MediaPlan& plan, std::size_t disc) {
  return plan.discs.size() == 1 ? plan.folder : plan.folder + "/disc" + std::to_string(disc + 1);
}

void MakeDisc(const MediaPlan& plan, std::size_t disc) {
  const std::string folder = DiscFolder(plan, disc);
  simulated::MakeHostFolder(folder);
  simulated::WriteHostFile(folder + "/" + assistant::Title + ".ini", ApplicationIni(plan));
  simulated::WriteHostFile(folder + "/product.ini", ProductIni(plan, disc));
  for (const PlannedComponent& component : plan.discs[disc]) MakeComponent(plan, component, folder + "/Packages");
}

void TellNextSteps(const MediaPlan& plan) {
  std::string folders;
  for (std::size_t disc = 0; disc < plan.discs.size(); ++disc) {
    folders += " " + DiscFolder(plan, disc);
    const std::string label = plan.discs.size() == 1 ? "" : ": a disc labelled " + LabelOf(plan, disc);
    std::printf("%s%s\n", DiscFolder(plan, disc).c_str(), label.c_str());
  }
  std::printf("Put \"%s.exe\" beside \"%s.ini\"%s, and your own files in the place of those below Packages.\n",
              assistant::Title, assistant::Title, plan.discs.size() == 1 ? "" : " on each disc");
  std::printf("Then: qxia check%s\n      qxia rehearse%s --on all\n", folders.c_str(), folders.c_str());
}

}  // namespace

int MakeNewMedia(const Arguments& arguments) {
  const MediaPlan plan = new_media::ReadPlan(arguments);
  RequirePackageMaker(plan);
  for (std::size_t disc = 0; disc < plan.discs.size(); ++disc) MakeDisc(plan, disc);
  TellNextSteps(plan);
  return 0;
}

}  // namespace qxia
