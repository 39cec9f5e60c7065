// QX3xx and QX4xx: versions, conditions and types of machine.
#include "app/qxia/check/rule_rows.h"

namespace qxia::check {
namespace {

using enum Severity;

constexpr Rule Rows[] = {
    {301, Error, "The versions of application ini and product ini differ",
     "A silent run ends (User aborted run), and any other asks a person. They are compared as text.",
     "Write the same version into both.", "; application ini: Version=2.1.0\n[General]\nVersion=2.1",
     "; application ini: Version=2.1.0\n[General]\nVersion=2.1.0"},
    {302, Warning, "RFI Version is not the version of what is delivered",
     "The mark is for whoever reads the ini, and tells them something else than the package or the folder's name.",
     "Correct the mark, or deliver the version that it tells.",
     "Office=Office\\office.ini;RFI Version=2.0.0     (the package is 2.1.0)",
     "Office=Office\\office.ini;RFI Version=2.1.0"},
    {303, Warning, "A version folder is named for another version than its package",
     "Whoever looks at the folder is told something else than Windows Installer.",
     "Rename the folder, or deliver the version that it names.",
     "Runtime=Runtime\\v1.1.0.0\\runtime.ini     (the package is 1.2.0)", "Runtime=Runtime\\v1.2.0.0\\runtime.ini"},
    {304, Warning, "A version does not compare",
     "A part that is no number, or that one of two versions lacks, is an error in the log; neither version counts as "
     "newer then, so that <= and >= "
     "hold, and < and > do not.",
     "Write as many numbers as the product's version has, with points between them.", "Condition1=Office Runtime>1.2",
     "Condition1=Office Runtime>1.2.0"},
    {401, Error, "A text that is no condition",
     "In the list it is passed over with a warning, so that the component is installed everywhere; in the older "
     "notation it never holds.",
     "Write name, operator, value.", "Condition1=win2k", "Condition1=os=win2k"},
    {402, Error, "A keyword that names none of the systems",
     "It matches no system. The older notation minds letter case.",
     "Use win95, win98, winme, winnt3, winnt4, win2k, winxp, w2k3 (older notation: Win95, Win98, WinME, WinNT3, "
     "WinNT4, Win2K, WinXP, W2K3).",
     "Condition1=os=win2000|winxp", "Condition1=os=win2k|winxp"},
    {403, Error, "Conditions that can never hold", "The component is held back on every machine.",
     "Correct the condition, or take the component out.", "Condition=os=\"Win95\",os=\"WinXP\"",
     "Condition=os=\"Win95\" \"WinXP\""},
    {404, Warning, "A condition that always holds",
     "It holds nothing back: something else was meant, or it is not needed.", "Correct it, or take it out.",
     "Condition1=Office Runtime>=0.0.0.0", "Condition1=Office Runtime>=1.2.0"},
    {405, Note, "A condition names a product that no package of the media is",
     "It asks for a product by that name among what Windows Installer has on the machine. None of these media's "
     "packages is called so.",
     "Make sure that the name is spelt as Windows Installer tells it.", "Condition1=Ofice Runtime>=1.2.0",
     "Condition1=Office Runtime>=1.2.0"},
    {406, Error, "A condition asks for the outcome of a component that there is not",
     "In the older notation every name that is no keyword is a component of this product. One that there is not has no "
     "outcome, so the condition "
     "never holds.",
     "Correct the component's name.", "Condition=Dok=\"Pass\"", "Condition=Dock=\"Pass\""},
    {407, Error, "A condition depends on a component that comes later",
     "When it is looked at, that component has not been installed by this run: it does not hold on a fresh machine.",
     "Move the other component before this one in [Actions].",
     "[Actions]\nTools=Tools\\tools.ini     (Condition1=Office Runtime>=1.2.0)\nRuntime=Runtime\\runtime.ini",
     "[Actions]\nRuntime=Runtime\\runtime.ini\nTools=Tools\\tools.ini"},
    {408, Error, "Condition= switches the numbered conditions off",
     "Where there is a key Condition, an empty one too, Condition1 and the others are never read.",
     "Take Condition out, or number all conditions.", "Condition=\nCondition1=os=winxp", "Condition1=os=winxp"},
    {409, Warning, "Two conditions have one name", "The last one counts.",
     "Keep one of them; systems are listed with | between them.", "Condition1=os=win2k\nCondition2=os=winxp",
     "Condition1=os=win2k|winxp"},
    {410, Error, "A condition behind a gap in the numbers",
     "Reading ends at the first number that is missing: the condition does not count.",
     "Number them 1, 2, 3 without a gap.", "Condition1=os=winxp\nCondition3=Office Runtime>=1.2.0",
     "Condition1=os=winxp\nCondition2=Office Runtime>=1.2.0"},
    {411, Warning, "A type of machine that is not in the table",
     "The program knows dcforest, dcunit, eaddcunit, dcchild, dcreplica and the named queries. No other machine bears "
     "such a type, unless the site gives it one itself.",
     "Use a type of the table; for every machine write all machines.", "MachineType=dcunits", "MachineType=dcunit"},
    {412, Error, "A blank in a list of machine types",
     "Types are compared with their blanks, so this one matches no machine.", "Separate them by commas alone.",
     "MachineType=dcunit, dcchild", "MachineType=dcunit,dcchild"},
    {413, Warning, "An operator that means nothing here",
     "Named conditions know = and <> only; the others let every machine pass (os counts them as =). An outcome is "
     "asked for whatever the operator.",
     "Write = or <>.", "Condition1=productname>Office Suite", "Condition1=productname=Office Suite"},
};

}  // namespace

const std::span<const Rule> VersionAndConditionRules = Rows;

}  // namespace qxia::check
