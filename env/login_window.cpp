#include "env/login_window.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "base/error_handler.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"
#include "env/auto_login.h"
#include "env/multi_disk.h"
#include "exec/captions.h"

namespace frmLogin {

namespace {

constexpr const char* Source = "frmPassword.cmdOK_Click";
constexpr const char* ErrorSource = "FrmLogin.CmdOK_Click";

constexpr const char* Windows95Family[] = {"windows 95", "windows 98", "windows me"};
constexpr const char* NTFamily[] = {"windows nt 3.51", "windows nt 4.0", "windows 2000", "windows xp", "windows 2003"};

template <std::size_t Count>
bool IsOneOf(const char* const (&names)[Count], const std::string& name) {
  return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

std::string Prompt(Run& run, const std::string& system) {
  // Two blanks stand where the 95 family has no account to name.
  if (IsOneOf(Windows95Family, system)) {
    return std::string("Enter the password for the Default ") + " account to enable autologon after reboots";
  }
  if (IsOneOf(NTFamily, system)) {
    return "Enter the password for the " + run.machine.machine().environment("username") +
           " account to enable autologon after reboots";
  }
  return "Enter the password to enable autologon after reboots";
}

void LogVerbose(Run& run, const std::string& text) {
  if (run.verbose) run.log.Log(Source, 0, text);
}

/// Without these the machine stops at its logon after a restart, and somebody must know why.
std::string Environment(Run& run, const char* name) {
  const std::string value = run.machine.machine().environment(name);
  if (value.empty()) {
    run.log.Log(Source, 0,
                std::string("The environment variable ") + name +
                    " is missing or empty, so automatic logon may not work. Log on by hand after a restart.",
                false, EntryType::Warning);
  }
  return value;
}

void UsePassword(Run& run, const std::string& system, const std::string& password) {
  if (IsOneOf(Windows95Family, system)) {
    LogVerbose(run, "Password captured for the default user on a " + system + " machine");
    EnableAutoLogin(run, password, "", "");
  } else if (IsOneOf(NTFamily, system)) {
    const std::string user = Environment(run, "USERNAME");
    const std::string domain = Environment(run, "USERDOMAIN");
    EnableAutoLogin(run, password, user, domain);
    LogVerbose(run, "Password captured for user " + user + " on a " + system + " machine in the " + domain + " domain");
  }
}

/// What OK does; false leaves the window open for another attempt.
bool Accept(Run& run, const std::string& system, const std::string& password, const std::string& confirmation) {
  if (Trim(password) != Trim(confirmation)) {
    run.machine.dialogs().messageBox({.title = Title, .text = "The two passwords do not match, please try again"});
    return false;
  }
  Guarded(run, ErrorSource, [&] { UsePassword(run, system, password); });
  return true;
}

}  // namespace

bool IsWanted(Run& run) {
  return IsTrue(modRegistry::ReadOrEmpty(run, ProductKey(run), Value::RequestLogon)) &&
         modCDFunctions::RecordedVolume(run, Value::PreviousVolumeName).empty();
}

bool Show(Run& run) {
  const std::string system = LowerCase(run.fso.OperatingSystem());
  return run.machine.dialogs().askPassword({.title = Title,
                                            .message = Prompt(run, system),
                                            .passwordLabel = "&Password:",
                                            .confirmationLabel = "Con&firm password:",
                                            .okCaption = modLanguage::Text(run, modLanguage::Caption::OK),
                                            .cancelCaption = modLanguage::Text(run, modLanguage::Caption::Cancel)},
                                           [&](const std::string& password, const std::string& confirmation) {
                                             return Accept(run, system, password, confirmation);
                                           });
}

}  // namespace frmLogin
