#include "tests/contract/bench.h"

namespace contract {

using platform::Control;
using platform::WindowHandle;

class Windows : public Test {
 protected:
  platform::MainWindow& window() { return machine().mainWindow(); }
  platform::Dialogs& dialogs() { return machine().dialogs(); }
  platform::OtherWindows& others() { return machine().otherWindows(); }
};

TEST_F(Windows, Texts_SetBeforeTheWindowIsShown_ReadBack) {
  window().create("QX Contract");
  const std::pair<Control, std::string> texts[] = {
      {Control::Status, "Proceeding with next component\r\nChecking"},
      {Control::Action, "Installing & checking"},
      {Control::Component, "Runtime"},
      {Control::LongMessage, "Initialisation complete\r\n\r\nClick 'Continue'"},
      {Control::Continue, "&Continue"},
      {Control::Cancel, ""}};
  for (const auto& [control, text] : texts) window().setText(control, text);
  for (const auto& [control, text] : texts) EXPECT_EQ(window().text(control), text);
  window().drawProgress(40, "40%");
  EXPECT_EQ(window().text(Control::Progress), "40%");
  EXPECT_FALSE(window().visible());
  window().pumpMessages();
  window().destroy();
  EXPECT_EQ(window().handle(), WindowHandle{});
}

TEST_F(Windows, Window_ByClassAndCaption_IsFound) {
  window().create("QX Contract One");
  const WindowHandle own = window().handle();
  ASSERT_NE(own, WindowHandle{});
  EXPECT_EQ(others().caption(own), "QX Contract One");
  const std::string name = others().className(own);
  EXPECT_FALSE(name.empty());
  others().setCaption(own, "QX Contract Two");
  EXPECT_EQ(others().find(name, "QX Contract One"), WindowHandle{});
  EXPECT_EQ(others().find(name, "QX Contract Two"), own);
  window().destroy();
  EXPECT_EQ(others().find(name, "QX Contract Two"), WindowHandle{});
}

TEST_F(Windows, WindowThatIsGone_HasNoClassAndNoCaption_AndTakesNothing) {
  window().create("QX Contract");
  const WindowHandle gone = window().handle();
  window().destroy();
  for (const WindowHandle none : {gone, WindowHandle{}}) {
    others().setCaption(none, "QX Contract Three");
    others().restore(none);
    EXPECT_EQ(others().className(none), "");
    EXPECT_EQ(others().caption(none), "");
  }
}

TEST_F(Windows, StatusText_Growing_OutgrowsItsArea) {
  window().create("QX Contract");
  EXPECT_GT(window().statusAreaHeight(), 0);
  EXPECT_LT(window().statusTextHeight("one line"), window().statusAreaHeight());
  std::string text;
  for (int i = 0; i < 60; ++i) text += "line\r\n";
  EXPECT_GT(window().statusTextHeight(text), window().statusAreaHeight());
  window().showStatusScrollBar(true);
  window().destroy();
}

TEST_F(Windows, DiskWindow_WithoutAPerson_StaysOpenUntilItIsClosed) {
  const platform::DiskRequest request = {"QX Contract Disk", "Insert the disk labelled DISC2", "&OK", "&Cancel"};
  window().create("QX Contract");
  for (int times = 0; times < 2; ++times) {
    dialogs().openDiskWindow(request);
    window().pumpMessages();
    EXPECT_EQ(dialogs().takeDiskEvent(), std::nullopt);
    dialogs().closeDiskWindow();
  }
  EXPECT_EQ(dialogs().takeDiskEvent(), std::nullopt);
  window().destroy();
}

TEST_F(Windows, EndOfTheSession_IsAskedForWithAndWithoutAWindow) {
  for (const bool withWindow : {true, false}) {
    if (withWindow) window().create("QX Contract");
    EXPECT_TRUE(bench().agreesToSessionEnd());
    window().objectToSessionEnd(true);
    EXPECT_FALSE(bench().agreesToSessionEnd());
    window().objectToSessionEnd(false);
    EXPECT_TRUE(bench().agreesToSessionEnd());
    window().destroy();
  }
}

TEST_F(Windows, SessionThatEnds_IsToldAtOnceAndAnEvent_UnlessTheProgramObjected) {
  int ended = 0;
  window().create("QX Contract");
  window().whenSessionEnds([&] { ++ended; });
  for (const bool objects : {true, false}) {
    window().objectToSessionEnd(objects);
    bench().endSession();
    EXPECT_EQ(ended, objects ? 0 : 1);
    window().pumpMessages();
    const auto event = window().takeEvent();
    EXPECT_EQ(event.has_value(), !objects);
    if (event) {
      EXPECT_EQ(*event, platform::WindowEvent::SessionEnds);
    }
  }
  bench().endSession();
  EXPECT_EQ(window().waitForEvent(), platform::WindowEvent::SessionEnds);
  window().destroy();
}

}  // namespace contract
