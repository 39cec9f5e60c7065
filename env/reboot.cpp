#include "env/reboot.h"

#include "base/text.h"
#include "env/auto_run.h"
#include "exec/captions.h"

namespace assistant {

void Reboot(const Services& services, const ProductRecord& record, const std::string& product, Restart restart) {
  const Procedure here(services.log, "Reboot");
  platform::MainWindow& window = services.machine.mainWindow();
  here.guard([&] {
    if (restart == Restart::ToGoOn) record.writeOrTell(here, Value::RunProduct, product);
    if (restart == Restart::ToGoOn) AnnounceRestart(services.log);
    services.window.statusLine(modLanguage::Text(modLanguage::Caption::Rebooting));
    window.setBusyCursor(true);
    record.writeOrTell(here, Value::Reboot, "");
    if (restart == Restart::ToGoOn) record.writeOrTell(here, Value::Rebooted, TrueOrFalse(true));
    AdjustToken(services.machine.power());
    window.setBusyCursor(false);
    window.objectToSessionEnd(false);  // the restart is not to be refused by the program itself
    services.machine.power().restartByForce();
    window.pumpMessages();
  });
}

void AnnounceRestart(clsAppLog& log) {
  const Procedure here(log, "Reboot");
  here.action("Re-booting now");
}

void AdjustToken(platform::Power& power) {
  power.enableShutdownPrivilege();
}

bool IsCommit(const std::string& rebootRequest) {
  return EqualIgnoringCase(rebootRequest, "commit");
}

bool IsResumeRecorded(const ProductRecord& record) {
  return record.read(Value::Rebooted) == TrueOrFalse(true);
}

void TakeUpResume(const Procedure& here, const ProductRecord& record) {
  record.writeOrTell(here, Value::Reboot, "");
  record.writeOrTell(here, Value::Rebooted, "");
}

void CallOffRestart(const Services& services, const ProductRecord& record) {
  const Procedure here(services.log, "ForgetResume");
  if (!IsResumeRecorded(record)) return;
  // The script first: without the mark it would start an installation from the beginning.
  modAutoRun::ForgetAutoRun(services);
  record.writeOrTell(here, Value::Rebooted, "");
}

void ForgetResume(const Services& services, const ProductRecord& record, const std::string& product) {
  if (EqualIgnoringCase(record.read(Value::RunProduct), product)) CallOffRestart(services, record);
}

}  // namespace assistant
