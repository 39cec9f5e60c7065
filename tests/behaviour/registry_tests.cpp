// The registry module: what it reads back, what it writes and removes, and how its failures are told.

#include "base/registry.h"

#include "platform/faults/platform.h"
#include "tests/support/procedures.h"

namespace {

using namespace assistant;

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
  assistant::Run failing{faulty};
  platform::Registry& registry = rig.machine().registry();
};

TEST_F(RegistryTest, Text_OfAnyLengthUpTo1023_IsReadBack) {
  for (const std::size_t length : {0U, 1U, 255U, 1022U, 1023U}) {
    rig.set(Key, "Name", std::string(length, 'x'));
    EXPECT_EQ(modRegistry::RegRead(registry, Key, "Name"), std::string(length, 'x')) << length;
  }
  for (const std::size_t length : {1024U, 1025U, 100000U}) {
    rig.set(Key, "Name", std::string(length, 'x'));
    EXPECT_EQ(modRegistry::RegRead(registry, Key, "Name"), "") << length;
  }
}

TEST_F(RegistryTest, Text_WithoutTerminator_IsReadWhole) {
  put("Bytes", 3, "abc");
  put("Terminated", 3, std::string("abc\0", 4));
  put("Empty", 1, "");
  EXPECT_EQ(modRegistry::RegRead(registry, Key, "Bytes"), "abc");
  EXPECT_EQ(modRegistry::RegRead(registry, Key, "Terminated"), "abc");
  EXPECT_EQ(modRegistry::RegRead(registry, Key, "Empty"), "");
}

TEST_F(RegistryTest, MissingThings_AreEmptyOrRaisedAsTheirOperationSays) {
  rig.set(Key, "Name", "value");
  EXPECT_EQ(modRegistry::RegRead(registry, Key, "Other"), "") << "a missing value is no failure";
  EXPECT_EQ(raised([&] { modRegistry::RegRead(registry, "Software\\No", "Name"); }),
            "6161 Could not open registry key HKLM\\Software\\No\\Name (modRegistry.RegRead)");
  EXPECT_EQ(raised([&] { modRegistry::RegListKeys(registry, "Software\\No"); }),
            "6161 Could not open registry key HKLM\\Software\\No (modRegistry.RegListKeys)");
  EXPECT_EQ(raised([&] { modRegistry::RegListValues(registry, "Software\\No"); }),
            "6161 Could not open registry key HKLM\\Software\\No (modRegistry.RegListValues)");
  EXPECT_EQ(raised([&] { modRegistry::RegDelete(registry, "Software\\No"); }),
            "6166 Error deleting registry key HKLM\\Software\\No (modRegistry.RegDelete)");
  EXPECT_EQ(modRegistry::ReadOrEmpty(registry, "Software\\No", "Name"), "");
  EXPECT_EQ(modRegistry::SubKeys(registry, "Software\\No"), Names());
  EXPECT_EQ(modRegistry::ReadNumber(registry, "Software\\No", "Name"), 0);
  modRegistry::DeleteIfThere(run.services, "Software\\No");
  modRegistry::RemoveValue(run.services, "Software\\No", "Name");
  EXPECT_FALSE(rig.hasKey("Software\\No"));
  EXPECT_EQ(logText(), "");
}

TEST_F(RegistryTest, Write_OfEachType_StoresItsBytes) {
  const struct {
    const char* value;
    std::uint32_t type;
    bool written;
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
    EXPECT_EQ(modRegistry::RegWrite(run.services, Key, "Name", {row.value, static_cast<ValueType>(row.type)}),
              row.written)
        << what;
    const simulated::RegistryValue* value = stored(Key, "Name");
    ASSERT_EQ(value != nullptr, row.written) << what;
    if (value == nullptr) continue;
    EXPECT_EQ(value->type, row.type) << what;
    EXPECT_EQ(value->data, row.data) << what;
  }
  const std::vector<LogRow> errors = RowsOf(logText(), ErrorMark);
  ASSERT_EQ(errors.size(), 2U) << "of the two that are no 32-bit numbers";
  EXPECT_NE(errors[0].description.find("2147483648"), std::string::npos) << errors[0];
  EXPECT_NE(errors[0].description.find("Source: RegWrite"), std::string::npos) << errors[0];
}

