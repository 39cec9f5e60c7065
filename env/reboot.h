// Restarting the machine so that the run goes on by itself at the next logon, and the record of that.
#pragma once

#include <string>

#include "base/procedure.h"
#include "base/product_record.h"
#include "base/services.h"

namespace assistant {

enum class Restart {
  ToGoOn,  ///< the run goes on behind it, which is recorded
  Final,   ///< the closing restart of a run
};

/// Records that the run of the product goes on at the next start. False when that is refused, which is told: a restart
/// would lead nowhere then, or to a run from the beginning.
bool RecordResume(const Services& services, const ProductRecord& record, const std::string& product);

/// Orders the restart of the machine, by force. False when the machine refuses, which is told: the next start finds the
/// run as it is.
bool Reboot(const Services& services, const ProductRecord& record, Restart restart);

/// The row that a restart begins with. That of a closing restart is written before the log is closed.
void AnnounceRestart(clsAppLog& log);

/// Enables the shutdown privilege of this process. Failures pass silently: the restart is tried anyway.
void AdjustToken(platform::Power& power);

/// True for the run value "Reboot" that asks for one restart at the very end of the run.
bool IsCommit(const std::string& rebootRequest);

/// True while a run waits for its restart to go on.
bool IsResumeRecorded(const ProductRecord& record);

/// Takes up a recorded resume for the procedure that goes on with it, `here`: the requests that led to it are answered.
void TakeUpResume(const Procedure& here, const ProductRecord& record);

/// Takes a restart's request to go on back, with the script that would start it. Without either it does nothing.
void CallOffRestart(const Services& services, const ProductRecord& record);

/// The same when the request is for this product, which is being uninstalled.
void ForgetResume(const Services& services, const ProductRecord& record, const std::string& product);

}  // namespace assistant
