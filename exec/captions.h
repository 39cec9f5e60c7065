// The texts of buttons, labels and states, by number. Another language would be another table with the same numbers.
#pragma once

#include <map>
#include <string>

namespace assistant::modLanguage {

/// Numbers of the texts that the program shows.
namespace Caption {
inline constexpr int Cancel = 100;
inline constexpr int Continue = 101;
inline constexpr int Finish = 104;
inline constexpr int OK = 107;
inline constexpr int AllCompleted = 1008;
inline constexpr int ReadyToInstall = 1009;
inline constexpr int Initialising = 1010;
inline constexpr int Ready = 1011;
inline constexpr int CheckingConfiguration = 1012;
inline constexpr int CheckingPreInstall = 1013;
inline constexpr int FollowingErrors = 1014;
inline constexpr int CheckingDriveSpace = 1016;
inline constexpr int Installing = 1018;
inline constexpr int Rebooting = 1019;
inline constexpr int StoringData = 1021;
inline constexpr int Uninstalling = 1022;
inline constexpr int WindowTitle = 1026;
inline constexpr int Welcome = 1027;
inline constexpr int ClickContinue = 1028;
inline constexpr int SomeFailedToInstall = 1030;
inline constexpr int InstallAborted = 1031;
inline constexpr int SomeFailedToUninstall = 1032;
inline constexpr int UninstallAborted = 1033;
}  // namespace Caption

using Dictionary = std::map<int, std::string>;

/// The dictionary of captions, made from the table when it is first asked for.
const Dictionary& CreateEDictionary();

/// The text of that number; "" when there is none.
std::string Text(int number);

}  // namespace assistant::modLanguage
