// Five products installed and uninstalled in random orders, with random refusals and power cuts; the machine at the end
// is that of the beginning.

#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <random>

#include "tests/sweeps/household.h"
#include "tests/sweeps/scope.h"

namespace sweeps {
namespace {

using Lines = std::vector<std::string>;

constexpr const char* Systems[] = {"Windows 98", "Windows NT 4.0", "Windows XP"};
constexpr int Steps = 12;
constexpr int MostTries = 6;
constexpr int LatestOperation = 500;

class Order {
 public:
  Order(std::uint32_t seed, const char* system) : random_(seed), household_(system) {}

  void play() {
    for (int step = 0; step < Steps; ++step) doSomething();
    household_.person().expect({});
    for (const Suite& suite : shuffled()) makeAnEnd(suite);
  }

  /// What may not be, and how it came about.
  Lines findings() {
    Lines lines = household_.person().broken();
    lines.insert(lines.end(), failures_.begin(), failures_.end());
    for (const std::string& left : Without(Difference(household_.beginning(), household_.look()), Stays)) {
      lines.push_back(left);
    }
    if (!lines.empty()) lines.insert(lines.end(), story_.begin(), story_.end());
    return lines;
  }
  int troubles() const { return troubles_; }
  /// Products that could not be taken off before they had been installed again.
  int installedFirst() const { return installedFirst_; }

 private:
  int pick(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random_); }

  std::vector<Suite> shuffled() {
    std::vector<Suite> suites = Suites;
    for (std::size_t i = suites.size(); i > 1; --i) {
      std::swap(suites[i - 1], suites[static_cast<std::size_t>(pick(static_cast<int>(i)))]);
    }
    return suites;
  }

  /// Nothing, a refusal or a cut, somewhere in what comes next.
  void prepareTrouble() {
    const int kind = pick(3);
    const int operation = static_cast<int>(household_.person().history().size()) + 1 + pick(LatestOperation);
    household_.person().expect(kind == 0 ? Trouble{} : Trouble{operation, kind == 1});
  }

  void doSomething() {
    const Suite& suite = Suites[static_cast<std::size_t>(pick(static_cast<int>(Suites.size())))];
    const bool installs = household_.isGone(suite) || pick(2) == 0;
    prepareTrouble();
    const bool done = installs ? household_.install(suite) : household_.uninstall(suite);
    const std::string& hit = household_.person().hit();
    if (!hit.empty()) ++troubles_;
    story_.push_back(std::string(installs ? "install " : "uninstall ") + suite.name + (done ? "" : " fails") +
                     (hit.empty() ? "" : ", trouble: " + hit));
  }

  void makeAnEnd(const Suite& suite) {
    const auto uninstall = [&] { return household_.isGone(suite) || household_.uninstall(suite); };
    if (carryOut("uninstall", suite, uninstall)) return;
    // docs/uninstalling.md: what broke off while a program ran, or had recorded nothing yet, is installed first.
    ++installedFirst_;
    const bool done = carryOut("install", suite, [&] { return household_.install(suite); }) &&
                      carryOut("uninstall", suite, uninstall);
    if (!done) failures_.push_back(std::string(suite.name) + " cannot be taken off any more");
  }

  template <class Try>
  bool carryOut(const char* what, const Suite& suite, Try once) {
    story_.push_back(std::string("at last ") + what + " " + suite.name);
    for (int tries = 0; tries < MostTries; ++tries)
      if (once()) return true;
    return false;
  }

  std::mt19937 random_;
  Household household_;
  Lines story_;
  Lines failures_;
  int troubles_ = 0;
  int installedFirst_ = 0;
};

std::string Shown(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += "\n    " + line.substr(0, 300);
  return text;
}

TEST(Orders, FiveProductsInRandomOrders_LeaveTheMachineAsItWas) {
  int troubles = 0;
  int installedFirst = 0;
  for (int i = 0; i < Chosen.count; ++i) {
    const std::uint32_t seed = Chosen.seed + static_cast<std::uint32_t>(i);
    Order order(seed, Systems[seed % std::size(Systems)]);
    order.play();
    const Lines findings = order.findings();
    EXPECT_EQ(findings, Lines()) << "seed " << seed << Shown(findings);
    troubles += order.troubles();
    installedFirst += order.installedFirst();
  }
  std::cout << "figure: " << Chosen.count << " random orders from seed " << Chosen.seed << ", " << troubles
            << " refusals and power cuts in them, " << installedFirst << " products installed again before they went\n";
}

}  // namespace
}  // namespace sweeps
