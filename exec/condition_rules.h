// The single conditions, and what each of them asks of this computer.
#pragma once

#include <string>

#include "base/run.h"
#include "exec/conditions.h"

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

/// Raises a condition error, with the message that the log gets, when a condition of the current notation does not
/// hold. Its name is in lower case.
void RequireCondition(Run& run, const Condition& condition);

/// The same for a condition of the older notation, which must hold its operand in double quotes: its name need only
/// contain a keyword, and a name without one means the outcome of another component.
void RequireOlderCondition(Run& run, const Condition& condition);

/// Compares the version of the Windows Installer product of that name (in lower case) with the operand.
void RequireProductVersion(Run& run, const Condition& condition);

/// The operating system's name, asked for once and kept in run.operatingSystem.
const std::string& SystemName(Run& run);
