// The work that a run does for one component does not grow with the components that it has done.

#include <algorithm>
#include <string>
#include <string_view>

#include "platform/faults/platform.h"
#include "tests/support/media.h"

namespace {

struct Work {
  int entries = 0;            ///< written to the log
  int values = 0;             ///< read from the registry, but for those of the sequence table
  int files = 0;              ///< read
  int sequences = 0;          ///< values of the sequence table
  std::size_t fileBytes = 0;  ///< of the files read
  std::size_t logBytes = 0;   ///< of the log, but for the rows that tell the sequence
};

/// The log's bytes without the rows that tell all components, which are as many as these.
std::size_t BytesWithoutSequence(const std::string& log) {
  std::size_t bytes = 0;
  for (std::size_t at = 0, end = 0; at < log.size(); at = end + 1) {
    end = std::min(log.find('\n', at), log.size());
    const std::string_view row = std::string_view(log).substr(at, end - at);
    if (row.find("Sequence is:") == std::string_view::npos) bytes += row.size();
  }
  return bytes;
}

Work WorkOf(int components) {
  Rig rig;
  Media media(rig);
  for (int i = 0; i < components; ++i) media.program("Component" + std::to_string(100 + i));
  media.write();
  Work work;
  faults::Platform watched(rig.machine());
  watched.faults().watch([&](const std::string& operation, const std::string& target) {
    const bool ofTable = target.ends_with("\\SequenceNumber");
    if (operation == "files.write") ++work.entries;
    if (operation == "files.read") {
      ++work.files;
      work.fileBytes += rig.machine().files().content(target).value_or("").size();
    }
    if (operation == "registry.queryValue") ++(ofTable ? work.sequences : work.values);
  });
  EXPECT_EQ(rig.run(Media::arguments("/s /v"), watched), 0);
  EXPECT_EQ(rig.ran().size(), static_cast<std::size_t>(components));
  work.logBytes = BytesWithoutSequence(rig.log("Office Suite"));
  return work;
}

TEST(Growth, TwiceTheComponents_AreTwiceTheWorkApartFromTheSequenceTable) {
  const Work small = WorkOf(10);
  const Work medium = WorkOf(20);
  const Work large = WorkOf(40);
  EXPECT_GT(small.values, 10);
  EXPECT_EQ(large.entries - medium.entries, 2 * (medium.entries - small.entries));
  EXPECT_EQ(large.values - medium.values, 2 * (medium.values - small.values));
  EXPECT_EQ(large.files - medium.files, 2 * (medium.files - small.files));
  // The last number's digits, and the free space as each row tells it, are all that the bytes may differ by.
  constexpr double slack = 0.01;
  const auto twice = [](std::size_t less, std::size_t more) { return static_cast<double>(more) / (2.0 * less); };
  EXPECT_NEAR(twice(medium.fileBytes - small.fileBytes, large.fileBytes - medium.fileBytes), 1, slack);
  EXPECT_NEAR(twice(medium.logBytes - small.logBytes, large.logBytes - medium.logBytes), 1, slack);
  // The table is built anew for each component and once more for none: a few values a row and round.
  EXPECT_LE(large.sequences, 2 * 41 * 40 + 4 * 40);
}

}  // namespace
