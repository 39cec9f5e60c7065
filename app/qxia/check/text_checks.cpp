// QX101 to QX104, QX118: the bytes of the files.
#include <iconv.h>

#include <algorithm>
#include <string>

#include "app/qxia/check/checks.h"

namespace qxia::check {
namespace {

class Converter {
 public:
  Converter(const std::string& to, const std::string& from) : handle_(iconv_open(to.c_str(), from.c_str())) {}
  ~Converter() {
    if (isOpen()) iconv_close(handle_);
  }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  /// True when the text can be read; a code page that is not known reads everything.
  bool reads(const std::string& text) const {
    if (!isOpen()) return true;
    std::string in = text;
    std::string out(text.size() * 4 + 4, '\0');
    char* from = in.data();
    char* to = out.data();
    std::size_t fromLeft = in.size();
    std::size_t toLeft = out.size();
    iconv(handle_, nullptr, nullptr, nullptr, nullptr);
    return iconv(handle_, &from, &fromLeft, &to, &toLeft) != static_cast<std::size_t>(-1);
  }

 private:
  bool isOpen() const { return handle_ != reinterpret_cast<iconv_t>(-1); }  // NOLINT: that is the library's mark

  iconv_t handle_;
};

struct CodePages {
  Converter machines;
  Converter utf8{"UTF-16LE", "UTF-8"};
};

bool IsPlain(const std::string& line) {
  return std::none_of(line.begin(), line.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

void CheckLine(const MediaModel& media, const CodePages& pages, const SourceIni& file, int number, Findings& findings) {
  const std::string& line = file.lines()[static_cast<std::size_t>(number) - 1];
  if (line.find('\r') != std::string::npos)
    findings.add(104, file, number, "A lone carriage return stands in this line: what is behind it is not read.");
  if (IsPlain(line)) return;
  if (pages.utf8.reads(line)) {
    findings.add(103, file, number,
                 "This line is UTF-8 text; the machines read it in code page " + media.codePage + ".");
  } else if (!pages.machines.reads(line)) {
    findings.add(103, file, number, "This line holds bytes that are no text of code page " + media.codePage + ".");
  }
}

void CheckFile(const MediaModel& media, const CodePages& pages, const SourceIni& file, Findings& findings) {
  if (file.state() == SourceIni::State::Utf16)
    return findings.add(101, file, 1, "The file is Unicode text (UTF-16), which the program does not read.");
  if (file.state() == SourceIni::State::Unreadable)
    return findings.add(118, file, 1, "The file cannot be read: " + file.reason() + ".");
  if (file.hasUtf8Mark()) findings.add(102, file, 1, "The file begins with a mark of UTF-8.");
  for (int number = 1; number <= static_cast<int>(file.lines().size()); ++number)
    CheckLine(media, pages, file, number, findings);
}

}  // namespace

void CheckText(const MediaModel& media, Findings& findings) {
  const CodePages pages{{"UTF-16LE", "CP" + media.codePage}};
  for (const Disc& disc : media.discs)
    for (const auto& [path, file] : disc.sources) CheckFile(media, pages, *file, findings);
}

}  // namespace qxia::check
