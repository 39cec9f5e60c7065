#include "env/reboot.h"

#include "base/error_texts.h"
#include "base/text.h"
#include "env/auto_run.h"
#include "exec/captions.h"

namespace assistant {

bool RecordResume(const Services& services, const ProductRecord& record, const std::string& product) {
  const Procedure here(services.log, "Reboot");
  return here.guard([&] {
    record.writeOrRaise(here, Value::RunProduct, product);
    record.writeOrRaise(here, Value::Reboot, "");
    record.writeOrRaise(here, Value::Rebooted, TrueOrFalse(true));
    return true;
  });
}

bool Reboot(const Services& services, const ProductRecord& record, Restart restart) {
  const Procedure here(services.log, "Reboot");
  platform::MainWindow& window = services.machine.mainWindow();
  return here.guard([&] {
    if (restart == Restart::ToGoOn) AnnounceRestart(services.log);
    services.window.statusLine(modLanguage::Text(modLanguage::Caption::Rebooting));
    window.setBusyCursor(true);
    if (restart == Restart::Final) record.writeOrTell(here, Value::Reboot, "");
    AdjustToken(services.machine.power());
    window.setBusyCursor(false);
    window.objectToSessionEnd(false);  // the restart is not to be refused by the program itself
    const platform::Status ordered = services.machine.power().restartByForce();
    window.pumpMessages();
    if (ordered == platform::Status::Ok) return true;
    throw here.failure(ordered, "The machine could not be restarted: " + modErrorBase::SystemErrorText(ordered) +
                                    ". Restart it by hand.");
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
