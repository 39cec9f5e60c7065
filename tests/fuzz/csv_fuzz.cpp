// Comma-separated fields, lines of shares, paths that refer to shares, and entries of [Actions].
#include "env/shares.h"
#include "exec/action_entry.h"
#include "exec/csv.h"
#include "tests/fuzz/fuzz.h"

void Fuzz(const std::string& input) {
  using namespace assistant;
  const std::vector<std::string> fields = CsvFields(input);
  for (std::size_t i = 0; i < fields.size() && i < 50; ++i)
    Require(ParseCsv(input, static_cast<int>(i) + 1) == fields[i], "a field is the same alone and among all");
  const ShareLine line = ParseShareLine(input);
  Bench& bench = SharedBench();
  bench.run.product.shares = {line.share, {"Data", "C:\\Data", "", true}};
  ResolveQXSharePath(bench.run.shareResolver(), input);
  bench.view.text(input);
  bench.run.product.inis.application = "C:\\QX\\install.ini";
  Require(ValidateShares(bench.run).size() <= input.size(), "a share needs a line");
  ParseActionEntry(input);
}
