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

/// Orders the restart of the machine, by force. Failures of the restart itself are not looked at: the next start finds
/// the run as it is. `record` is that of the product in work, named `product`.
void Reboot(const Services& services, const ProductRecord& record, const std::string& product, Restart restart);

/// Enables the shutdown privilege of this process. Failures pass silently: the restart is tried anyway.
void AdjustToken(platform::Power& power);

/// True for the run value "Reboot" that asks for one restart at the very end of the run.
bool IsCommit(const std::string& rebootRequest);

/// True while a run waits for its restart to go on.
bool IsResumeRecorded(const ProductRecord& record);

/// Takes up a recorded resume for the procedure that goes on with it, `here`: the requests that led to it are answered.
/// The product that goes on; "" when the record names none.
std::string TakeUpResume(const Procedure& here, const ProductRecord& record);

/// Takes a restart's request to go on back when it is for this product, which is installed no more.
void ForgetResume(const Services& services, const ProductRecord& record, const std::string& product);

}  // namespace assistant
