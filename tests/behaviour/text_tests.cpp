// Texts and numbers as the program has always written them: captions, rounding, thousands, comma-separated fields.

#include "base/numbers.h"
#include "base/text.h"
#include "exec/captions.h"
#include "exec/csv.h"
#include "tests/support/procedures.h"

namespace {

using namespace assistant;

TEST_F(Procedures, Captions_AreFiftyWithTheirBlanks) {
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
  EXPECT_EQ(modLanguage::Text(modLanguage::Caption::OK), "&OK");
  EXPECT_EQ(modLanguage::Text(1034), "");
}

TEST(Numbers, Thousands_AreRoundedAndZeroIsNothing) {
  const std::pair<double, const char*> table[] = {
      {0, ""},           {0.4999, ""},     {0.5, "1"},      {1.5, "2"},          {2.5, "3"},
      {999, "999"},      {999.5, "1,000"}, {1000, "1,000"}, {123456, "123,456"}, {1234567, "1,234,567"},
      {-1234, "-1,234"}, {-123, "-123"},
  };
  for (const auto& [value, text] : table) EXPECT_EQ(Thousands(value), text) << value;
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
  const std::pair<const char*, int> table[] = {
      {"0.5", 0}, {"1.5", 2}, {"2.5", 2}, {"-1.5", -2}, {"2147483647", 2147483647}, {"-2147483648", -2147483647 - 1}};
  for (const auto& [text, number] : table) EXPECT_EQ(WholeInteger(text), number) << text;
  EXPECT_FALSE(WholeInteger("2147483648").has_value());
  EXPECT_FALSE(WholeInteger("many").has_value());
}

TEST(Csv, Fields_AreCountedFromOneAndLoseTheirQuotes) {
  const std::pair<const char*, Names> table[] = {
      {"a,b,c", {"a", "b", "c"}},    {"a", {"a"}},          {"", {""}},
      {"a,,c", {"a", "", "c"}},      {"a,", {"a", ""}},     {"\"a,b\",c", {"a,b", "c"}},
      {"a,\"b,c\"", {"a", "b,c"}},   {"\"\",b", {"", "b"}}, {" a , b ", {" a ", " b "}},
      {"\"open,b", {"\"open", "b"}},
  };
  for (const auto& [text, fields] : table) {
    EXPECT_EQ(CsvFields(text), fields) << text;
    EXPECT_EQ(ParseCsv(text, 1), fields[0]) << text;
    EXPECT_EQ(ParseCsv(text, static_cast<int>(fields.size()) + 1), "") << text;
    EXPECT_EQ(ParseCsv(text, 0), "") << text;
  }
}

TEST(Text, Case_IsPassedOverFromAToZAndForNothingElse) {
  EXPECT_EQ(LowerCase("@AMZ[`amz{"), "@amz[`amz{");
  EXPECT_EQ(UpperCase("@AMZ[`amz{"), "@AMZ[`AMZ{");
  EXPECT_TRUE(EqualIgnoringCase("AzZ", "aZz"));
  for (const auto& [a, b] : {std::pair{"@", "`"}, {"[", "{"}, {"a", "ab"}}) {
    EXPECT_FALSE(EqualIgnoringCase(a, b)) << a << b;
    EXPECT_EQ(FindIgnoringCase(a, b), std::string::npos) << a << b;
  }
}

TEST(Text, Quotes_ThatEncloseAPathWhole_AreDropped) {
  const std::pair<const char*, const char*> table[] = {
      {"\"C:\\a b\"", "C:\\a b"},
      {"\"C:\\a b\"  ", "C:\\a b"},
      {"C:\\a b  ", "C:\\a b"},
      {"\"C:\\a b", "\"C:\\a b"},
      {"\"\"", ""},
      {"\"", "\""},
      {"C:\\a b\"", "C:\\a b\""},
      {"", ""},
  };
  for (const auto& [text, unquoted] : table) EXPECT_EQ(Unquoted(text), unquoted) << text;
}

}  // namespace