TEST_F(RegistryTest, Write_OfABlankValue_KeepsItEmpty_RemovalTakesIt) {
  for (const char* blank : {"", "   "}) {
    rig.set(Key, "Name", "value");
    EXPECT_TRUE(modRegistry::RegWrite(run.services, Key, "Name", blank));
    ASSERT_NE(stored(Key, "Name"), nullptr);
    EXPECT_EQ(rig.value(Key, "Name"), "");
    EXPECT_EQ(stored(Key, "Name")->type, 1U);
    EXPECT_TRUE(modRegistry::RemoveValue(run.services, Key, "Name"));
    EXPECT_FALSE(rig.hasValue(Key, "Name"));
    EXPECT_TRUE(rig.hasKey(Key));
    EXPECT_FALSE(modRegistry::RemoveValue(run.services, Key, "Name")) << "nothing was left to remove";
  }
  EXPECT_TRUE(modRegistry::RegWrite(run.services, Deep, "Name", ""));
  EXPECT_TRUE(rig.hasValue(Deep, "Name")) << "an empty value creates its key like any other";
}

TEST_F(RegistryTest, Write_UnderAMissingKeyOfTheUser_CreatesItForTheMachine) {
  EXPECT_FALSE(
      modRegistry::RegWrite(run.services, Deep, "Name", {"value", ValueType::Text, RegistryRoot::CurrentUser}));
  EXPECT_TRUE(rig.hasKey(Deep));
  EXPECT_FALSE(rig.machine().registry().hasKey(std::string("HKCU\\") + Deep));
}

TEST_F(RegistryTest, Write_ThatTheMachineRefuses_WritesNothingAndRaisesNothing) {
  rig.set(Key, "Name", "before");
  faulty.faults().fail("registry.openKey", "Test", platform::Status::AccessDenied);
  EXPECT_FALSE(modRegistry::RegWrite(failing.services, Key, "Name", "after"));
  for (const std::string& operation : faulty.faults().history()) {
    EXPECT_EQ(operation.rfind("registry", 0), std::string::npos) << "a refused key is not created";
  }
  EXPECT_FALSE(modRegistry::RegWrite(failing.services, Key, "Name", "after"));
  EXPECT_EQ(rig.value(Key, "Name"), "before");
  rig.set("Software\\Full", "Name", "before");
  faulty.faults().fail("registry.setValue", "Full", platform::Status::DiskFull);
  EXPECT_FALSE(modRegistry::RegWrite(failing.services, "Software\\Full", "Name", "after"));
  faulty.faults().fail("registry.createKey", "Three", platform::Status::AccessDenied);
  EXPECT_FALSE(modRegistry::RegWrite(failing.services, Deep, "Name", "after"));
  const std::vector<LogRow> errors = RowsOf(logText(), ErrorMark);
  ASSERT_EQ(errors.size(), 4U);
  EXPECT_EQ(errors[0].description, std::string("Could not write to registry key: HKLM\\") + Key +
                                       ", value:Name<BR>Source: RegWrite Error No = 6087");
  EXPECT_TRUE(failing.services.refusals.any());
  EXPECT_EQ(errors[3].description,
            std::string("Error creating registry key HKLM\\") + Deep + "<BR>Source: RegWrite Error No = 6165");
  EXPECT_EQ(raised([&] { modRegistry::RegCreate(faulty.registry(), Deep); }),
            std::string("6165 Error creating registry key HKLM\\") + Deep + " (modRegistry.RegCreate)");
}

