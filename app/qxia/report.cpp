#include "app/qxia/report.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

constexpr const char* ProductsKey = "HKEY_LOCAL_MACHINE\\Software\\Tarvel\\Installation\\Products";
constexpr const char* LogAppended = "file append ";

void PrintList(const char* title, const std::vector<std::string>& lines) {
  if (lines.empty()) return;
  std::printf("\n%s\n", title);
  for (const std::string& line : lines) std::printf("  %s\n", line.c_str());
}

void PrintComponent(const simulated::Registry& registry, const std::string& key, const std::string& name) {
  std::printf("  %6s  %-20s %-24s %-6s %s\n", registry.text(key, "SequenceNumber").c_str(), name.c_str(),
              registry.text(key, "Install").c_str(), registry.text(key, "Process Return").c_str(),
              registry.text(key, "Message").c_str());
}

struct Component {
  int number;
  std::string key;
  std::string name;
};

/// The product's sub-keys that have a sequence number, in its order.
std::vector<Component> ComponentsOf(const simulated::Registry& registry, const std::string& productKey) {
  std::vector<Component> components;
  for (const std::string& name : registry.keys(productKey)) {
    std::string key = productKey;
    key.append("\\").append(name);
    if (registry.find(key, "SequenceNumber") == nullptr) continue;
    components.push_back({std::atoi(registry.text(key, "SequenceNumber").c_str()), key, name});
  }
  std::stable_sort(components.begin(), components.end(),
                   [](const Component& a, const Component& b) { return a.number < b.number; });
  return components;
}

void PrintProduct(const simulated::Registry& registry, const std::string& key, const std::string& name) {
  const bool failed = registry.text(key, "Succeeded") == "0";
  std::printf("\n%s %s: %s\n", name.c_str(), registry.text(key, "Version").c_str(), failed ? "failed" : "succeeded");
  const std::string reason = registry.text(key, "Abort Reason");
  if (failed && !reason.empty()) std::printf("%s\n", reason.c_str());
  for (const Component& component : ComponentsOf(registry, key))
    PrintComponent(registry, component.key, component.name);
}

}  // namespace

void PrintEffects(const simulated::Workstation& workstation) {
  std::printf("What happened\n");
  for (const std::string& effect : workstation.effects())
    if (effect.rfind(LogAppended, 0) != 0) std::printf("  %s\n", effect.c_str());
}

void PrintProducts(const simulated::Workstation& workstation) {
  const simulated::Registry& registry = workstation.registry();
  for (const std::string& product : registry.keys(ProductsKey))
    PrintProduct(registry, std::string(ProductsKey) + "\\" + product, product);
}

void PrintLooseEnds(const simulated::Workstation& workstation) {
  PrintList("Not declared: add a [program], [package], [answer], [choose] or [person] section for",
            workstation.undeclared());
  PrintList("Declared and never used", workstation.unused());
}
