// Coded paths.
#include "base/error.h"
#include "base/paths.h"
#include "core/coded_paths.h"
#include "core/discovery.h"
#include "tests/fuzz/fuzz.h"

void Fuzz(const std::string& input) {
  using namespace assistant;
  const CodedPath coded = TakeApart(input);
  Require(coded.inner.size() <= input.size(), "the inner path is a part of the text");
  const bool isFolder = coded.code != PathCode::None && coded.code != PathCode::AppIniFolder;
  Require(!isFolder || CanBeResolved(input), "a code of folders can be resolved");
  const Run& run = SharedBench().run;
  ResolvePath(run, input);
  ResolveFile(run, input, {"C:\\QX", "C:\\QX\\install.ini", "product.ini"});
  Normalised(input);
}
