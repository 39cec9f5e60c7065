// What packages and installed products say of themselves: one text a line, a name and a value in turn.
#include "exec/msi_queries.h"
#include "tests/fuzz/fuzz.h"

namespace {

using platform::Status;

/// Windows Installer, with these texts in the one package and as the products.
class Installer : public platform::ForwardingWindowsInstaller {
 public:
  Installer(platform::WindowsInstaller& inner, std::string texts)
      : ForwardingWindowsInstaller(inner), texts_(std::move(texts)) {}

  Status enumerateProduct(std::uint32_t, std::string& productCode) override { return next(productCode); }
  Status productInformation(const std::string&, platform::ProductProperty, std::string& value) override {
    return next(value);
  }
  Status openPackage(const std::string&, platform::PackageHandle& package) override {
    package.value = 1;
    return Status::Ok;
  }
  Status openProperties(platform::PackageHandle, platform::ViewHandle& view) override {
    view.value = 1;
    return Status::Ok;
  }
  Status executeView(platform::ViewHandle) override { return Status::Ok; }
  Status nextProperty(platform::ViewHandle, platform::PackageProperty& property) override {
    next(property.name);
    return next(property.value);
  }
  Status closeView(platform::ViewHandle) override { return Status::Ok; }
  Status closePackage(platform::PackageHandle) override { return Status::Ok; }

 private:
  Status next(std::string& text) {
    if (texts_.empty()) return Status::NoMoreItems;
    text = TakeLine(texts_);
    return Status::Ok;
  }

  std::string texts_;
};

class Machine : public platform::ForwardingPlatform {
 public:
  Machine(platform::Platform& inner, const std::string& texts)
      : ForwardingPlatform(inner), installer_(inner.installer(), texts) {}

  platform::WindowsInstaller& installer() override { return installer_; }

 private:
  Installer installer_;
};

}  // namespace

void Fuzz(const std::string& input) {
  using namespace assistant;
  Bench& bench = SharedBench();
  const Services& usual = bench.run.services;
  Machine forPackage(bench.view, input);
  const PackageData data = GetMSIData({forPackage, usual.fso, usual.window, usual.log, usual.refusals}, "C:\\core.msi");
  Require(data.read && data.name.size() < 100, "a long property is as good as unreadable");
  Machine forProducts(bench.view, input);
  const InstalledProducts products =
      ListInstalledProducts({forProducts, usual.fso, usual.window, usual.log, usual.refusals});
  Require(products.list.front().code.empty() || products.find(products.list.front().code) != nullptr ||
              !IsProductCode(products.list.front().code),
          "a product that is listed is found");
}
