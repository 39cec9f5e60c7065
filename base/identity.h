// Who the program is, wherever it has to say so.
#pragma once

inline constexpr const char* Title = "QX Installation Assistant";

/// Registry key of the run values; the products and their components are kept below it (records.h).
inline constexpr const char* InstallationKey = "Software\\Tarvel\\Installation";
inline constexpr const char* ProductsKey = "Software\\Tarvel\\Installation\\Products";
