#include "app/qxia/rehearse/scratch_folder.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace qxia {

ScratchFolder::ScratchFolder() : path_((std::filesystem::temp_directory_path() / "qxia-XXXXXX").string()) {
  if (mkdtemp(path_.data()) == nullptr) throw std::runtime_error(path_ + ": no temporary folder can be made");
}

ScratchFolder::~ScratchFolder() {
  std::error_code ignored;
  if (!kept_) std::filesystem::remove_all(path_, ignored);
}

}  // namespace qxia
