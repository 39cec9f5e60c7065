// Media looked at by the program itself, on a machine that lets everything succeed.
#pragma once

#include <string>
#include <vector>

#include "app/qxia/media.h"
#include "app/qxia/package.h"
#include "app/qxia/rehearse/component_record.h"

namespace qxia {

/// A package of the media as the machine sees it.
struct MediaPackage {
  std::string path;     ///< "D:\Packages\Core\core.msi"
  std::string problem;  ///< why it cannot be read; "" where it can
  MsiPackage package;
  bool used = false;  ///< the product's run reads it
};

struct Scan {
  std::vector<ComponentRecord> components;  ///< as the run recorded them
  std::vector<std::string> commands;        ///< that ran, in order
  std::vector<MediaPackage> packages;
  std::string packageRoot;
  bool asksForPassword = false;
};

Scan ScanMedia(const Media& media, const std::string& at, const std::string& system);

}  // namespace qxia
