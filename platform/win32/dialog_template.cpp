#include "platform/win32/dialog_template.h"

namespace win32 {

namespace {

constexpr wchar_t FontName[] = L"MS Shell Dlg";
constexpr WORD FontPoints = 8;

/// Appends the parts of a template: words, double words (low word first), and texts with their terminating zero.
class TemplateWriter {
 public:
  void word(WORD value) { words_.push_back(value); }
  void number(short value) { word(static_cast<WORD>(value)); }
  void doubleWord(DWORD value) {
    word(LOWORD(value));
    word(HIWORD(value));
  }
  void text(const wchar_t* characters) {
    do {
      word(static_cast<WORD>(*characters));
    } while (*characters++ != L'\0');
  }
  void alignToDoubleWord() {
    if (words_.size() % 2 != 0) word(0);
  }
  std::vector<WORD> take() { return std::move(words_); }

 private:
  std::vector<WORD> words_;
};

void WriteHeader(TemplateWriter& out, const DialogLayout& layout) {
  out.doubleWord(layout.style | DS_SETFONT);
  out.doubleWord(0);
  out.word(static_cast<WORD>(layout.items.size()));
  out.doubleWord(0);  // position
  out.number(layout.width);
  out.number(layout.height);
  out.word(0);  // no menu
  out.text(layout.windowClass);
  out.text(L"");  // no caption
  out.word(FontPoints);
  out.text(FontName);
}

void WriteItem(TemplateWriter& out, const DialogItem& item) {
  out.alignToDoubleWord();
  out.doubleWord(item.style | WS_CHILD | WS_VISIBLE);
  out.doubleWord(item.extendedStyle);
  for (short value : {item.x, item.y, item.width, item.height}) out.number(value);
  out.word(item.id);
  out.text(item.windowClass);
  out.text(item.text);
  out.word(0);  // no creation data
}

}  // namespace

std::vector<WORD> DialogTemplate(const DialogLayout& layout) {
  TemplateWriter out;
  WriteHeader(out, layout);
  for (const DialogItem& item : layout.items) WriteItem(out, item);
  return out.take();
}

}  // namespace win32
