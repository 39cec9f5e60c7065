// The simulated registry behind its port: a line "key", a line "name", and the data. What it keeps can be read again.
#include "platform/simulated/registry.h"
#include "tests/fuzz/fuzz.h"

void Fuzz(const std::string& input) {
  using platform::Status;
  std::string data = input;
  const std::string path = TakeLine(data);
  const std::string name = TakeLine(data);
  simulated::Journal journal;
  simulated::Registry registry(HostFile(""), journal, false);
  platform::KeyHandle key;
  if (registry.createKey(platform::RegistryRoot::LocalMachine, path, platform::KeyAccess::Plain, key) != Status::Ok)
    return;
  if (registry.setValue(key, name, platform::ValueType::Text, data) != Status::Ok) return;
  std::string kept;
  platform::ValueType type{};
  const Status asked = registry.queryValue(key, name, type, kept);
  Require(asked == Status::Ok, "a value that was set is there");
  registry.reload();
  std::string read;
  Require(registry.openKey(platform::RegistryRoot::LocalMachine, path, platform::KeyAccess::Plain, key) == Status::Ok,
          "a key is there again");
  Require(registry.queryValue(key, name, type, read) == Status::Ok && read == kept, "a value is there again");
}
