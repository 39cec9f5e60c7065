#include "app/qxia/result.h"

#include <array>
#include <nlohmann/json.hpp>

namespace qxia {
namespace {

using Json = nlohmann::json;

constexpr std::array<const char*, 9> Names = {"installed",   "already installed", "copied", "held back",   "failed",
                                              "not reached", "removed",           "kept",   "already gone"};

/// What the bytes 0x80 to 0x9F mean in code page 1252; 0 where they mean nothing.
constexpr std::array<char16_t, 32> HighControls = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                   0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                                   0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                   0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

bool IsUtf8(const std::string& text) {
  std::size_t following = 0;
  for (const unsigned char byte : text) {
    if (following > 0) {
      if ((byte & 0xC0) != 0x80) return false;
      --following;
    } else if (byte >= 0xF0 && byte < 0xF5) {
      following = 3;
    } else if (byte >= 0xE0 && byte < 0xF0) {
      following = 2;
    } else if (byte >= 0xC2 && byte < 0xE0) {
      following = 1;
    } else if (byte >= 0x80) {
      return false;
    }
  }
  return following == 0;
}

char16_t CharacterOf(unsigned char byte) {
  if (byte < 0x80 || byte > 0x9F) return byte;
  const char16_t character = HighControls[byte - 0x80];
  return character == 0 ? 0xFFFD : character;
}

void Append(std::string& text, char16_t character) {
  if (character < 0x80) {
    text += static_cast<char>(character);
  } else if (character < 0x800) {
    text += static_cast<char>(0xC0 | (character >> 6));
    text += static_cast<char>(0x80 | (character & 0x3F));
  } else {
    text += static_cast<char>(0xE0 | (character >> 12));
    text += static_cast<char>(0x80 | ((character >> 6) & 0x3F));
    text += static_cast<char>(0x80 | (character & 0x3F));
  }
}

}  // namespace

const char* NameOf(Outcome outcome) {
  return Names.at(static_cast<std::size_t>(outcome));
}

Json ToJson(const ProductResult& product) {
  Json reasons = Json::array();
  for (const std::string& reason : product.reasons) reasons.push_back(ToUtf8(reason));
  return {{"name", ToUtf8(product.name)},
          {"version", ToUtf8(product.version)},
          {"succeeded", product.succeeded},
          {"reasons", reasons}};
}

Json ToJson(const ComponentResult& component) {
  return {{"name", ToUtf8(component.name)},
          {"kind", component.kind},
          {"sequence", component.sequence},
          {"outcome", NameOf(component.outcome)},
          {"reason", ToUtf8(component.reason)},
          {"command", ToUtf8(component.command)},
          {"exitCode", component.exitCode ? Json(*component.exitCode) : Json(nullptr)}};
}

std::string ToUtf8(const std::string& text) {
  if (IsUtf8(text)) return text;
  std::string converted;
  for (const unsigned char byte : text) Append(converted, CharacterOf(byte));
  return converted;
}

}  // namespace qxia
