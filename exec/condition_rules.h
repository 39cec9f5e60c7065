// The single conditions, and what each of them asks of this computer.
#pragma once

#include <string>

#include "base/procedure.h"
#include "base/run.h"
#include "exec/condition_text.h"
#include "exec/msi_queries.h"

namespace assistant {

/// Error numbers of conditions that do not hold.
namespace ConditionError {
inline constexpr int Named = 7000;
inline constexpr int Equal = 7001;
inline constexpr int NotEqual = 7002;
inline constexpr int Less = 7003;
inline constexpr int Greater = 7004;
inline constexpr int LessOrEqual = 7005;
inline constexpr int GreaterOrEqual = 7006;
}  // namespace ConditionError

/// What conditions are held against.
struct Surroundings {
  const Run& run;
  const InstalledProducts& installed;
};

/// The keyword that a condition's name is, or in the older notation means; null for the name of a product, or there of
/// a component.
const char* KeywordOf(const std::string& name);
const char* OlderKeywordOf(const std::string& name);

/// Raises a condition error, with the message that the log gets, when a condition of the current notation does not
/// hold. Its name is in lower case. `here` is the procedure that checks it and tells what was compared.
void RequireCondition(const Surroundings& surroundings, const Procedure& here, const Condition& condition);

/// The same for a condition of the older notation, which must hold its operand in double quotes: its name need only
/// contain a keyword, and a name without one means the outcome of another component.
void RequireOlderCondition(const Surroundings& surroundings, const Procedure& here, const Condition& condition);

/// Compares the version of the Windows Installer product of that name (in lower case) with the operand.
void RequireProductVersion(const Surroundings& surroundings, const Procedure& here, const Condition& condition);

}  // namespace assistant
