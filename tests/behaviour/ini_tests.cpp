// The ini reader: what it finds, what it does not find though one might think so, and files that it cannot use.

#include "base/ini.h"
#include "platform/faults/platform.h"
#include "tests/support/procedures.h"

namespace {

using namespace assistant;

constexpr const char* Ini = "C:\\app.ini";

class IniTest : public Procedures {
 protected:
  std::string read(const std::string& section, const std::string& key,
                   modINI::Missing missing = modINI::Missing::IsFine) {
    const modINI::IniValue value = modINI::ReadIniValue(ini, section, key, "<default>", missing);
    failure = value.failure;
    return value.text;
  }
  void put(const std::string& bytes) { rig.machine().files().put(Ini, bytes); }

  const modINI::IniFile ini{rig.machine().files(), run.services.log, Ini};
  int failure = 0;  ///< of the last value that was read
};

TEST_F(IniTest, Value_OfAKey_IsFoundAsItStands) {
  const struct {
    const char* what;
    const char* text;
    const char* section;
    const char* key;
    const char* value;
  } table[] = {
      {"plain", "[Product]\r\nName=Foo\r\n", "Product", "Name", "Foo"},
      {"blanks around the value", "[Product]\r\nName=  Foo  \r\n", "Product", "Name", "Foo"},
      {"a tab is no blank", "[Product]\r\nName=\tFoo\r\n", "Product", "Name", "\tFoo"},
      {"no value is the empty text", "[Product]\r\nName=\r\n", "Product", "Name", ""},
      {"blanks only", "[Product]\r\nName=   \r\n", "Product", "Name", ""},
      {"equals signs in the value", "[Product]\r\nName=a=b=c\r\n", "Product", "Name", "a=b=c"},
      {"quotes stay", "[Product]\r\nName=\"Foo\"\r\n", "Product", "Name", "\"Foo\""},
      {"semicolon in the value stays", "[Product]\r\nName=Foo;Bar\r\n", "Product", "Name", "Foo;Bar"},
      {"letter case", "[pRODUCT]\r\nnAME=Foo\r\n", "Product", "Name", "Foo"},
      {"key that begins like another", "[P]\r\nDir1=one\r\nDir=none\r\n", "P", "Dir", "none"},
      {"the first of two keys", "[P]\r\nA=1\r\nA=2\r\n", "P", "A", "1"},
      {"the first of two sections", "[P]\r\nA=1\r\n[P]\r\nA=2\r\n", "P", "A", "1"},
      {"the right one of two sections", "[O]\r\nA=1\r\n[P]\r\nA=2\r\n", "P", "A", "2"},
      {"text behind the header", "[P] of the product\r\nA=1\r\n", "P", "A", "1"},
      {"lone line feeds", "[P]\nA=1\nB=2\n", "P", "B", "2"},
      {"no line end at the end", "[P]\r\nA=1", "P", "A", "1"},
      {"empty and comment lines between", "[P]\r\n\r\n;A=0\r\nREM A=0\r\nA=1\r\n", "P", "A", "1"},
      {"an empty key name", "[P]\r\n=1\r\n", "P", "", "1"},
      {"an empty section name", "[]\r\nA=1\r\n", "", "A", "1"},
      {"bytes above 127", "[P]\r\nA=\xFC\xE4\r\n", "P", "A", "\xFC\xE4"},
  };
  for (const auto& row : table) {
    put(row.text);
    EXPECT_EQ(read(row.section, row.key), row.value) << row.what;
    EXPECT_EQ(failure, 0) << row.what;
  }
}

TEST_F(IniTest, Value_ThatIsNotFound_IsTheDefaultWithItsNumber) {
  const struct {
    const char* what;
    const char* text;
    const char* section;
    const char* key;
    int number;
  } table[] = {
      {"blank before the equals sign", "[P]\r\nName = Foo\r\n", "P", "Name", 6121},
      {"indented line", "[P]\r\n Name=Foo\r\n", "P", "Name", 6121},
      {"indented header", " [P]\r\nName=Foo\r\n", "P", "Name", 6120},
      {"key in a later section", "[P]\r\nA=1\r\n[Q]\r\nName=Foo\r\n", "P", "Name", 6121},
      {"key in the second of two sections", "[P]\r\nA=1\r\n[P]\r\nName=Foo\r\n", "P", "Name", 6121},
      {"key in front of the section", "Name=Foo\r\n[P]\r\nA=1\r\n", "P", "Name", 6121},
      {"a key that begins with rem", "[P]\r\nRemoteDir=Foo\r\n", "P", "RemoteDir", 6121},
      {"remark in small letters", "[P]\r\nremark=Foo\r\n", "P", "remark", 6121},
      {"commented out", "[P]\r\n;Name=Foo\r\n", "P", "Name", 6121},
      {"longer section name in the file", "[Product]\r\nName=Foo\r\n", "Prod", "Name", 6120},
      {"a line without equals sign", "[P]\r\nName\r\n", "P", "Name", 6121},
      {"empty file", "", "P", "Name", 6120},
      {"header is the last line", "[P]", "P", "Name", 6121},
      {"zeros and garbage", "\x01\x02\xFF[\r\r\r]=", "P", "Name", 6120},
      {"section name with a bracket", "[P]\r\nName=Foo\r\n", "P]", "Name", 6123},
      {"section name with an equals sign", "[P]\r\nName=Foo\r\n", "P=", "Name", 6123},
      {"key with a bracket", "[P]\r\nName=Foo\r\n", "P", "Na[me", 6124},
      {"key with an equals sign", "[P]\r\nName=Foo\r\n", "P", "Name=", 6124},
      {"Unicode text", "\xFF\xFE[\0P\0]\0", "P", "Name", 6122},
  };
  for (const auto& row : table) {
    put(row.text);
    EXPECT_EQ(read(row.section, row.key), "<default>") << row.what;
    EXPECT_EQ(failure, row.number) << row.what;
  }
  EXPECT_EQ(logText(), "") << "a silent look-up logs nothing";
}

TEST_F(IniTest, BadName_IsToldBeforeTheFileIsOpened) {
  EXPECT_EQ(read("P]", "Name"), "<default>");
  EXPECT_EQ(failure, 6123);
  EXPECT_EQ(read("P", "Name["), "<default>");
  EXPECT_EQ(failure, 6124);
  EXPECT_EQ(read("P", "Name"), "<default>");
  EXPECT_EQ(failure, 6122) << "the file is not there";
}

TEST_F(IniTest, RequiredKey_ThatIsNotFound_LeavesTwoErrors) {
  put("[P]\r\nA=1\r\n");
  const struct {
    const char* section;
    const char* key;
    const char* second;
  } table[] = {
      {"P", "Name",
       "ini string Name not found in section P of C:\\app.ini<BR>Source: modINI.GetIniString Error No = 6121"},
      {"Q", "Name", "ini section Q not found in C:\\app.ini<BR>Source: modINI.GetIniString Error No = 6120"},
      {"Q]", "Name", "Q] is not a valid ini section name<BR>Source: modINI.GetIniString Error No = 6123"},
      {"Q", "A=", "A= is not a valid ini key name<BR>Source: modINI.GetIniString Error No = 6124"},
  };
  for (const auto& row : table) {
    emptyLog();
    read(row.section, row.key, modINI::Missing::IsLogged);
    const std::vector<LogRow> found = rows();
    ASSERT_EQ(found.size(), 2U) << row.second;
    EXPECT_EQ(found[0].description, std::string("Failed while trying to get value of key: ") + row.key +
                                        " from section: " + row.section + " from ini file: C:\\app.ini");
    EXPECT_EQ(found[1].description, row.second);
    EXPECT_EQ(RowsOf(logText(), ErrorMark).size(), 2U);
  }
}

TEST_F(IniTest, File_ThatCannotBeRead_IsToldWithTheReason) {
  const std::pair<platform::Status, const char*> table[] = {
      {platform::Status::AccessDenied, "Permission denied"},
      {platform::Status::NotReady, "Disk not ready"},
      {platform::Status::FileNotFound, "File not found"},
  };
  put("[P]\r\nName=Foo\r\n");
  for (const auto& [status, reason] : table) {
    faults::Platform faulty(rig.machine());
    faulty.faults().fail("files.read", Ini, status);
    emptyLog();
    const modINI::IniFile failing{faulty.files(), run.services.log, Ini};
    const modINI::IniValue value = modINI::ReadIniValue(failing, "P", "Name", "d", modINI::Missing::IsLogged);
    EXPECT_EQ(value.text, "d");
    EXPECT_EQ(value.failure, 6122);
    ASSERT_EQ(rows().size(), 2U);
    EXPECT_EQ(rows()[1].description, std::string("ini file C:\\app.ini cound not be opened : ") + reason +
                                         "<BR>Source: modINI.GetIniString Error No = 6122");
  }
}

TEST_F(IniTest, Sizes_BeyondTheUsual_AreReadUpToTheCountOfLines) {
  const std::string megabyte(1024 * 1024, 'x');
  put("[P]\r\nName=" + megabyte + "\r\nB=2\r\n");
  EXPECT_EQ(read("P", "Name"), megabyte);
  EXPECT_EQ(read("P", "B"), "2");

  std::string lines = "[P]\r\n";
  for (int i = 0; i < 32764; ++i) lines += "k=1\r\n";
  put(lines + "Last=1\r\n");
  EXPECT_EQ(read("P", "Last"), "1") << "32767 lines with the one that stands before the header";
  put(lines + "k=1\r\nLast=1\r\n");
  EXPECT_EQ(read("P", "k"), "<default>") << "no part of a file with more lines is used";
  EXPECT_EQ(failure, 6122);

  std::string comments;
  for (int i = 0; i < 40000; ++i) comments += ";\r\n\r\n";
  put(comments + "[P]\r\nName=Foo\r\n");
  EXPECT_EQ(read("P", "Name"), "Foo") << "lines that are dropped are not counted";
}

TEST_F(IniTest, List_OfASection_HoldsItsKeysOrItsLines) {
  put("[Actions]\r\n"
      "One=a.ini\r\n"
      "Two words =b=c\r\n"
      "bare line\r\n"
      "   \r\n"
      "\r\n"
      ";Three=c\r\n"
      "Remote=d\r\n"
      " ; kept\r\n"
      "=e\r\n"
      "[Next]\r\n"
      "Four=d\r\n"
      "[Actions]\r\n"
      "Five=e\r\n");
  EXPECT_EQ(modINI::GetIniKeys(ini, "actions"), (Names{"One", "Two words ", ""}));
  EXPECT_EQ(modINI::GetIniLines(ini, "actions"), (Names{"One=a.ini", "Two words =b=c", "bare line", " ; kept", "=e"}));
  EXPECT_EQ(modINI::GetIniKeys(ini, "Next"), Names{"Four"});
  EXPECT_EQ(logText(), "");
}

TEST_F(IniTest, ListThatFails_IsEmptyAndLogged) {
  put("[P]\r\nA=1\r\n");
  EXPECT_EQ(modINI::GetIniKeys(ini, "Q"), Names());
  EXPECT_EQ(modINI::GetIniKeys(ini, "P["), Names());
  rig.machine().files().remove(Ini);
  EXPECT_EQ(modINI::GetIniLines(ini, "P"), Names());
  const std::vector<LogRow> errors = RowsOf(logText(), ErrorMark);
  ASSERT_EQ(errors.size(), 3U);
  EXPECT_EQ(errors[0].description,
            "ini section Q not found in C:\\app.ini<BR>Source: modINI.GetIniKeys Error No = 6120");
  EXPECT_EQ(errors[1].description, "P[ is not a valid ini section name<BR>Source: modINI.GetIniKeys Error No = 6123");
  EXPECT_NE(errors[2].description.find("<BR>Source: modINI.GetIniKeys Error No = 6122"), std::string::npos);
}

TEST_F(IniTest, Section_IsThereByItsHeaderAlone) {
  put("[Product] text\r\n;[Gone]\r\n [Indented]\r\n");
  EXPECT_TRUE(modINI::IsValidIniSection(ini, "PRODUCT"));
  for (const char* name : {"Prod", "Gone", "Indented", "Product] text"}) {
    EXPECT_FALSE(modINI::IsValidIniSection(ini, name)) << name;
  }
  rig.machine().files().remove(Ini);
  EXPECT_FALSE(modINI::IsValidIniSection(ini, "Product"));
  const std::vector<LogRow> errors = RowsOf(logText(), ErrorMark);
  ASSERT_EQ(errors.size(), 2U) << "a bad name and a missing file are failures, a missing section is none";
  for (const LogRow& row : errors) {
    EXPECT_NE(row.description.find("Source: modINI.IsValidIniSection Error No = "), std::string::npos) << row;
  }
}

TEST_F(IniTest, Search_LeavesItsIndexAtTheLastLineExamined) {
  put(";comment\r\n[A]\r\nx=1\r\n\r\n[B]\r\ny=2\r\n");
  modINI::IniLines lines = modINI::OpenIniFile(ini);
  EXPECT_EQ(modINI::LineCount(lines), 6U) << "an empty line before each header, none for comments and empty lines";
  std::size_t index = 0;
  EXPECT_TRUE(modINI::FindLine(lines, index, "[B]", false));
  EXPECT_EQ(index, 5U);
  index = 2;
  EXPECT_FALSE(modINI::FindLine(lines, index, "y=", true)) << "the next section stops it";
  EXPECT_EQ(index, 5U);
  EXPECT_EQ(modINI::LineCount(lines), 6U);
  EXPECT_FALSE(modINI::FindLine(lines, index, "z=", true));
  EXPECT_EQ(index, 6U);
  EXPECT_EQ(modINI::LineCount(lines), 7U) << "running off the end leaves an empty line behind";
}

}  // namespace
