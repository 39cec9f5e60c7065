#include "app/qxia/logs/text_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <stdexcept>

namespace qxia::logs {
namespace {

constexpr char32_t Replacement = 0xFFFD;
constexpr std::string_view Utf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view LowFirstMark = "\xFF\xFE";
constexpr std::string_view HighFirstMark = "\xFE\xFF";

[[noreturn]] void RefuseFile(const std::string& path, int error) {
  throw std::runtime_error(path + " cannot be read (" + std::strerror(error) + ")");
}

/// Closes the file at the end of its scope.
class OpenFile {
 public:
  explicit OpenFile(const std::string& path) : file_(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
    if (file_ < 0) RefuseFile(path, errno);
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile() { close(file_); }
  int get() const { return file_; }

 private:
  int file_;
};

void AppendUtf8(std::string& text, char32_t character) {
  const auto trail = [&](int shift) { text += static_cast<char>(0x80 | ((character >> shift) & 0x3F)); };
  if (character < 0x80) {
    text += static_cast<char>(character);
  } else if (character < 0x800) {
    text += static_cast<char>(0xC0 | (character >> 6));
    trail(0);
  } else if (character < 0x10000) {
    text += static_cast<char>(0xE0 | (character >> 12));
    trail(6);
    trail(0);
  } else {
    text += static_cast<char>(0xF0 | (character >> 18));
    trail(12);
    trail(6);
    trail(0);
  }
}

std::string Utf16ToUtf8(std::string_view bytes, std::size_t low) {
  const auto unit = [&](std::size_t at) {
    return static_cast<char32_t>(static_cast<std::uint8_t>(bytes[at + low]) |
                                 static_cast<std::uint8_t>(bytes[at + 1 - low]) << 8);
  };
  std::string text;
  std::size_t at = 0;
  for (; at + 1 < bytes.size(); at += 2) {
    char32_t character = unit(at);
    const bool isPair = character >= 0xD800 && character < 0xDC00 && at + 3 < bytes.size() && unit(at + 2) >= 0xDC00 &&
                        unit(at + 2) < 0xE000;
    if (isPair) {
      character = 0x10000 + ((character - 0xD800) << 10) + (unit(at + 2) - 0xDC00);
      at += 2;
    } else if (character >= 0xD800 && character < 0xE000) {
      character = Replacement;
    }
    AppendUtf8(text, character);
  }
  if (at < bytes.size()) AppendUtf8(text, Replacement);
  return text;
}

}  // namespace

std::string ReadWholeFile(const std::string& path) {
  const OpenFile file(path);
  struct stat facts {};
  if (fstat(file.get(), &facts) != 0) RefuseFile(path, errno);
  if (!S_ISREG(facts.st_mode)) throw std::runtime_error(path + " is no file");
  std::string bytes(static_cast<std::size_t>(facts.st_size), '\0');
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t got = read(file.get(), bytes.data() + done, bytes.size() - done);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) RefuseFile(path, errno);
    if (got == 0) break;
    done += static_cast<std::size_t>(got);
  }
  bytes.resize(done);
  return bytes;
}

std::string FromUtf16(std::string_view bytes) {
  return Utf16ToUtf8(bytes, 0);
}

std::string DecodedText(std::string bytes) {
  const std::string_view view = bytes;
  if (view.starts_with(LowFirstMark)) return Utf16ToUtf8(view.substr(2), 0);
  if (view.starts_with(HighFirstMark)) return Utf16ToUtf8(view.substr(2), 1);
  if (view.size() >= 4 && view[0] != 0 && view[1] == 0 && view[2] != 0 && view[3] == 0) return Utf16ToUtf8(view, 0);
  if (view.starts_with(Utf8Mark)) return bytes.substr(Utf8Mark.size());
  return bytes;
}

}  // namespace qxia::logs
