// QX701 to QX706, QX802: products on several discs.
#include "app/qxia/check/checks.h"
#include "base/paths.h"
#include "base/record_keys.h"
#include "base/text.h"
#include "core/coded_paths.h"

namespace qxia::check {
namespace {

using assistant::EqualIgnoringCase;

constexpr const char* Next = "NextVolumeName";
constexpr const char* Previous = "PreviousVolumeName";

/// A neighbour's label, and the line that tells it.
struct Named {
  std::string label;
  const SourceIni* file = nullptr;
  int line = 1;
};

/// What the product ini says goes before the application ini.
Named NeighbourOf(const Disc& disc, const char* key) {
  for (const SourceIni* ini : {disc.product, disc.application}) {
    const IniEntry* entry = ini == nullptr ? nullptr : ini->find("Product", key);
    if (entry != nullptr && !assistant::IsNotGiven(entry->value) && entry->value != "Failed")
      return {entry->value, ini, entry->line};
  }
  return {};
}

/// The discs of a product, and what they call each other.
class DiscCheck {
 public:
  DiscCheck(const MediaModel& media, Findings& findings) : discs_(media.discs), findings_(findings) {
    for (const Disc& disc : discs_) {
      next_.push_back(NeighbourOf(disc, Next));
      previous_.push_back(NeighbourOf(disc, Previous));
    }
  }

  void run() {
    checkInis();
    for (std::size_t i = 0; i + 1 < discs_.size(); ++i) isInOrder_ = isInOrder_ && !namesNoNext(i);
    for (std::size_t i = 0; i < discs_.size(); ++i) {
      checkNext(i);
      checkPrevious(i);
    }
    checkSettings();
  }

 private:
  /// The label of a disc as given, else what one neighbour calls it; "" where neither is known.
  std::string labelOf(std::size_t i, bool bySuccessor) const {
    if (!discs_[i].label.empty()) return discs_[i].label;
    if (bySuccessor) return i + 1 < discs_.size() ? previous_[i + 1].label : "";
    return i > 0 ? next_[i - 1].label : "";
  }

  bool namesNoNext(std::size_t i) const { return next_[i].file == nullptr && discs_[i].product != nullptr; }

  void checkInis() {
    for (std::size_t i = 1; i < discs_.size(); ++i) {
      const SourceIni* first = discs_[0].application;
      const std::string shown = assistant::Replace(discs_[i].shownPrefix, "\\", "/");
      if (discs_[i].application == nullptr) {
        findings_.add(704, *first, 1,
                      "The disc " + shown + " has no application ini " + discs_[0].applicationFile.shown + ".");
      } else if (discs_[i].product == nullptr && discs_[0].product != nullptr) {
        findings_.add(704, *discs_[i].application, discs_[i].application->lineOf("Product", "ProductIni"),
                      "The disc " + shown + " has no product ini " + discs_[0].productFile.shown + ".");
      }
    }
  }

  bool isEarlier(std::size_t i, const std::string& label) const {
    for (std::size_t other = 0; other <= i; ++other) {
      const std::string own = labelOf(other, false);
      const std::string bySuccessor = other < i ? labelOf(other, true) : "";
      if (EqualIgnoringCase(own, label) || EqualIgnoringCase(bySuccessor, label)) return true;
    }
    return i > 0 && EqualIgnoringCase(previous_[i].label, label);
  }

  void checkNext(std::size_t i) {
    const Named& next = next_[i];
    const bool isLast = i + 1 == discs_.size();
    if (next.file == nullptr) {
      if (!isLast && namesNoNext(i))
        findings_.add(701, *discs_[i].product, discs_[i].product->lineOf("Product", Next),
                      "This disc names no next one, so " + discs_[i + 1].shownPrefix + " is never asked for.",
                      "Write NextVolumeName= and the label of the next disc, or give the folders in their order.");
      return;
    }
    if (isEarlier(i, next.label) &&
        !(i == 0 && discs_.size() == 1 && !EqualIgnoringCase(discs_[0].label, next.label))) {
      findings_.add(702, *next.file, next.line, "The next disc, " + next.label + ", was installed already.");
    } else if (isLast && isInOrder_) {
      findings_.add(703, *next.file, next.line, "The next disc, " + next.label + ", was not given.");
    } else if (const std::string label = isLast ? "" : labelOf(i + 1, true);
               !label.empty() && !EqualIgnoringCase(label, next.label)) {
      findings_.add(701, *next.file, next.line, "The next disc is called " + label + ", not " + next.label + ".",
                    "Write NextVolumeName=" + label);
    }
  }

  void checkPrevious(std::size_t i) {
    const Named& previous = previous_[i];
    if (previous.file == nullptr) return;
    if (i == 0) {
      // One application ini for all discs may name both neighbours.
      if (isInOrder_ && (discs_.size() == 1 || previous.file == discs_[i].product))
        findings_.add(703, *previous.file, previous.line, "The disc before, " + previous.label + ", was not given.");
      return;
    }
    const std::string label = discs_[i - 1].label.empty() ? (i > 1 ? next_[i - 2].label : "") : discs_[i - 1].label;
    if (!label.empty() && !EqualIgnoringCase(label, previous.label))
      findings_.add(701, *previous.file, previous.line,
                    "The disc before is called " + label + ", not " + previous.label + ".",
                    "Write PreviousVolumeName=" + label);
  }

  void checkSettings() {
    const Disc& first = discs_[0];
    if (next_[0].file == nullptr) return;
    findings_.add(802, *next_[0].file, next_[0].line, "A silent run waits here for the disc " + next_[0].label + ".");
    const std::string root = first.application->value("Product", "PackageRoot");
    if (!assistant::IsFullPath(root) && assistant::TakeApartByLetters(root).code == assistant::PathCode::Current)
      findings_.add(705, *first.application, first.application->lineOf("Product", "PackageRoot"),
                    "PackageRoot=" + root + " is below the local copy of the program, not on the disc.");
    for (std::size_t i = 0; i + 1 < discs_.size(); ++i)
      if (discs_[i].product != nullptr && assistant::IsTrue(discs_[i].product->value("Product", "CanUninstall")) &&
          lacksCanUninstall())
        findings_.add(706, *discs_[i].product, discs_[i].product->lineOf("Product", "CanUninstall"),
                      "Only the last disc's CanUninstall counts, and it is not true.");
  }

  bool lacksCanUninstall() const {
    const SourceIni* last = discs_.back().product;
    return last != nullptr && !assistant::IsTrue(last->value("Product", "CanUninstall"));
  }

  const std::deque<Disc>& discs_;
  Findings& findings_;
  std::vector<Named> next_;
  std::vector<Named> previous_;
  bool isInOrder_ = true;  ///< each disc but the last names a next one; else nothing else can be told of neighbours
};

}  // namespace

void CheckDiscs(const MediaModel& media, Findings& findings) {
  if (media.discs.front().application != nullptr) DiscCheck(media, findings).run();
}

}  // namespace qxia::check
