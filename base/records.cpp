#include "base/records.h"

#include "base/registry.h"
#include "base/text.h"

std::string ProductKey(const std::string& product) {
  return product.empty() ? std::string(ProductsKey) : std::string(ProductsKey) + "\\" + product;
}

std::string ProductKey(const Run& run) {
  return ProductKey(run.productName);
}

std::string KeyOf(const Run& run, RecordKey key) {
  if (key == RecordKey::Installation) return InstallationKey;
  return key == RecordKey::Products ? std::string(ProductsKey) : ProductKey(run);
}

std::string ComponentKey(const std::string& product, const std::string& component) {
  return ProductKey(product) + "\\" + component;
}

bool IsNotGiven(const std::string& text) {
  return text.empty() || EqualIgnoringCase(text, NotApplicable) || text == MissingValue;
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

std::string ComponentValue(Run& run, const char* value) {
  return modRegistry::ReadOrEmpty(run, run.component.key, value);
}

std::string GivenComponentValue(Run& run, const char* value) {
  const std::string text = ComponentValue(run, value);
  return IsNotGiven(text) ? std::string() : text;
}
