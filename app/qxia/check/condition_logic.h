// What the conditions of a component come to, for every machine that there may be.
#pragma once

#include <string>
#include <vector>

#include "app/qxia/check/media_model.h"

namespace qxia::check {

/// A set of systems: bit n for the n-th of assistant::OperatingSystems(), the bit behind the last for any other.
using Systems = unsigned;

Systems AllSystems();
/// The systems that can be had for 64-bit machines.
Systems SystemsWith64Bits();
/// The systems without a Startup folder, on which a run does not go on by itself after a restart.
Systems SystemsWithoutStartup();

/// The systems that one condition admits; all where it is about something else.
Systems AdmittedBy(const ComponentFact& component, const ConditionFact& fact);
/// The systems that all conditions together admit.
Systems AdmittedSystems(const ComponentFact& component);
/// True where a condition asks for systems at all.
bool AsksForSystems(const ComponentFact& component);

/// The keyword of the program that a condition's name means; "" for a product's or component's name.
std::string KeywordOf(const ComponentFact& component, const ConditionFact& fact);
/// True for a condition on the outcome of another component.
bool IsOutcome(const ComponentFact& component, const ConditionFact& fact);
/// True for a condition on the version of a product.
bool IsProductVersion(const ComponentFact& component, const ConditionFact& fact);

/// True for a condition of the list that a later one of its name replaces.
bool IsReplaced(const ComponentFact& component, const ConditionFact& fact);

/// The operand without its quotes, as versions are compared.
std::string VersionOperand(const ConditionFact& fact);
/// The parts of a version as numbers; nothing where one is none.
std::optional<std::vector<int>> VersionNumbers(const std::string& version);
/// Below, equal or above zero; parts that one of them lacks count as 0.
int CompareVersions(const std::vector<int>& a, const std::vector<int>& b);

/// The texts in double quotes.
std::vector<std::string> QuotedTexts(const std::string& text);

}  // namespace qxia::check
