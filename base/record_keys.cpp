#include "base/record_keys.h"

#include "base/error.h"
#include "base/registry.h"
#include "base/text.h"

namespace assistant {

std::string ProductKey(const std::string& product) {
  return product.empty() ? std::string(ProductsKey) : std::string(ProductsKey) + "\\" + product;
}

std::string KeyOf(RecordKey key, const std::string& product) {
  if (key == RecordKey::Installation) return InstallationKey;
  return key == RecordKey::Products ? std::string(ProductsKey) : ProductKey(product);
}

std::string ComponentKey(const std::string& product, const std::string& component) {
  return ProductKey(product) + "\\" + component;
}

bool IsNotGiven(const std::string& text) {
  return text.empty() || EqualIgnoringCase(text, NotApplicable) || text == MissingValue;
}

std::string Given(const std::string& text) {
  return IsNotGiven(text) ? std::string() : text;
}

void RequireStorable(const std::string& text, const std::string& key, const std::string& section,
                     const std::string& iniFile) {
  if (text.size() <= modRegistry::LongestText) return;
  throw Error(GeneralError,
              "The value of key " + key + " in section [" + section + "] of " + iniFile + " has " +
                  std::to_string(text.size()) + " characters. Shorten it to " +
                  std::to_string(modRegistry::LongestText) + ".",
              "RequireStorable");
}

}  // namespace assistant
