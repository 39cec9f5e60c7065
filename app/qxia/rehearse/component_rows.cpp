#include "app/qxia/rehearse/component_rows.h"

#include <algorithm>

namespace qxia {

std::vector<ComponentRow> ComponentRows(const std::vector<RehearsedRun>& runs) {
  std::vector<ComponentRow> rows;
  for (std::size_t system = 0; system < runs.size(); ++system) {
    for (const ComponentResult& component : runs[system].components) {
      auto row = std::find_if(rows.begin(), rows.end(), [&](const auto& r) { return r.name == component.name; });
      if (row == rows.end())
        row = rows.insert(rows.end(), {component.name, std::vector<const ComponentResult*>(runs.size(), nullptr)});
      row->cells[system] = &component;
    }
  }
  std::stable_sort(rows.begin(), rows.end(), [](const ComponentRow& a, const ComponentRow& b) {
    return a.first()->sequence < b.first()->sequence;
  });
  return rows;
}

}  // namespace qxia
