#include "base/share_paths.h"

#include <algorithm>

#include "base/code_page.h"
#include "base/paths.h"
#include "base/procedure.h"
#include "base/registry.h"
#include "base/text.h"

namespace assistant {
namespace {

std::string Resolved(clsAppLog& log, const std::string& name, const std::string& folder, const std::string& rest,
                     const char* kind) {
  const Procedure here(log, "ResolveQXSharePath");
  here.action("QX Share " + name + " resolved to " + folder + kind);
  return rest.empty() ? folder : Joined(folder, rest);
}

}  // namespace

std::string ResolveQXSharePath(const ShareResolver& resolver, const std::string& path) {
  if (Contains(path, ":")) return path;
  const std::string reference = path.substr(std::min(path.find_first_not_of('\\'), path.size()));
  const std::string name = reference.substr(0, WithoutTrailBytes(reference).find('\\'));
  const std::string rest = name.size() < reference.size() ? reference.substr(name.size() + 1) : std::string();
  if (name.empty()) return path;
  const std::string recorded = modRegistry::ReadOrEmpty(resolver.registry, LocationsKey, name);
  if (!recorded.empty()) return Resolved(resolver.log, name, recorded, rest, " (existing share)");
  for (const Share& share : resolver.shares) {
    if (share.applies && EqualIgnoringCase(share.name, name))
      return Resolved(resolver.log, name, share.folder, rest, " (new share)");
  }
  return path;
}

}  // namespace assistant
