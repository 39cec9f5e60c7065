#include "app/qxia/machine/machine.h"

#include <cstdio>

#include "app/qxia/machine/machine_file.h"

namespace qxia {

int PrintMachine(const Arguments& arguments) {
  const Media media = FindMedia(arguments);
  RequireAgreement(media);
  const std::string text = MachineFileFor(media, arguments.text("--at"), arguments.text("--on", "windows xp"));
  std::fwrite(text.data(), 1, text.size(), stdout);
  return 0;
}

}  // namespace qxia
