#include "formula/rename_sheet.h"

#include <algorithm>

#include "core/convert.h"
#include "formula/lexical.h"
#include "formula/sheet_prefix.h"

namespace vantora::embedded {
namespace {

// Reads a text once from left to right and writes it with the new name.
class Renamer {
 public:
  Renamer(std::string_view text, const SheetRename& rename) : text_(text), rename_(rename) {}

  std::optional<std::string> Run() {
    while (position_ < text_.size()) ReadPiece();
    if (!changed_) return std::nullopt;
    return std::move(out_);
  }

 private:
  char At(std::size_t position) const { return position < text_.size() ? text_[position] : '\0'; }

  void ReadPiece() {
    const char c = text_[position_];
    if (c == '"') {
      KeepUntil(EndOfQuoted(text_, position_));
    } else if (c == '\'') {
      ReadQuoted();
    } else if (c == '[') {
      ReadBrackets();
    } else if (c == '#') {
      KeepUntil(position_ + std::max<std::size_t>(ErrorNameLength(text_, position_), 1));
    } else if (IsNameStart(c) || c == '$') {
      ReadWord();
    } else if (IsDigit(c)) {
      KeepUntil(EndOfNumber(text_, position_));
    } else {
      KeepUntil(position_ + 1);
    }
  }

  void KeepUntil(std::size_t end) {
    end = std::max(end, position_ + 1);
    out_.append(text_.substr(position_, end - position_));
    position_ = end;
  }

  void ReadQuoted() {
    const std::size_t end = EndOfQuoted(text_, position_);
    if (At(end) != '!' || end < position_ + 2) return KeepUntil(end);
    const std::string_view inside = text_.substr(position_ + 1, end - position_ - 2);
    // Another workbook's.
    if (inside.find('[') != std::string_view::npos) return KeepUntil(end);
    PutSheets(WithoutDoubledQuotes(inside), end);
  }

  // Another workbook's sheet ("[1]Plan!A1"), or a table's column ("[Amount]").
  void ReadBrackets() {
    const std::size_t bracket_end = EndOfBrackets(text_, position_);
    std::size_t end = EndOfName(text_, bracket_end);
    if (At(end) == ':') end = EndOfName(text_, end + 1);
    KeepUntil(At(end) == '!' ? end : bracket_end);
  }

  void ReadWord() {
    const std::size_t end = EndOfName(text_, position_);
    const std::string_view word = text_.substr(position_, end - position_);
    if (At(end) == '!') return PutSheets(word, end);
    if (At(end) == ':' && !NeedsQuotes(word)) {
      const std::size_t second_end = EndOfName(text_, end + 1);
      if (second_end > end + 1 && At(second_end) == '!') {
        return PutSheets(text_.substr(position_, second_end - position_), second_end);
      }
    }
    KeepUntil(end);
  }

  // One sheet or two with a colon, which stand without quotes in `names` and end at `end`.
  void PutSheets(std::string_view names, std::size_t end) {
    const std::size_t colon = names.find(':');
    std::string first(names.substr(0, colon));
    std::string last(colon == std::string_view::npos ? "" : names.substr(colon + 1));
    const bool renames_first = EqualsIgnoreCase(first, rename_.before);
    const bool renames_last = EqualsIgnoreCase(last, rename_.before);
    if (!renames_first && !renames_last) return KeepUntil(end);
    if (renames_first) first = rename_.after;
    if (renames_last) last = rename_.after;
    const bool quotes = NeedsQuotes(first) || (!last.empty() && NeedsQuotes(last));
    if (quotes) out_.push_back('\'');
    AppendDoublingQuotes(out_, first);
    if (!last.empty()) {
      out_.push_back(':');
      AppendDoublingQuotes(out_, last);
    }
    if (quotes) out_.push_back('\'');
    position_ = end;
    changed_ = true;
  }

  std::string_view text_;
  const SheetRename& rename_;
  std::size_t position_ = 0;
  std::string out_;
  bool changed_ = false;
};

}  // namespace

std::optional<std::string> RenameSheetInText(std::string_view text, const SheetRename& rename) {
  if (text.find('!') == std::string_view::npos) return std::nullopt;
  return Renamer(text, rename).Run();
}

std::optional<std::string> RenameSheetInLocation(std::string_view location,
                                                 const SheetRename& rename) {
  const std::size_t mark = location.rfind('!');
  if (mark == std::string_view::npos) return std::nullopt;
  if (!EqualsIgnoreCase(location.substr(0, mark), rename.before)) {
    return RenameSheetInText(location, rename);
  }
  const bool quotes = NeedsQuotes(rename.after);
  std::string text(quotes ? "'" : "");
  AppendDoublingQuotes(text, rename.after);
  if (quotes) text += '\'';
  return text.append(location.substr(mark));
}

}  // namespace vantora::embedded