TEST_F(RegistryTest, Delete_OfAKey_TakesEverythingBelowAndNothingBeside) {
  rig.set("Software\\A", "Stays", "1");
  rig.set("Software\\A\\B", "Name", "1");
  rig.set("Software\\A\\B\\C1\\D", "Name", "1");
  rig.set("Software\\A\\B\\C2\\D\\E", "Name", "1");
  rig.set("Software\\A\\B2", "Stays", "1");
  EXPECT_EQ(modRegistry::RegDelete(registry, "Software\\A\\B"), platform::Status::Ok);
  EXPECT_FALSE(rig.hasKey("Software\\A\\B"));
  EXPECT_TRUE(rig.hasKey("Software\\A\\B2"));
  EXPECT_EQ(rig.value("Software\\A", "Stays"), "1");
}

TEST_F(RegistryTest, Delete_ThatIsRefused_IsAWarning) {
  rig.set("Software\\A\\B", "Name", "1");
  faulty.faults().fail("registry.deleteKey", "", platform::Status::AccessDenied);
  modRegistry::DeleteIfThere(failing.services, "Software\\A");
  EXPECT_TRUE(rig.hasKey("Software\\A\\B"));
  const std::vector<LogRow> warnings = RowsOf(logText(), WarningMark);
  ASSERT_EQ(warnings.size(), 1U);
  EXPECT_NE(warnings[0].description.find("HKLM\\Software\\A"), std::string::npos) << warnings[0];
}

TEST_F(RegistryTest, Lists_HoldEveryName) {
  rig.set("Software\\A\\B", "", "1");
  rig.set("Software\\A\\" + std::string(254, 'k'), "", "1");
  rig.set("Software\\A", "One", "1");
  rig.set("Software\\A", "Two", "");
  const Names keys = {"B", std::string(254, 'k')};
  EXPECT_EQ(modRegistry::RegListKeys(registry, "Software\\A"), keys);
  EXPECT_EQ(modRegistry::RegListValues(registry, "Software\\A"), (Names{"One", "Two"}));
  EXPECT_EQ(modRegistry::RegListKeys(registry, "Software\\A\\B"), Names());
  EXPECT_EQ(modRegistry::SubKeys(registry, "Software\\A\\B"), Names());
  rig.set("Software\\A\\" + std::string(255, 'k'), "", "1");
  EXPECT_EQ(modRegistry::RegListKeys(registry, "Software\\A"), keys) << "a name that is too long ends the list";
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
    EXPECT_EQ(modRegistry::RegKeyExists(registry, row.key, row.value, RegistryRoot::LocalMachine, row.type), row.there)
        << row.key << " " << row.value;
  }
  EXPECT_EQ(raised([&] { modRegistry::RegKeyExists(registry, Key, "Long"); }),
            "6162 RegOpenKeyEx API Call failed, returning 234 (modRegistry.RegKeyExists)");
  faulty.faults().fail("registry.openKey", "Test", platform::Status::AccessDenied);
  for (const char* value : {"", "Name"}) {
    EXPECT_EQ(raised([&] { modRegistry::RegKeyExists(faulty.registry(), Key, value); }),
              "6162 RegOpenKeyEx API Call failed, returning 5 (modRegistry.RegKeyExists)");
  }
}

TEST_F(RegistryTest, Number_IsReadInEitherForm) {
  put("Number", 4, std::string("\xFE\xFF\xFF\xFF", 4));
  rig.set(Key, "Text", "300");
  const modRegistry::ReadNumberValue read = modRegistry::DWORDValueGet(run.services, Key, "Number");
  EXPECT_EQ(read.status, platform::Status::Ok);
  EXPECT_EQ(read.number, -2);
  EXPECT_EQ(modRegistry::ReadNumber(registry, Key, "Number"), -2);
  EXPECT_EQ(modRegistry::ReadNumber(registry, Key, "Text"), 300);
  EXPECT_EQ(modRegistry::ReadNumber(registry, Key, "Other"), 0);
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
    const modRegistry::ReadNumberValue read = modRegistry::DWORDValueGet(run.services, row.key, "Count");
    EXPECT_NE(read.status, platform::Status::Ok) << row.key;
    EXPECT_EQ(read.number, 0) << row.key;
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
