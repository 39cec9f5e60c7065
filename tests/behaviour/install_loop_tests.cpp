// The loop over the components: their order, what holds one back, and what a failure does to the rest.

#include "tests/support/media.h"

namespace {

using InstallLoop = Installing;

/// What LastSequence was set to, in order.
Names LastSequences(Rig& rig) {
  const std::string set = "registry set HKLM\\" + std::string(ProductRecord) + "\\LastSequence = ";
  Names values;
  for (const std::string& effect : rig.effects(set)) values.push_back(effect.substr(set.size()));
  return values;
}

TEST_F(InstallLoop, Components_RunInTheOrderOfTheProductIni) {
  for (const char* name : {"Zeta", "Alpha", "Mid", "Beta", "C5", "C6", "C7", "C8", "C9", "C10", "C11"}) {
    media.program(name);
  }
  EXPECT_EQ(media.install(), 0);
  EXPECT_EQ(RanComponents(rig), (Names{"Zeta", "Alpha", "Mid", "Beta", "C5", "C6", "C7", "C8", "C9", "C10", "C11"}));
  EXPECT_TRUE(Logged(rig, "Sequence is:<br>Zeta = 100<br>Alpha = 200<br>Mid = 300<br>Beta = 400<br>C5 = 500"));
  EXPECT_TRUE(Logged(rig, "<br>C10 = 1000<br>C11 = 1100<br>"));
  EXPECT_TRUE(Logged(rig, "Last Sequence was 1000"));
}

/// How a file of this kind is run.
struct Kind {
  const char* install;
  const char* lines;
  const char* command;
};

constexpr Kind Kinds[] = {
    {"setup.exe", "", "C:\\Media\\Tools\\setup.exe"},
    {"setup.exe", "CommandLine=/quiet /log=a b\n", "C:\\Media\\Tools\\setup.exe /quiet /log=a b"},
    {"SETUP.EXE", "CommandLine=n/a\n", "C:\\Media\\Tools\\SETUP.EXE"},
    {"run me.bat", "", "\"C:\\Media\\Tools\\run me.bat\""},
    {"check.vbs", "", "wscript.exe C:\\Media\\Tools\\check.vbs"},
    {"Check It.VBS", "CommandLine=fast\n", "wscript.exe \"C:\\Media\\Tools\\Check It.VBS\" fast"},
    {"setup.exe", "Path=Other\n", "C:\\Media\\Other\\setup.exe"},
    {"setup.exe", "Path=C:\\Local\n", "C:\\Local\\setup.exe"},
    {"C:\\Local\\setup.exe", "", "C:\\Local\\setup.exe"},
};

TEST_F(InstallLoop, File_IsRunByItsExtension) {
  for (const Kind& row : Kinds) {
    fresh();
    const std::string install = row.install;
    for (const char* folder : {"C:\\Media\\Tools\\", "C:\\Media\\Other\\", "C:\\Local\\"}) {
      rig.file(install[1] == ':' ? install : folder + install, "");
    }
    rig.program(row.command, simulated::Match::Exactly);
    EXPECT_EQ(media.component("Tools", install, row.lines).install(), 0) << row.command;
    EXPECT_EQ(rig.ran(), Names{row.command});
  }
}

TEST_F(InstallLoop, Package_GetsItsArgumentsInOrder) {
  rig.set(InstallationRecord, "Server Type", "dcchild");
  media.package("Office", "1.0", {}, "CommandLine=ALLUSERS=1\nTransform=dcunit=unit.mst,dcchild=child.mst\n");
  EXPECT_EQ(media.install(), 0);
  const std::string log =
      "c:\\program files\\Tarvel\\Installation\\QX Installation Assistant\\Office Suite\\MSI Log Files\\Office.log";
  EXPECT_EQ(rig.ran(), Names{"msiexec /i  \"C:\\Media\\Office\\Office.msi\" ALLUSERS=1 "
                             "TRANSFORMS=\"C:\\Media\\Office\\child.mst\" /l*v \"" +
                             log + "\" /qn"});
  EXPECT_TRUE(rig.exists(log));
}

TEST_F(InstallLoop, RequiredKeysLeftOut_NeverBecomeArguments) {
  rig.file("C:\\Media\\Tools\\setup.exe", "");
  rig.program("C:\\Media\\Tools\\setup.exe", simulated::Match::Exactly);
  media.component("Tools", "setup.exe").write();
  rig.file("C:\\Media\\Tools\\Tools.ini", "[Tools]\nInstall=setup.exe\n");
  EXPECT_EQ(rig.run(Media::arguments("/s")), 0);
  EXPECT_EQ(rig.value(ComponentRecord("Tools"), "CommandLine"), "<ERROR>");
  EXPECT_TRUE(Logged(rig, "Failed while trying to get value of key: CommandLine from section: Tools"));
}

/// A component that fails or is held back, and what is recorded of it.
struct Trouble {
  const char* what;
  void (*add)(Rig&, Media&);
  const char* reason;  ///< "" when nothing is recorded
  const char* logged;
};

const Trouble Troubles[] = {
    {"missing file", [](Rig&, Media& media) { media.component("Bad", "gone.exe"); },
     "Installation of Bad failed (installation file could not be found)",
     "File C:\\Media\\Bad\\gone.exe could not be found"},
    {"missing package", [](Rig&, Media& media) { media.component("Bad", "gone.msi"); },
     "Installation of Bad failed (installation file could not be found)",
     "File C:\\Media\\Bad\\gone.msi could not be found"},
    {"unknown type",
     [](Rig& rig, Media& media) {
       rig.file("C:\\Media\\Bad\\setup.cmd", "");
       media.component("Bad", "setup.cmd");
     },
     "Installation of Bad failed", "Unable to determine run-type for Bad"},
    {"verdict Fail", [](Rig&, Media& media) { media.program("Bad", Reports("Bad", "Fail")); },
     "Installation of Bad failed.", "*** Install Failed ***<BR>"},
    {"program that does not start",
     [](Rig&, Media& media) { media.program("Bad", {.cannotStart = platform::Status::AccessDenied}); },
     "Installation of Bad failed",
     "CreateProcess(vbNullString,C:\\Media\\Bad\\Bad.exe, udtSecAtt1, udtSecAtt2, "
     "False,128, 0&,C:\\Media\\Bad, udtStartInfo, udtProcInfo)"},
    {"script with an exit code", [](Rig&, Media& media) { media.script("Bad", {.exitCode = 7}); },
     "Installation of Bad failed", "returned Error number 7"},
    {"no room",
     [](Rig& rig, Media& media) {
       media.component("Bad", "setup.exe", "Cost=x,C=99999999,\n");
       rig.file("C:\\Media\\Bad\\setup.exe", "");
     },
     "Installation of Bad failed disk space check.", ""},
    {"condition", [](Rig&, Media& media) { media.component("Bad", "setup.exe", "Condition1=os=win95\n"); }, "",
     "Condition not met, component will not be installed"},
    {"machine type",
     [](Rig& rig, Media& media) {
       rig.set(InstallationRecord, "Server Type", "dcunit");
       media.component("Bad", "setup.exe", "MachineType=dcreplica\n");
     },
     "", "component will not be installed"},
};

TEST_F(InstallLoop, ComponentInTrouble_DoesNotHoldTheNextBack) {
  for (const Trouble& row : Troubles) {
    fresh();
    media.program("First");
    row.add(rig, media);
    media.program("Last");
    const bool failed = row.reason[0] != '\0';
    EXPECT_EQ(media.install(), failed ? 1 : 0) << row.what;
    EXPECT_EQ(rig.value(ProductRecord, "Abort Reason"), row.reason) << row.what;
    EXPECT_EQ(rig.value(ProductRecord, "Succeeded"), failed ? "0" : "-1") << row.what;
    EXPECT_EQ(RanComponents(rig).front(), "First") << row.what;
    EXPECT_EQ(RanComponents(rig).back(), "Last") << row.what;
    EXPECT_TRUE(Logged(rig, row.logged)) << row.what;
    EXPECT_EQ(LastSequences(rig), (Names{"\"0\"", "\"100\"", "\"200\"", "\"300\"", "\"\""})) << row.what;
  }
}

TEST_F(InstallLoop, AbortOnFailOfComponentOrProduct_EndsTheRunAtTheFailure) {
  for (const bool ofProduct : {false, true}) {
    for (const Trouble& row : Troubles) {
      fresh();
      rig.tolerateUnused();
      media.product["AbortOnFail"] = ofProduct ? "True" : "False";
      media.program("First");
      row.add(rig, media);
      media.program("Last");
      if (!ofProduct) {
        const std::string ini = "C:\\Media\\Bad\\Bad.ini";
        rig.file(ini, rig.text(ini) + "AbortOnFail=true\n");
      }
      media.install();
      const bool failed = row.reason[0] != '\0';
      EXPECT_EQ(RanComponents(rig).back() == "Last", !failed) << row.what << ofProduct;
      EXPECT_EQ(TimesLogged(rig, "Aborting Installation"), failed ? 1 : 0) << row.what << ofProduct;
    }
  }
}

TEST_F(InstallLoop, MissingFile_IsRecordedAndNotJudged) {
  EXPECT_EQ(media.component("Bad", "gone.exe").install(), 1);
  EXPECT_EQ(rig.value(ComponentRecord("Bad"), "Process Return"), "Fail");
  EXPECT_EQ(rig.value(ProductsRecord, "Process Return"), "Fail");
  EXPECT_EQ(rig.value(ComponentRecord("Bad"), "Message"), "File not found : C:\\Media\\Bad\\gone.exe");
  EXPECT_FALSE(Logged(rig, "Process return = "));
}

TEST_F(InstallLoop, NoComponents_IsAWarningAndASuccess) {
  EXPECT_EQ(media.install(), 0);
  EXPECT_TRUE(Logged(rig, "No installation actions found"));
  EXPECT_EQ(rig.value(ProductRecord, "Succeeded"), "-1");
}

TEST_F(InstallLoop, ComponentNamedTwice_RunsOnceAtItsFirstPlace) {
  media.program("Tools").program("Office").write();
  rig.file("C:\\Media\\product.ini", rig.text("C:\\Media\\product.ini") + "tools=Tools\\Tools.ini\n");
  EXPECT_EQ(rig.run(Media::arguments("/s")), 0);
  EXPECT_EQ(RanComponents(rig), (Names{"Tools", "Office"}));
  EXPECT_TRUE(Logged(rig, "tools stands twice in section [Actions] of C:\\Media\\product.ini"));
}

TEST_F(InstallLoop, ComponentWithoutIniPath_IsWarnedOfAndLeftOut) {
  media.program("Tools").write();
  rig.file("C:\\Media\\product.ini", rig.text("C:\\Media\\product.ini") + "Empty=\n");
  EXPECT_EQ(rig.run(Media::arguments("/s")), 0);
  EXPECT_TRUE(Logged(rig, "ini string Empty not found in section Actions of C:\\Media\\product.ini"));
  EXPECT_EQ(RanComponents(rig), Names{"Tools"});
  EXPECT_EQ(rig.value(ProductRecord, "ComponentCount"), "2");
}

TEST_F(InstallLoop, BusyWithAComponent_LooksForRestartRequestsAfterEach) {
  media.program("First").program("Second");
  media.install();
  EXPECT_EQ(TimesLogged(rig, "Reboot status is "), 2);
  EXPECT_EQ(TimesLogged(rig, "No reboot required"), 2);
  EXPECT_EQ(TimesLogged(rig, "Check for multiple MSIExec processes: Not Required!"), 2);
}

}  // namespace
