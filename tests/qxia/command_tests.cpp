#include "app/qxia/command.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace qxia {
namespace {

constexpr Option SomeOptions[] = {{"--on", "SYSTEM", "a system"}, {"--strict", nullptr, "a switch"}};

TEST(Arguments_OptionsAndOperands, AreSortedOut) {
  const Arguments arguments({"disc1", "--on", "all", "--strict", "--on", "-x", "disc2", "--", "--on"}, SomeOptions);
  EXPECT_EQ(arguments.operands(), (std::vector<std::string>{"disc1", "disc2", "--on"}));
  EXPECT_EQ(arguments.all("--on"), (std::vector<std::string>{"all", "-x"}));
  EXPECT_EQ(arguments.text("--on"), "-x");
  EXPECT_TRUE(arguments.has("--strict"));
  EXPECT_EQ(arguments.text("--off", "none"), "none");
}

TEST(Arguments_UnknownOrIncomplete_AreRefused, WithWhatToWrite) {
  EXPECT_THROW(Arguments({"--of"}, SomeOptions), UsageError);
  try {
    const Arguments taken({"disc", "--on"}, SomeOptions);
    FAIL() << "an option without its value was taken for " << taken.text("--on");
  } catch (const UsageError& refused) {
    EXPECT_STREQ(refused.what(), "--on needs a value behind it: --on SYSTEM");
  }
}

TEST(Command_BadUsage_Ends64, AndVerbsEndAsTheySay) {
  const Verb verbs[] = {
      {"seven", "", "ends with 7", {}, "7", [](const Arguments&) { return 7; }},
      {"broken", "", "cannot read", {}, "64", [](const Arguments&) -> int { throw std::runtime_error("no file"); }}};
  EXPECT_EQ(RunCommand(verbs, {"seven"}), 7);
  EXPECT_EQ(RunCommand(verbs, {"seven", "--help"}), 0);
  EXPECT_EQ(RunCommand(verbs, {"--version"}), 0);
  for (const std::vector<std::string>& words :
       std::vector<std::vector<std::string>>{{}, {"eight"}, {"seven", "--on"}, {"broken"}})
    EXPECT_EQ(RunCommand(verbs, words), Unusable);
}

}  // namespace
}  // namespace qxia
