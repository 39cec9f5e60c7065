#include "base/records.h"

#include "base/registry.h"
#include "base/text.h"

std::string ProductKey(const std::string& product) {
  return product.empty() ? std::string(ProductsKey) : std::string(ProductsKey) + "\\" + product;
}

std::string ProductKey(const Run& run) {
  return ProductKey(run.productName);
}

std::string ComponentKey(const std::string& product, const std::string& component) {
  return ProductKey(product) + "\\" + component;
}

std::string ComponentValue(Run& run, const char* value) {
  return modRegistry::ReadOrEmpty(run, run.component.key, value);
}

std::string GivenComponentValue(Run& run, const char* value) {
  const std::string text = ComponentValue(run, value);
  return IsNotGiven(text) ? std::string() : text;
}
