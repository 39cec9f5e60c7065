// `qxia new DIR`: media to start from.
#pragma once

#include "app/qxia/command.h"

namespace qxia {

inline constexpr Option NewOptions[] = {
    {"--product", "NAME", "the product's name"},
    {"--component", "NAME:KIND",
     "a component, once for each in the order of installation; KIND is\n"
     "msi, exe, exe-restart (a script that hands the program's request for a\n"
     "restart on), bat, vbs or copy"},
    {"--discs", "N", "how many discs they lie on (1); several are DIR/disc1, DIR/disc2, ..."},
};

int MakeNewMedia(const Arguments& arguments);

}  // namespace qxia
