// The work that a run does for one component does not grow with the components that it has done.

#include <map>

#include "platform/faults/platform.h"
#include "tests/support/media.h"

namespace {

struct Work {
  int entries = 0;    ///< written to the log
  int values = 0;     ///< read from the registry, but for those of the sequence table
  int files = 0;      ///< read
  int sequences = 0;  ///< values of the sequence table
};

Work WorkOf(int components) {
  Rig rig;
  Media media(rig);
  for (int i = 1; i <= components; ++i) media.program("Component" + std::to_string(i));
  media.write();
  Work work;
  faults::Platform watched(rig.machine());
  watched.faults().watch([&work](const std::string& operation, const std::string& target) {
    const bool ofTable = target.ends_with("\\SequenceNumber");
    if (operation == "files.write") ++work.entries;
    if (operation == "files.read") ++work.files;
    if (operation == "registry.queryValue") ++(ofTable ? work.sequences : work.values);
  });
  EXPECT_EQ(rig.run(Media::arguments("/s /v"), watched), 0);
  EXPECT_EQ(rig.ran().size(), static_cast<std::size_t>(components));
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
  // The table is built anew for each component and once more for none: a few values a row and round.
  EXPECT_LE(large.sequences, 2 * 41 * 40 + 4 * 40);
}

}  // namespace
