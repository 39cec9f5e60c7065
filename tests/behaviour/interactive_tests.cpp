// Interactive runs: what the window shows and what a person's choices lead to.

#include <algorithm>

#include "base/version.h"
#include "tests/support/media.h"

namespace {

using Interactive = Installing;
using platform::Control;
using platform::WindowEvent;

using Texts = Names;

std::size_t PlaceOf(Rig& rig, const std::string& effect) {
  const auto& effects = rig.machine().effects();
  return static_cast<std::size_t>(std::find(effects.begin(), effects.end(), effect) - effects.begin());
}

std::string LastShown(Rig& rig, Control control) {
  const Texts& shown = rig.machine().screen().shown(control);
  return shown.empty() ? "" : shown.back();
}

TEST_F(Interactive, Start_PreparesAndWaitsForContinue) {
  media.program("Tools");
  rig.press({WindowEvent::Continue, WindowEvent::Continue});
  EXPECT_EQ(media.install(""), 0);
  EXPECT_EQ(rig.machine().screen().shown(Control::About), (Texts{"&About", "View &log"}));
  EXPECT_EQ(rig.machine().screen().shown(Control::Continue), (Texts{"Co&ntinue", "&Finish"}));
  EXPECT_EQ(rig.machine().screen().shown(Control::Cancel), Texts{"&Cancel"});
  const Texts& messages = rig.machine().screen().shown(Control::LongMessage);
  EXPECT_EQ(std::count(messages.begin(), messages.end(),
                       "Initialisation complete\r\n\r\nClick 'Continue' to proceed with installation."),
            1);
  EXPECT_EQ(messages.back(), "All completed successfully");
  EXPECT_EQ(LastShown(rig, Control::Component), "Tools");
  EXPECT_LT(PlaceOf(rig, "window shown \"QX Installation Assistant\""), PlaceOf(rig, "person: continue"));
  EXPECT_LT(PlaceOf(rig, "person: continue"), PlaceOf(rig, "run C:\\Media\\Tools\\Tools.exe"));
  EXPECT_TRUE(rig.effects("tray").empty());
}

struct Result {
  const char* verdict;
  const char* shown;
};

constexpr Result Results[] = {
    {"Pass", "Office Suite is ready to use."},
    {"Fail",
     "One or more components failed to install successfully.\r\n\r\nInstallation of Tools failed.\r\n"
     "Installation of Last failed (installation file could not be found)"},
    {"Abort",
     "The installation was aborted because the following errors occurred during the installation: \r\n\r\n"
     "Installation of Tools failed "},
};

TEST_F(Interactive, EndMessageOrReasons_AreTheResult) {
  for (const Result& row : Results) {
    fresh();
    media.product["EndMessage"] = "Office Suite is ready to use.";
    media.program("Tools", Reports("Tools", row.verdict));
    const bool passes = row.verdict == std::string("Pass");
    if (!passes) media.component("Last", "gone.exe");
    rig.press({WindowEvent::Continue, WindowEvent::Continue});
    EXPECT_EQ(media.install(""), passes ? 0 : 1) << row.verdict;
    EXPECT_EQ(LastShown(rig, Control::LongMessage), row.shown);
  }
}

TEST_F(Interactive, Buttons_CannotBePressedWhileWorkRuns) {
  simulated::Screen& screen = rig.machine().screen();
  bool asked = false;
  media.program("Tools", {.also = [&] {
                  asked = true;
                  for (const Control button : {Control::About, Control::Continue, Control::Cancel}) {
                    EXPECT_FALSE(screen.enabled(button));
                  }
                }});
  rig.press({WindowEvent::Continue, WindowEvent::Continue});
  media.install("");
  EXPECT_TRUE(asked);
}

TEST_F(Interactive, AtTheEnd_TheLogAndFinishCanBePressedAndCancelCannot) {
  media.program("Tools");
  rig.press({WindowEvent::Continue, WindowEvent::Continue});
  media.install("");
  const simulated::Screen& screen = rig.machine().screen();
  EXPECT_TRUE(screen.enabled(Control::About) && screen.enabled(Control::Continue));
  EXPECT_FALSE(screen.enabled(Control::Cancel));
}

TEST_F(Interactive, LeftBeforeContinue_InstallsNothingAndTidiesUp) {
  for (const WindowEvent event : {WindowEvent::Cancel, WindowEvent::Close}) {
    fresh();
    rig.tolerateUnused();
    media.program("Tools");
    rig.press({event});
    EXPECT_EQ(media.install(""), 2);
    EXPECT_TRUE(rig.ran().empty());
    EXPECT_TRUE(Logged(rig, "QX Installer Run complete"));
    EXPECT_EQ(rig.value(ProductRecord, "LastSequence"), "");
    EXPECT_FALSE(rig.machine().screen().visible());
  }
}

TEST_F(Interactive, About_ListsTheSwitchesAndTheLog) {
  rig.answer("QX Installation Assistant", platform::BoxAnswer::Ok,
             "The log of this run is C:\\Program Files\\Tarvel\\Installation\\QX Installation Assistant\\Office "
             "Suite\\QX Installation Assistant.html");
  rig.press({WindowEvent::About, WindowEvent::Cancel});
  media.install("");
  const std::string box = rig.effects("box").front();
  for (const char* line :
       {QXIA_VERSION_TEXT, "/s  silent run", "/v  more detail in the log", "/x product  uninstall the product",
        "/is=path  application ini,  /isr  the one of the last run",
        "/ia=path  product ini,  /iar  the one of the last run"}) {
    EXPECT_NE(box.find(line), std::string::npos) << line;
  }
}

TEST_F(Interactive, LongProgram_ShowsThatItIsAlive) {
  media.program("Tools", {.milliseconds = 1650});
  rig.press({WindowEvent::Continue, WindowEvent::Continue});
  media.install("");
  const Texts& shown = rig.machine().screen().shown(Control::Action);
  const auto at = std::find(shown.begin(), shown.end(), "Proceeding with installation");
  ASSERT_GE(shown.end() - at, 6);
  EXPECT_EQ(Texts(at, at + 6), (Texts{"Proceeding with installation", "Proceeding with installation.",
                                      "Proceeding with installation..", "Proceeding with installation...",
                                      "Proceeding with installation", "Proceeding with installation."}));
}

TEST_F(Interactive, Progress_StaysWithinItsBarAndEndsFull) {
  media.program("One").program("Two").program("Three");
  rig.press({WindowEvent::Continue, WindowEvent::Continue});
  media.install("");
  const Texts& shown = rig.machine().screen().shown(Control::Progress);
  for (const std::string& text : shown) EXPECT_LE(std::stoi(text), 100) << text;
  EXPECT_EQ(shown.back(), "100%");
  EXPECT_EQ(std::count(shown.begin(), shown.end(), "33%"), 1);
  // It appears with the first line that has no room, and stays.
  EXPECT_EQ(rig.effects("scroll bar"), Names{"scroll bar shown"});
}

TEST_F(Interactive, RefusedPreInstall_IsToldAndEndsTheRun) {
  media.productIni += "[PreInstallActions]\nCheck\n[Check_Office Suite]\nCommandLine=N/A\n";
  rig.answer("", platform::BoxAnswer::Ok, "This installation cannot continue as pre-install checks failed");
  EXPECT_EQ(media.component("Tools", "setup.exe").install(""), 1);
  EXPECT_FALSE(rig.hasKey(ComponentRecord("Tools")));
}

}  // namespace
