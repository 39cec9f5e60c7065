#include "exec/unfinished_copy.h"

#include "base/error.h"
#include "base/paths.h"
#include "base/procedure.h"
#include "base/text.h"

namespace assistant {
namespace {

constexpr const char* UnfinishedMark = "QX copy not finished.txt";

}  // namespace

void MarkUnfinished(clsFso& fso, const std::string& folder) {
  const std::string mark = Joined(folder, UnfinishedMark);
  // One that is there may be another file under this name, which must not be written over.
  if (!fso.fileIsGone(mark)) fso.deleteFileForced(mark);
  fso.writeNewFile(
      mark, std::string("The copy to this folder was begun and is not finished, or it is being deleted.") + LineBreak);
}

void MarkFinished(clsFso& fso, const std::string& folder) {
  fso.deleteFileForced(Joined(folder, UnfinishedMark));
}

bool HoldsUnfinishedCopy(clsFso& fso, const std::string& folder) {
  const std::string mark = Joined(folder, UnfinishedMark);
  return !fso.fileIsGone(mark) && !fso.isLink(mark) && !fso.hasOtherNames(mark);
}

void DeleteCopy(const Services& services, const std::string& folder) {
  platform::Attributes attributes;
  services.machine.files().attributes(folder, attributes);
  try {
    if (!attributes.link) MarkUnfinished(services.fso, folder);
  } catch (const Error& failure) {
    // A full disk takes the empty file, which is enough. Where that is refused, so is the deletion.
    const Procedure here(services.log, "DeleteCopy");
    here.warn(failure.text());
  }
  services.fso.deleteFolderForced(folder, UnfinishedMark);
}

}  // namespace assistant
