// The one fact that made a component fail.
#pragma once

#include <string>
#include <vector>

#include "app/qxia/rehearse/component_record.h"
#include "app/qxia/rehearse/rows.h"
#include "app/qxia/result.h"

namespace qxia {

std::string WhyFailed(const std::vector<LogRow>& turn, const ComponentRecord& component, const ComponentResult& result,
                      const std::vector<std::string>& reasons);

}  // namespace qxia
