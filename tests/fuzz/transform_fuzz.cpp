// What msiexec is given: a line "transform", and the command line.
#include "exec/component_command.h"
#include "tests/fuzz/fuzz.h"

void Fuzz(const std::string& input) {
  using namespace assistant;
  Component component;
  component.commandLine = input;
  component.transform = TakeLine(component.commandLine);
  Bench& bench = SharedBench();
  bench.run.facts.serverType = "dcunit";
  Require(TransformFile(bench.run, component).size() <= component.transform.size(), "a file is a part of the text");
  MsiexecArguments(bench.run, component, "D:\\Packages\\Core\\core.msi");
}
