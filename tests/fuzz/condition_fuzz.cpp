// A condition of the current notation: as a line of an ini file, and as it is recorded (a line "name", then the data).
#include "base/procedure.h"
#include "exec/condition_rules.h"
#include "tests/fuzz/fuzz.h"

namespace {

void Hold(const assistant::Condition& condition) {
  const assistant::Run& run = SharedBench().run;
  const assistant::InstalledProducts installed{{{"{11111111-2222-3333-4444-555555555555}", "Core", "1.2.3"}}, true};
  const assistant::Procedure here(run.services.log, "CheckConditions");
  try {
    RequireCondition({run, installed}, here, condition);
  } catch (const assistant::Error&) {
    // It does not hold.
  }
}

}  // namespace

void Fuzz(const std::string& input) {
  std::string data = input;
  const std::string name = TakeLine(data);
  Hold(assistant::ParseCondition(name, data));
  const assistant::Condition split = assistant::SplitConditionLine(name);
  Require(split.name.size() + split.op.size() + split.operand.size() <= name.size(), "nothing is added");
  if (!split.op.empty()) Hold(assistant::ParseCondition(split.name, "(" + split.op + ")" + split.operand));
}
