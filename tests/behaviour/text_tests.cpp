// Texts and numbers as the program has always written them: captions, rounding, thousands, comma-separated fields.

#include "base/numbers.h"
#include "base/text.h"
#include "exec/captions.h"
#include "exec/csv.h"
#include "tests/support/procedures.h"

namespace {

using namespace assistant;

TEST_F(Procedures, Captions_AreFiftyWithTheirBlanksAndAccessKeys) {
  std::string numbers;
  for (const auto& [number, text] : modLanguage::CreateEDictionary()) {
    numbers += std::to_string(number) + " ";
    EXPECT_EQ(text, Trim(text) + (text.back() == ' ' ? " " : "")) << number << ": at most one blank, and that behind";
    EXPECT_FALSE(Trim(text).empty()) << number;
  }
  EXPECT_EQ(numbers,
            "100 101 102 103 104 105 106 107 108 201 202 203 204 205 206 207 208 209 210 211 1005 1006 1007 1008 1009 "
            "1010 1011 1012 1013 1014 1015 1016 1017 1018 1019 1020 1021 1022 1023 1024 1025 1026 1027 1028 1029 1030 "
            "1031 1032 1033 9000 ");
  const struct {
    int number;
    const char* text;
  } table[] = {
      {100, "&Cancel"},
      {101, "Co&ntinue"},
      {104, "&Finish"},
      {107, "&OK"},
      {211, "Gb for backup"},
      {1006, "QX Installation Assistant has finished"},
      {1008, "All completed successfully"},
      {1014, "The following errors occurred during the installation: "},
      {1018, "Installing "},
      {1019, "The system will now re-boot"},
      {1022, "Uninstalling "},
      {1026, "QX Installation Assistant"},
      {1027, "Welcome to the QX Installation Assistant Installation Harness."},
      {1028, "Click 'Continue' to start Initialising the system."},
      {1029, "Executing "},
      {1030, "One or more components failed to install successfully."},
      {1031, "The installation was aborted because the following errors occurred during the installation: "},
      {1033, "The uninstallation was aborted because the following errors occurred during the uninstallation: "},
      {9000, "Error:"},
      {1034, ""},
  };
  for (const auto& row : table) EXPECT_EQ(modLanguage::Text(row.number), row.text) << row.number;
}

TEST(Numbers, Thousands_AreRoundedAndZeroIsNothing) {
  const struct {
    double value;
    const char* text;
  } table[] = {
      {0, ""},           {0.4999, ""},     {0.5, "1"},      {1.5, "2"},          {2.5, "3"},
      {999, "999"},      {999.5, "1,000"}, {1000, "1,000"}, {123456, "123,456"}, {1234567, "1,234,567"},
      {-1234, "-1,234"}, {-123, "-123"},
  };
  for (const auto& row : table) EXPECT_EQ(Thousands(row.value), row.text) << row.value;
}

TEST(Numbers, Text_IsANumberAsFarAsItGoes) {
  const struct {
    const char* text;
    double leading;
    bool whole;
  } table[] = {
      {"12", 12, true},    {" 12 ", 12, true}, {"12 Kb", 12, false}, {"-3.5", -3.5, true}, {"1.", 1, true},
      {".5", 0.5, true},   {"abc", 0, false},  {"", 0, false},       {".", 0, false},      {"0x10", 0, false},
      {"1,000", 1, false}, {"inf", 0, false},  {"1e3", 1, false},    {"- 1", 0, false},
  };
  for (const auto& row : table) {
    EXPECT_EQ(NumericValue(row.text), row.leading) << row.text;
    EXPECT_EQ(WholeNumericValue(row.text).has_value(), row.whole) << row.text;
  }
}

TEST(Numbers, Halves_AreRoundedToTheEvenNeighbour) {
  const struct {
    const char* text;
    int number;
  } table[] = {{"0.5", 0}, {"1.5", 2}, {"2.5", 2}, {"-1.5", -2}, {"2147483647", 2147483647}};
  for (const auto& row : table) EXPECT_EQ(WholeInteger(row.text), row.number) << row.text;
  EXPECT_FALSE(WholeInteger("2147483648").has_value());
  EXPECT_FALSE(WholeInteger("many").has_value());
}

TEST(Csv, Fields_AreCountedFromOneAndLoseTheirQuotes) {
  const struct {
    const char* text;
    std::vector<std::string> fields;
  } table[] = {
      {"a,b,c", {"a", "b", "c"}},    {"a", {"a"}},          {"", {""}},
      {"a,,c", {"a", "", "c"}},      {"a,", {"a", ""}},     {"\"a,b\",c", {"a,b", "c"}},
      {"a,\"b,c\"", {"a", "b,c"}},   {"\"\",b", {"", "b"}}, {" a , b ", {" a ", " b "}},
      {"\"open,b", {"\"open", "b"}},
  };
  for (const auto& row : table) {
    EXPECT_EQ(CsvFields(row.text), row.fields) << row.text;
    EXPECT_EQ(ParseCsv(row.text, 1), row.fields[0]) << row.text;
    EXPECT_EQ(ParseCsv(row.text, static_cast<int>(row.fields.size()) + 1), "") << row.text;
    EXPECT_EQ(ParseCsv(row.text, 0), "") << row.text;
  }
}

TEST(Text, Quotes_ThatEncloseAPathWhole_AreDropped) {
  const struct {
    const char* text;
    const char* unquoted;
  } table[] = {
      {"\"C:\\a b\"", "C:\\a b"},
      {"\"C:\\a b\"  ", "C:\\a b"},
      {"C:\\a b  ", "C:\\a b"},
      {"\"C:\\a b", "\"C:\\a b"},
      {"\"", "\""},
      {"", ""},
  };
  for (const auto& row : table) EXPECT_EQ(Unquoted(row.text), row.unquoted) << row.text;
}

}  // namespace
