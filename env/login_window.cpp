#include "env/login_window.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "base/identity.h"
#include "base/procedure.h"
#include "base/text.h"
#include "env/auto_login.h"
#include "env/multi_disk.h"
#include "exec/captions.h"

namespace assistant::frmLogin {
namespace {

constexpr const char* Windows95Family[] = {"windows 95", "windows 98", "windows me"};
constexpr const char* NtFamily[] = {"windows nt 3.51", "windows nt 4.0", "windows 2000", "windows xp", "windows 2003"};

template <std::size_t Count>
bool IsOneOf(const char* const (&names)[Count], const std::string& name) {
  return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

std::string Prompt(platform::Machine& machine, const std::string& system) {
  // Two blanks stand where the 95 family has no account to name.
  if (IsOneOf(Windows95Family, system)) {
    return std::string("Enter the password for the Default ") + " account to enable autologon after reboots";
  }
  if (IsOneOf(NtFamily, system)) {
    return "Enter the password for the " + machine.environment("username") +
           " account to enable autologon after reboots";
  }
  return "Enter the password to enable autologon after reboots";
}

/// Without these the machine stops at its logon after a restart, and somebody must know why.
std::string Environment(const Services& services, const Procedure& here, const char* name) {
  const std::string value = services.machine.machine().environment(name);
  if (value.empty()) {
    here.warn(std::string("The environment variable ") + name +
              " is missing or empty, so automatic logon may not work. Log on by hand after a restart.");
  }
  return value;
}

void UsePassword(const Services& services, const ProductRecord& record, const Procedure& here,
                 const std::string& system, const std::string& password) {
  if (IsOneOf(Windows95Family, system)) {
    here.detail("Password captured for the default user on a " + system + " machine");
    EnableAutoLogin(services, record, {.password = password, .user = "", .domain = ""});
  } else if (IsOneOf(NtFamily, system)) {
    const std::string user = Environment(services, here, "USERNAME");
    const std::string domain = Environment(services, here, "USERDOMAIN");
    EnableAutoLogin(services, record, {password, user, domain});
    here.detail("Password captured for user " + user + " on a " + system + " machine in the " + domain + " domain");
  }
}

/// What OK does; false leaves the window open for another attempt.
bool Accept(const Services& services, const ProductRecord& record, const std::string& system,
            const std::string& password, const std::string& confirmation) {
  // Logs have always told the work under the window's older name and its failures under the newer one.
  const Procedure here(services.log, "frmPassword.cmdOK_Click", "FrmLogin.CmdOK_Click");
  if (Trim(password) != Trim(confirmation)) {
    services.machine.dialogs().messageBox({.title = Title, .text = "The two passwords do not match, please try again"});
    return false;
  }
  here.guard([&] { UsePassword(services, record, here, system, password); });
  return true;
}

}  // namespace

bool IsWanted(const ProductRecord& record) {
  return record.isTrue(Value::RequestLogon) &&
         modCDFunctions::RecordedVolume(record, Value::PreviousVolumeName).empty();
}

bool Show(const Services& services, const ProductRecord& record) {
  const std::string system = LowerCase(services.fso.operatingSystem());
  return services.machine.dialogs().askPassword({.title = Title,
                                                 .message = Prompt(services.machine.machine(), system),
                                                 .passwordLabel = "&Password:",
                                                 .confirmationLabel = "Con&firm password:",
                                                 .okCaption = modLanguage::Text(modLanguage::Caption::OK),
                                                 .cancelCaption = modLanguage::Text(modLanguage::Caption::Cancel)},
                                                [&](const std::string& password, const std::string& confirmation) {
                                                  return Accept(services, record, system, password, confirmation);
                                                });
}

}  // namespace assistant::frmLogin
