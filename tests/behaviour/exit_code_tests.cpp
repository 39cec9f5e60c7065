// What the process returns, as one table.

#include "tests/support/media.h"

namespace {

using ExitCode = Installing;
using platform::BoxAnswer;
using platform::WindowEvent;

struct Ending {
  const char* what;
  int exitCode;
  const char* arguments;
  void (*prepare)(Rig&, Media&);
};

const Ending Endings[] = {
    {"everything installed", 0, "/s", [](Rig&, Media& media) { media.program("Tools"); }},
    {"nothing to install", 0, "/s", [](Rig&, Media&) {}},
    {"held back by a condition", 0, "/s",
     [](Rig&, Media& media) { media.component("Tools", "setup.exe", "Condition1=os=win95\n"); }},
    {"program with an exit code", 0, "/s", [](Rig&, Media& media) { media.program("Tools", {.exitCode = 9}); }},
    {"one of two failed", 1, "/s", [](Rig&, Media& media) { media.program("Tools").component("Office", "gone.exe"); }},
    {"aborted", 1, "/s", [](Rig&, Media& media) { media.program("Tools", Reports("Tools", "Abort")); }},
    {"application ini missing", 1, "/s /is=C:\\gone.ini", [](Rig&, Media&) {}},
    {"product ini missing", 1, "/s", [](Rig&, Media& media) { media.product["ProductIni"] = "PATH(gone.ini)"; }},
    {"component ini missing", 1, "/s",
     [](Rig& rig, Media& media) {
       media.component("Tools", "setup.exe");
       rig.machine().files().remove("C:\\Media\\Tools\\Tools.ini");
     }},
    {"no name", 1, "/s", [](Rig&, Media& media) { media.product.erase("Name"); }},
    {"no package root", 1, "/s", [](Rig&, Media& media) { media.product.erase("PackageRoot"); }},
    {"versions differ, nobody asked", 1, "/s", [](Rig&, Media& media) { media.product["Version"] = "3"; }},
    {"versions differ, declined", 2, "",
     [](Rig& rig, Media& media) {
       media.product["Version"] = "3";
       rig.answer("Product Version", BoxAnswer::No);
     }},
    {"versions differ, accepted", 0, "",
     [](Rig& rig, Media& media) {
       media.program("Tools").product["Version"] = "3";
       rig.answer("Product Version", BoxAnswer::Yes);
       rig.press({WindowEvent::Continue, WindowEvent::Continue});
     }},
    {"another copy runs", 3, "/s", [](Rig& rig, Media&) { rig.machine().machine().setAnotherCopyRuns(true); }},
    {"cancelled before the start", 2, "", [](Rig& rig, Media&) { rig.press({WindowEvent::Cancel}); }},
    {"closed before the start", 2, "", [](Rig& rig, Media&) { rig.press({WindowEvent::Close}); }},
    {"installed, then closed", 0, "",
     [](Rig& rig, Media& media) {
       media.program("Tools");
       rig.press({WindowEvent::Continue, WindowEvent::Close});
     }},
    {"failed, then cancelled", 1, "",
     [](Rig& rig, Media& media) {
       media.component("Tools", "gone.exe");
       rig.press({WindowEvent::Continue, WindowEvent::Cancel});
     }},
    {"restarted in the middle", 0, "/s",
     [](Rig&, Media& media) { media.program("Tools", RequestsReboot("immediate")); }},
    {"failed, with a closing restart", 1, "/s",
     [](Rig&, Media& media) { media.program("Tools", RequestsReboot("commit")).component("Office", "gone.exe"); }},
    {"another product's restart pending", 4, "/s",
     [](Rig& rig, Media& media) {
       rig.file("C:\\Waiting\\app.ini", "[Product]\nName=Waiting\n");
       rig.set(ProductsRecord, "Rebooted", "True");
       rig.set(ProductsRecord, "Product", "Waiting");
       rig.set(ProductsRecord, "Silent", "True");
       rig.set(ProductsRecord, "InstallationIni", "C:\\Waiting\\app.ini");
       media.component("Tools", "setup.exe");
     }},
    {"uninstall declined", 2, "/s /x Office Suite", [](Rig& rig, Media&) { Declines(rig); }},
    {"uninstall of what is not there", 1, "/s /x Office Suite", [](Rig& rig, Media&) { Confirms(rig); }},
    {"uninstall without a name", 1, "/s /x", [](Rig&, Media&) {}},
};

TEST_F(ExitCode, EachEnding_HasItsOwn) {
  for (const Ending& row : Endings) {
    fresh();
    row.prepare(rig, media);
    media.write();
    const std::string arguments = row.arguments;
    const bool own = arguments.find("/is=") != std::string::npos || arguments.find("/x") != std::string::npos;
    EXPECT_EQ(rig.run(own ? arguments : Media::arguments(arguments)), row.exitCode) << row.what;
    EXPECT_EQ(rig.machine().processes().openHandles(), 0U) << row.what;
    EXPECT_EQ(rig.machine().installer().openHandles(), 0U) << row.what;
    EXPECT_TRUE(rig.machine().screen().trayTip().empty() || rig.machine().restartRequested()) << row.what;
  }
}

}  // namespace
