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

std::string ComponentValue(Run& run, const char* value) {
  return modRegistry::ReadOrEmpty(run, run.component.key, value);
}

std::string GivenComponentValue(Run& run, const char* value) {
  const std::string text = ComponentValue(run, value);
  return IsNotGiven(text) ? std::string() : text;
}
