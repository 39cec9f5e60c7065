// The registry module: what it reads back, what it writes and removes, and how its failures are told.

#include "base/registry.h"

#include "platform/faults/platform.h"
#include "tests/support/procedures.h"

namespace {

using modRegistry::RegistryRoot;
using modRegistry::ValueType;

constexpr const char* Key = "Software\\Tarvel\\Test";
constexpr const char* Deep = "Software\\Tarvel\\One\\Two\\Three";

class RegistryTest : public Procedures {
 protected:
  /// What a call raises, as "number text (source)"; "" when it raises nothing.
  template <class Call>
  static std::string raised(Call call) {
    try {
      call();
    } catch (const Error& failure) {
      return std::to_string(failure.number()) + " " + failure.text() + " (" + failure.source() + ")";
    }
    return "";
  }
  void put(const std::string& name, std::uint32_t type, const std::string& data) {
    rig.machine().registry().put(std::string("HKLM\\") + Key, {name, type, data});
  }
  const simulated::RegistryValue* stored(const std::string& key, const std::string& name) {
    return rig.machine().registry().find("HKLM\\" + key, name);
  }

  faults::Platform faulty{rig.machine()};
  ::Run failing{faulty};
};

TEST_F(RegistryTest, Text_OfAnyLengthUpTo1023_IsReadBack) {
  for (const std::size_t length : {0U, 1U, 255U, 1022U, 1023U}) {
    rig.set(Key, "Name", std::string(length, 'x'));
    EXPECT_EQ(modRegistry::RegRead(run, Key, "Name"), std::string(length, 'x')) << length;
  }
  for (const std::size_t length : {1024U, 1025U, 100000U}) {
    rig.set(Key, "Name", std::string(length, 'x'));
    EXPECT_EQ(modRegistry::RegRead(run, Key, "Name"), "") << length;
  }
}

TEST_F(RegistryTest, Text_WithoutTerminator_IsReadWhole) {
  put("Bytes", 3, "abc");
  put("Terminated", 3, std::string("abc\0", 4));
  put("Empty", 1, "");
  EXPECT_EQ(modRegistry::RegRead(run, Key, "Bytes"), "abc");
  EXPECT_EQ(modRegistry::RegRead(run, Key, "Terminated"), "abc");
  EXPECT_EQ(modRegistry::RegRead(run, Key, "Empty"), "");
}

TEST_F(RegistryTest, MissingThings_AreEmptyOrRaisedAsTheirOperationSays) {
  rig.set(Key, "Name", "value");
  std::vector<std::string> names;
  EXPECT_EQ(modRegistry::RegRead(run, Key, "Other"), "") << "a missing value is no failure";
  EXPECT_EQ(raised([&] { modRegistry::RegRead(run, "Software\\No", "Name"); }),
            "6161 Could not open registry key HKLM\\Software\\No\\Name (modRegistry.RegRead)");
  EXPECT_EQ(raised([&] { modRegistry::RegListKeys(run, "Software\\No", names); }),
            "6161 Could not open registry key HKLM\\Software\\No (modRegistry.RegListKeys)");
  EXPECT_EQ(raised([&] { modRegistry::RegListValues(run, "Software\\No", names); }),
            "6161 Could not open registry key HKLM\\Software\\No (modRegistry.RegListValues)");
  EXPECT_EQ(raised([&] { modRegistry::RegDelete(run, "Software\\No"); }),
            "6166 Error deleting registry key HKLM\\Software\\No (modRegistry.RegDelete)");
  EXPECT_EQ(modRegistry::ReadOrEmpty(run, "Software\\No", "Name"), "");
  EXPECT_EQ(modRegistry::SubKeys(run, "Software\\No"), std::vector<std::string>());
  EXPECT_EQ(modRegistry::ReadNumber(run, "Software\\No", "Name"), 0);
  modRegistry::DeleteIfThere(run, "Software\\No");
  modRegistry::RemoveValue(run, "Software\\No", "Name");
  EXPECT_FALSE(rig.hasKey("Software\\No"));
  EXPECT_EQ(logText(), "");
}

TEST_F(RegistryTest, Write_OfEachType_StoresItsBytes) {
  const struct {
    const char* value;
    std::uint32_t type;
    int written;
    std::string data;
  } table[] = {
      {"text", 1, 1, std::string("text\0", 5)},
      {" text ", 1, 1, std::string(" text \0", 7)},
      {"text", 3, 1, "text"},
      {"258", 4, 1, std::string("\x02\x01\0\0", 4)},
      {"-1", 4, 1, "\xFF\xFF\xFF\xFF"},
      {"2147483647", 4, 1, "\xFF\xFF\xFF\x7F"},
      {"2147483648", 4, 0, ""},
      {"many", 4, 0, ""},
      {"text", 2, 0, ""},
      {"text", 7, 0, ""},
  };
  for (const auto& row : table) {
    const std::string what = std::string(row.value) + " as type " + std::to_string(row.type);
    rig.machine().registry().removeTree(std::string("HKLM\\") + Key);
    EXPECT_EQ(modRegistry::RegWrite(run, Key, "Name", row.value, RegistryRoot::LocalMachine,
                                    static_cast<ValueType>(row.type)),
              row.written)
        << what;
    const simulated::RegistryValue* value = stored(Key, "Name");
    ASSERT_EQ(value != nullptr, row.written == 1) << what;
    if (value == nullptr) continue;
    EXPECT_EQ(value->type, row.type) << what;
    EXPECT_EQ(value->data, row.data) << what;
  }
  const std::vector<LogRow> errors = RowsOf(logText(), ErrorMark);
  ASSERT_EQ(errors.size(), 2U) << "of the two that are no 32-bit numbers";
  EXPECT_NE(errors[0].description.find("2147483648"), std::string::npos) << errors[0];
  EXPECT_NE(errors[0].description.find("Source: RegWrite"), std::string::npos) << errors[0];
}

TEST_F(RegistryTest, Write_OfABlankValue_KeepsItEmptyOrRemovesIt) {
  for (const char* blank : {"", "   "}) {
    rig.set(Key, "Name", "value");
    EXPECT_EQ(modRegistry::RegWrite(run, Key, "Name", blank), 1);
    ASSERT_NE(stored(Key, "Name"), nullptr);
    EXPECT_EQ(rig.value(Key, "Name"), "");
    EXPECT_EQ(stored(Key, "Name")->type, 1U);
    const auto remove = [&] {
      return modRegistry::RegWrite(run, Key, "Name", blank, RegistryRoot::LocalMachine, ValueType::Text, false);
    };
    EXPECT_EQ(remove(), 1);
    EXPECT_FALSE(rig.hasValue(Key, "Name"));
    EXPECT_TRUE(rig.hasKey(Key));
    EXPECT_EQ(remove(), 0) << "nothing was left to remove";
  }
  EXPECT_EQ(modRegistry::RegWrite(run, Deep, "Name", ""), 1);
  EXPECT_TRUE(rig.hasValue(Deep, "Name")) << "an empty value creates its key like any other";
}

TEST_F(RegistryTest, Write_UnderAMissingKeyOfTheUser_CreatesItForTheMachine) {
  EXPECT_EQ(modRegistry::RegWrite(run, Deep, "Name", "value", RegistryRoot::CurrentUser), 0);
  EXPECT_TRUE(rig.hasKey(Deep));
  EXPECT_FALSE(rig.machine().registry().hasKey(std::string("HKCU\\") + Deep));
}

TEST_F(RegistryTest, Write_ThatTheMachineRefuses_WritesNothingAndRaisesNothing) {
  rig.set(Key, "Name", "before");
  faulty.faults().fail("registry.openKey", "Test", platform::Status::AccessDenied);
  EXPECT_EQ(modRegistry::RegWrite(failing, Key, "Name", "after"), 0);
  EXPECT_FALSE(faulty.faults().operations() > 0) << "a refused key is not created";
  EXPECT_EQ(modRegistry::RegWrite(failing, Key, "Name", "after"), 0);
  EXPECT_EQ(rig.value(Key, "Name"), "before");
  rig.set("Software\\Full", "Name", "before");
  faulty.faults().fail("registry.setValue", "Full", platform::Status::DiskFull);
  EXPECT_EQ(modRegistry::RegWrite(failing, "Software\\Full", "Name", "after"), 0);
  faulty.faults().fail("registry.createKey", "Three", platform::Status::AccessDenied);
  EXPECT_EQ(modRegistry::RegWrite(failing, Deep, "Name", "after"), 0);
  const std::vector<LogRow> errors = RowsOf(logText(), ErrorMark);
  ASSERT_EQ(errors.size(), 1U);
  EXPECT_EQ(errors[0].description,
            std::string("Error creating registry key HKLM\\") + Deep + "<BR>Source: RegWrite Error No = 6165");
  EXPECT_EQ(raised([&] { modRegistry::RegCreate(failing, Deep); }),
            std::string("6165 Error creating registry key HKLM\\") + Deep + " (modRegistry.RegCreate)");
}

TEST_F(RegistryTest, Delete_OfAKey_TakesEverythingBelowAndNothingBeside) {
  rig.set("Software\\A", "Stays", "1");
  rig.set("Software\\A\\B", "Name", "1");
  rig.set("Software\\A\\B\\C1\\D", "Name", "1");
  rig.set("Software\\A\\B\\C2\\D\\E", "Name", "1");
  rig.set("Software\\A\\B2", "Stays", "1");
  EXPECT_EQ(modRegistry::RegDelete(run, "Software\\A\\B"), 0);
  EXPECT_FALSE(rig.hasKey("Software\\A\\B"));
  EXPECT_TRUE(rig.hasKey("Software\\A\\B2"));
  EXPECT_EQ(rig.value("Software\\A", "Stays"), "1");
}

TEST_F(RegistryTest, Delete_ThatIsRefused_IsAWarning) {
  rig.set("Software\\A\\B", "Name", "1");
  faulty.faults().fail("registry.deleteKey", "", platform::Status::AccessDenied);
  modRegistry::DeleteIfThere(failing, "Software\\A");
  EXPECT_TRUE(rig.hasKey("Software\\A\\B"));
  const std::vector<LogRow> warnings = RowsOf(logText(), WarningMark);
  ASSERT_EQ(warnings.size(), 1U);
  EXPECT_NE(warnings[0].description.find("HKLM\\Software\\A"), std::string::npos) << warnings[0];
}

TEST_F(RegistryTest, Lists_HoldEveryNameOrOneEmptyOne) {
  rig.set("Software\\A\\B", "", "1");
  rig.set("Software\\A\\" + std::string(254, 'k'), "", "1");
  rig.set("Software\\A", "One", "1");
  rig.set("Software\\A", "Two", "");
  std::vector<std::string> names = {"left from before"};
  EXPECT_EQ(modRegistry::RegListKeys(run, "Software\\A", names), 2);
  EXPECT_EQ(names, (std::vector<std::string>{"B", std::string(254, 'k')}));
  EXPECT_EQ(modRegistry::RegListValues(run, "Software\\A", names), 2);
  EXPECT_EQ(names, (std::vector<std::string>{"One", "Two"}));
  EXPECT_EQ(modRegistry::RegListKeys(run, "Software\\A\\B", names), 0);
  EXPECT_EQ(names, std::vector<std::string>{""});
  EXPECT_EQ(modRegistry::SubKeys(run, "Software\\A\\B"), std::vector<std::string>());
}

TEST_F(RegistryTest, Existence_IsToldOrRaised) {
  rig.set(Key, "Name", "value");
  rig.set(Key, "Long", std::string(1024, 'x'));
  put("Number", 4, std::string("\x07\0\0\0", 4));
  const struct {
    const char* key;
    const char* value;
    ValueType type;
    bool there;
  } table[] = {
      {Key, "", ValueType::Text, true},
      {Key, "Name", ValueType::Text, true},
      {Key, "NAME", ValueType::Text, true},
      {Key, "Number", ValueType::Number, true},
      {Key, "Other", ValueType::Text, false},
      {Key, "Other", ValueType::Number, false},
      {"Software\\No", "", ValueType::Text, false},
      {"Software\\No", "Name", ValueType::Text, false},
      {"Software\\\\Malformed", "", ValueType::Text, false},
  };
  for (const auto& row : table) {
    EXPECT_EQ(modRegistry::RegKeyExists(run, row.key, row.value, RegistryRoot::LocalMachine, row.type), row.there)
        << row.key << " " << row.value;
  }
  EXPECT_EQ(raised([&] { modRegistry::RegKeyExists(run, Key, "Long"); }),
            "6162 RegOpenKeyEx API Call failed, returning 234 (modRegistry.RegKeyExists)");
  faulty.faults().fail("registry.openKey", "Test", platform::Status::AccessDenied);
  for (const char* value : {"", "Name"}) {
    EXPECT_EQ(raised([&] { modRegistry::RegKeyExists(failing, Key, value); }),
              "6162 RegOpenKeyEx API Call failed, returning 5 (modRegistry.RegKeyExists)");
  }
}

TEST_F(RegistryTest, Number_IsReadInEitherForm) {
  put("Number", 4, std::string("\xFE\xFF\xFF\xFF", 4));
  rig.set(Key, "Text", "300");
  std::int32_t number = 5;
  EXPECT_EQ(modRegistry::DWORDValueGet(run, Key, "Number", number), 0);
  EXPECT_EQ(number, -2);
  EXPECT_EQ(modRegistry::ReadNumber(run, Key, "Number"), -2);
  EXPECT_EQ(modRegistry::ReadNumber(run, Key, "Text"), 300);
  EXPECT_EQ(modRegistry::ReadNumber(run, Key, "Other"), 0);
  EXPECT_EQ(logText(), "");
}

TEST_F(RegistryTest, Number_ThatIsNotThere_IsLoggedWithTheHandleUnderTheSiblingsName) {
  rig.set(Key, "Name", "value");
  const struct {
    const char* key;
    const char* start;
    const char* end;
  } table[] = {
      {Key, "Could not return value for the following key: HKLM\\",
       "\\Count<BR>Source: modRegistry.DWordValueSave Error No = 6160"},
      {"Software\\No", "Could not open registry key HKLM\\", "<BR>Source: modRegistry.DWordValueSave Error No = 6161"},
  };
  for (const auto& row : table) {
    emptyLog();
    std::int32_t number = 5;
    EXPECT_NE(modRegistry::DWORDValueGet(run, row.key, "Count", number), 0) << row.key;
    EXPECT_EQ(number, 5) << row.key;
    ASSERT_EQ(rows().size(), 1U) << row.key;
    const std::string text = rows()[0].description;
    const std::size_t start = std::string(row.start).size();
    ASSERT_EQ(text.rfind(row.start, 0), 0U) << text;
    const std::size_t digits = text.find_first_not_of("0123456789", start);
    EXPECT_GT(digits, start) << text;
    EXPECT_EQ(text.substr(digits), row.end);
  }
}

}  // namespace
