#include "app/qxia/rehearse/component_record.h"

#include <algorithm>
#include <cstdlib>

#include "base/product_record.h"

namespace qxia {

std::vector<ComponentRecord> ReadComponents(const simulated::Registry& registry, const std::string& product) {
  std::vector<ComponentRecord> components;
  const std::string key = std::string("HKEY_LOCAL_MACHINE\\") + assistant::ProductsKey + "\\" + product;
  for (const std::string& name : registry.keys(key)) {
    const std::string below = key + "\\" + name;
    if (registry.find(below, "SequenceNumber") == nullptr) continue;
    ComponentRecord component{name, std::atoi(registry.text(below, "SequenceNumber").c_str()), {}};
    for (const std::string& value : registry.values(below)) component.values[value] = registry.text(below, value);
    components.push_back(component);
  }
  std::stable_sort(components.begin(), components.end(),
                   [](const ComponentRecord& a, const ComponentRecord& b) { return a.sequence < b.sequence; });
  return components;
}

}  // namespace qxia
