// The switches of the command line: what is looked for, and what the about box says of it. docs/operators-guide.md
// tells the same to users.
#pragma once

namespace assistant {

struct Switch {
  const char* text;      ///< what is looked for in the arguments
  const char* argument;  ///< what a person writes behind it, as it is shown; "" for nothing
  const char* effect;    ///< in the about box
  /// The about box shows it behind the switch before it.
  bool sharesLine = false;
};

namespace Switches {
inline constexpr Switch Silent{"/s", "", "silent run"};
inline constexpr Switch Verbose{"/v", "", "more detail in the log"};
inline constexpr Switch Uninstall{"/x", " product", "uninstall the product"};
inline constexpr Switch Yes{"/yes", "", "without asking", true};
inline constexpr Switch ApplicationIni{"/is=", "path", "application ini"};
inline constexpr Switch LastApplicationIni{"/isr", "", "the one of the last run", true};
inline constexpr Switch ProductIni{"/ia=", "path", "product ini"};
inline constexpr Switch LastProductIni{"/iar", "", "the one of the last run", true};
inline constexpr Switch Help{"/?", "", "this text"};
inline constexpr Switch LongHelp{"/help", "", "the same", true};

/// All of them, in the order of the about box.
inline constexpr const Switch* All[] = {
    &Silent,     &Verbose,        &Uninstall, &Yes,     &ApplicationIni, &LastApplicationIni,
    &ProductIni, &LastProductIni, &Help,      &LongHelp};
}  // namespace Switches

}  // namespace assistant
