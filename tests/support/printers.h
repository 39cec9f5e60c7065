// How failed tests show what the ports return.
#pragma once

#include <ostream>

#include "platform/files.h"
#include "platform/status.h"

namespace platform {

inline void PrintTo(Status status, std::ostream* out) {
  *out << "status " << Number(status);
}

inline void PrintTo(const Attributes& attributes, std::ostream* out) {
  *out << "attributes:" << (attributes.readOnly ? " read-only" : "") << (attributes.hidden ? " hidden" : "")
       << (attributes.system ? " system" : "") << (attributes.archive ? " archive" : "")
       << (attributes.folder ? " folder" : "") << (attributes.link ? " link" : "");
}

}  // namespace platform
