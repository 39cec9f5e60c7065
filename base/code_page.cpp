#include "base/code_page.h"

namespace assistant {
namespace {

constexpr char Neutral = 'x';

const std::bitset<256>*& LeadBytesInUse() {
  static const std::bitset<256>* inUse = nullptr;
  return inUse;
}

}  // namespace

CodePageInUse::CodePageInUse(platform::Machine& machine) : before_(LeadBytesInUse()) {
  for (unsigned byte = 0; byte < leadBytes_.size(); ++byte) {
    leadBytes_[byte] = machine.isLeadByte(static_cast<unsigned char>(byte));
  }
  LeadBytesInUse() = &leadBytes_;
}

CodePageInUse::~CodePageInUse() {
  LeadBytesInUse() = before_;
}

std::vector<bool> TrailBytes(std::string_view text) {
  const std::bitset<256>* leadBytes = LeadBytesInUse();
  if (leadBytes == nullptr || leadBytes->none()) return {};
  std::vector<bool> isTrail(text.size());
  for (std::size_t at = 0; at + 1 < text.size(); ++at) {
    if (leadBytes->test(static_cast<unsigned char>(text[at]))) isTrail[++at] = true;
  }
  return isTrail;
}

std::string WithoutTrailBytes(std::string_view text) {
  std::string plain(text);
  const std::vector<bool> isTrail = TrailBytes(text);
  for (std::size_t at = 0; at < isTrail.size(); ++at)
    if (isTrail[at]) plain[at] = Neutral;
  return plain;
}

}  // namespace assistant
