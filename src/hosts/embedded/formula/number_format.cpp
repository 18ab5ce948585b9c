// Format codes: reading them, and which section shows a value.
#include "formula/number_format.h"

#include <array>
#include <charconv>
#include <cmath>

#include "formula/decimal.h"
#include "formula/lexical.h"
#include "formula/unicode.h"

namespace vantora::embedded {
namespace {

using Kind = FormatPiece::Kind;
using Type = FormatSection::Type;
using Condition = FormatSection::Condition;

constexpr std::size_t kMostSections = 4;

bool IsDatePiece(Kind kind) { return kind >= Kind::kYear; }

// Thrown within this file alone, for a code that no cell could have.
struct Unreadable {};

// Reads one section, up to its semicolon.
class SectionReader {
 public:
  SectionReader(std::string_view code, std::size_t& position) : code_(code), position_(position) {}

  FormatSection Read() {
    while (position_ < code_.size() && code_[position_] != ';') ReadPiece();
    bool has_date = false, has_digit = false;
    for (const FormatPiece& piece : section_.pieces) {
      has_date = has_date || IsDatePiece(piece.kind);
      has_digit = has_digit || piece.kind == Kind::kDigit;
      if (piece.kind == Kind::kText) section_.has_text = true;
    }
    if (has_date) {
      FinishDate();
    } else {
      FinishNumber();
    }
    if (section_.has_text && (has_date || has_digit)) throw Unreadable();
    return std::move(section_);
  }

 private:
  char Peek(std::size_t ahead = 0) const {
    return position_ + ahead < code_.size() ? code_[position_ + ahead] : '\0';
  }
  bool StandsHere(std::string_view word) const {
    return EqualIgnoringAsciiCase(code_.substr(position_, word.size()), word);
  }
  void Add(Kind kind, char sign = 0, int count = 0, std::string_view text = {}) {
    section_.pieces.push_back({kind, sign, count, std::string(text)});
  }
  void AddLiteral(std::string_view text) { Add(Kind::kLiteral, 0, 0, text); }

  void ReadPiece() {
    const char c = Peek();
    switch (c) {
      case '"':
        ReadQuoted();
        return;
      case '\\':
        ++position_;
        ReadCharacter(true);
        return;
      case '_':
        // As wide as the character: in a text a blank.
        ++position_;
        ReadCharacter(false);
        AddLiteral(" ");
        return;
      case '*':
        // Fills the cell's width, which a text does not have.
        ++position_;
        ReadCharacter(false);
        return;
      case '[':
        ReadBrackets();
        return;
      case '@':
        ++position_;
        Add(Kind::kText);
        return;
      default:
        break;
    }
    if (IsLetter(c)) {
      ReadLetters();
    } else {
      ReadSign(c);
    }
  }

  void ReadQuoted() {
    const std::size_t end = std::min(code_.find('"', position_ + 1), code_.size());
    AddLiteral(code_.substr(position_ + 1, end - position_ - 1));
    position_ = std::min(end + 1, code_.size());
  }

  void ReadCharacter(bool shown) {
    if (position_ >= code_.size()) throw Unreadable();
    const std::size_t start = position_;
    NextCharacter(code_, position_);
    if (shown) AddLiteral(code_.substr(start, position_ - start));
  }

  void ReadSign(char c) {
    if (c == '0' || c == '#' || c == '?') {
      ++position_;
      Add(Kind::kDigit, c);
    } else if (c == '.') {
      ++position_;
      Add(Kind::kPoint);
    } else if (c == ',') {
      ++position_;
      // What it does is known when the digits around it are.
      Add(Kind::kLiteral, ',', 0, ",");
    } else if (c == '%') {
      ++position_;
      section_.scale += 2;
      AddLiteral("%");
    } else if (c == '/') {
      ++position_;
      Add(Kind::kSlash);
      if (Peek() >= '1' && Peek() <= '9' && HasDigit()) ReadDenominator();
    } else {
      ReadCharacter(true);
    }
  }

  bool HasDigit() const {
    for (const FormatPiece& piece : section_.pieces) {
      if (piece.kind == Kind::kDigit) return true;
    }
    return false;
  }

  void ReadDenominator() {
    int denominator = 0;
    const std::size_t start = position_;
    while (IsDigit(Peek())) {
      if (position_ - start == 7) throw Unreadable();
      denominator = denominator * 10 + (code_[position_++] - '0');
    }
    Add(Kind::kDenominator, 0, denominator);
  }

  void ReadLetters() {
    if (StandsHere("General")) {
      position_ += 7;
      Add(Kind::kGeneral);
      return;
    }
    for (std::string_view halves : {"AM/PM", "A/P"}) {
      if (!StandsHere(halves)) continue;
      // The short form is shown in the case in which it is written.
      const std::string_view written = code_.substr(position_, halves.size());
      Add(Kind::kHalfDay, 0, 0, halves.size() == 3 ? written : halves);
      position_ += halves.size();
      return;
    }
    const char letter = UpperAscii(Peek());
    if (letter == 'E' && (Peek(1) == '+' || Peek(1) == '-') && HasDigit()) {
      Add(Kind::kExponent, Peek(1), 0, Peek() == 'e' ? "e" : "E");
      position_ += 2;
      return;
    }
    int count = 0;
    const std::size_t start = position_;
    while (UpperAscii(Peek()) == letter) {
      ++count;
      ++position_;
    }
    switch (letter) {
      case 'Y':
        Add(Kind::kYear, 0, count);
        return;
      case 'E':
        // The year of the era: outside East Asia the year.
        Add(Kind::kYear, 0, 4);
        return;
      case 'B':
        Add(Kind::kBuddhistYear, 0, count);
        return;
      case 'G':
        // The era, which only East Asian calendars have.
        return;
      case 'M':
        Add(Kind::kMonth, 0, count);
        return;
      case 'D':
        Add(Kind::kDay, 0, count);
        return;
      case 'H':
        Add(Kind::kHour, 0, count);
        return;
      case 'S':
        Add(Kind::kSecond, 0, count);
        return;
      default:
        AddLiteral(code_.substr(start, position_ - start));
    }
  }

  // A condition, a colour, a currency with its locale, elapsed time.
  void ReadBrackets() {
    const std::size_t end = code_.find(']', position_);
    if (end == std::string_view::npos) throw Unreadable();
    const std::string_view inner = code_.substr(position_ + 1, end - position_ - 1);
    position_ = end + 1;
    if (inner.empty()) throw Unreadable();
    if (inner[0] == '$') {
      const std::string_view currency = inner.substr(1, inner.find('-') - 1);
      if (inner.find('-') == std::string_view::npos) {
        AddLiteral(inner.substr(1));
      } else if (!currency.empty()) {
        AddLiteral(currency);
      }
    } else if (inner[0] == '<' || inner[0] == '>' || inner[0] == '=') {
      ReadCondition(inner);
    } else if (IsColor(inner)) {
      section_.has_color = true;
    } else if (!ReadElapsed(inner) && !IsDigitScript(inner)) {
      throw Unreadable();
    }
  }

  void ReadCondition(std::string_view text) {
    static constexpr std::pair<std::string_view, Condition> kConditions[] = {
        {"<=", Condition::kLessOrEqual},    {"<>", Condition::kNotEqual}, {"<", Condition::kLess},
        {">=", Condition::kGreaterOrEqual}, {">", Condition::kGreater},   {"=", Condition::kEqual}};
    for (const auto& [sign, condition] : kConditions) {
      if (text.substr(0, sign.size()) != sign) continue;
      text.remove_prefix(sign.size());
      while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
      const auto [behind, error] =
          std::from_chars(text.data(), text.data() + text.size(), section_.limit);
      if (error != std::errc() || behind != text.data() + text.size()) throw Unreadable();
      section_.condition = condition;
      return;
    }
    throw Unreadable();
  }

  bool ReadElapsed(std::string_view text) {
    const char letter = UpperAscii(text[0]);
    for (char c : text) {
      if (UpperAscii(c) != letter) return false;
    }
    if (letter != 'H' && letter != 'M' && letter != 'S') return false;
    Add(letter == 'H'   ? Kind::kElapsedHours
        : letter == 'M' ? Kind::kElapsedMinutes
                        : Kind::kElapsedSeconds,
        0, static_cast<int>(text.size()));
    return true;
  }

  // Colours, and scripts of digits, are nothing that a text could show.
  static bool IsColor(std::string_view text) {
    for (std::string_view color :
         {"Black", "Blue", "Cyan", "Green", "Magenta", "Red", "White", "Yellow"}) {
      if (EqualIgnoringAsciiCase(text, color)) return true;
    }
    return EqualIgnoringAsciiCase(text.substr(0, 5), "Color");
  }
  static bool IsDigitScript(std::string_view text) {
    return EqualIgnoringAsciiCase(text.substr(0, 5), "DBNum") ||
           EqualIgnoringAsciiCase(text.substr(0, 6), "NatNum");
  }

  // --- Once all pieces are known ---

  // "m" next to hours or seconds is minutes; zeros behind the point of seconds are their fraction.
  void FinishDate() {
    std::vector<FormatPiece>& pieces = section_.pieces;
    FormatPiece* last = nullptr;
    FormatPiece* month = nullptr;
    for (FormatPiece& piece : pieces) {
      if (!IsDatePiece(piece.kind) || piece.kind == Kind::kHalfDay) continue;
      const bool after_hour =
          last && (last->kind == Kind::kHour || last->kind == Kind::kElapsedHours);
      if (piece.kind == Kind::kMonth && piece.count <= 2 && after_hour) {
        piece.kind = Kind::kMinute;
      } else if (piece.kind == Kind::kSecond && month && last == month) {
        month->kind = Kind::kMinute;
      }
      month = piece.kind == Kind::kMonth && piece.count <= 2 ? &piece : nullptr;
      last = &piece;
    }
    std::vector<FormatPiece> joined;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
      FormatPiece& piece = pieces[i];
      if (piece.kind == Kind::kPoint) {
        FormatPiece fraction{Kind::kSecondFraction, 0, 0, {}};
        const bool behind_second = !joined.empty() && (joined.back().kind == Kind::kSecond ||
                                                       joined.back().kind == Kind::kElapsedSeconds);
        while (behind_second && i + 1 < pieces.size() && pieces[i + 1].kind == Kind::kDigit) {
          if (pieces[++i].sign != '0' || ++fraction.count > 3) throw Unreadable();
        }
        if (fraction.count == 0) fraction = {Kind::kLiteral, 0, 0, "."};
        joined.push_back(std::move(fraction));
      } else if (piece.kind == Kind::kSlash) {
        joined.push_back({Kind::kLiteral, 0, 0, "/"});
      } else if (piece.kind == Kind::kDigit || piece.kind == Kind::kExponent ||
                 piece.kind == Kind::kGeneral || piece.kind == Kind::kDenominator) {
        throw Unreadable();
      } else {
        joined.push_back(std::move(piece));
      }
    }
    pieces = std::move(joined);
    section_.type = Type::kDate;
  }

  void FinishNumber() {
    ReadCommas();
    bool has_point = false, has_exponent = false, has_slash = false;
    bool digits_before = false;
    for (std::size_t i = 0; i < section_.pieces.size(); ++i) {
      FormatPiece& piece = section_.pieces[i];
      if (piece.kind == Kind::kDigit) digits_before = true;
      if (piece.kind == Kind::kPoint) {
        if (has_point || has_exponent) piece = {Kind::kLiteral, 0, 0, "."};
        has_point = true;
      } else if (piece.kind == Kind::kExponent) {
        if (has_exponent) throw Unreadable();
        has_exponent = true;
      } else if (piece.kind == Kind::kSlash) {
        const Kind next =
            i + 1 < section_.pieces.size() ? section_.pieces[i + 1].kind : Kind::kText;
        if (!digits_before || (next != Kind::kDigit && next != Kind::kDenominator)) {
          piece = {Kind::kLiteral, 0, 0, "/"};
        } else if (has_slash) {
          throw Unreadable();
        } else {
          has_slash = true;
        }
      }
    }
    if (!has_slash) return;
    if (has_point || has_exponent) throw Unreadable();
    section_.type = Type::kFraction;
  }

  // A comma between digits before the point parts thousands, one behind the last of them divides by
  // a thousand, any other stands for itself.
  void ReadCommas() {
    std::vector<FormatPiece>& pieces = section_.pieces;
    std::size_t end = 0;
    while (end < pieces.size() && pieces[end].kind != Kind::kPoint &&
           pieces[end].kind != Kind::kExponent && pieces[end].kind != Kind::kSlash) {
      ++end;
    }
    const std::size_t point = end < pieces.size() && pieces[end].kind == Kind::kPoint ? end : 0;
    std::vector<bool> dropped(pieces.size());
    int first_digit = -1, last_digit = -1;
    for (std::size_t i = 0; i < end; ++i) {
      if (pieces[i].kind != Kind::kDigit) continue;
      if (first_digit < 0) first_digit = static_cast<int>(i);
      last_digit = static_cast<int>(i);
    }
    const auto is_comma = [&](std::size_t i) {
      return pieces[i].kind == Kind::kLiteral && pieces[i].sign == ',';
    };
    for (int i = first_digit; i >= 0 && i < last_digit; ++i) {
      if (!is_comma(i)) continue;
      section_.has_thousands = dropped[i] = true;
    }
    const auto scale_behind = [&](std::size_t i) {
      for (; i < pieces.size() && is_comma(i); ++i) {
        section_.scale -= 3;
        dropped[i] = true;
      }
    };
    if (last_digit >= 0) scale_behind(last_digit + 1);
    // They may stand behind the decimals as well.
    if (point > 0) {
      std::size_t last = point;
      while (last + 1 < pieces.size() && pieces[last + 1].kind == Kind::kDigit) ++last;
      if (last > point) scale_behind(last + 1);
    }
    std::vector<FormatPiece> kept;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
      if (!dropped[i]) kept.push_back(std::move(pieces[i]));
    }
    pieces = std::move(kept);
  }

  std::string_view code_;
  std::size_t& position_;
  FormatSection section_;
};

// Whether a number for which the condition holds can only be negative.
bool IsForNegatives(const FormatSection& section) {
  switch (section.condition) {
    case Condition::kLess:
      return section.limit <= 0;
    case Condition::kLessOrEqual:
    case Condition::kEqual:
      return section.limit < 0;
    default:
      return false;
  }
}

// Whether all numbers for which the condition does not hold are negative or 0.
bool LeavesNegatives(const FormatSection& section) {
  return (section.condition == Condition::kGreater ||
          section.condition == Condition::kGreaterOrEqual) &&
         section.limit <= 0;
}

}  // namespace

bool FormatSection::Holds(double number) const {
  switch (condition) {
    case Condition::kLess:
      return number < limit;
    case Condition::kLessOrEqual:
      return number <= limit;
    case Condition::kEqual:
      return number == limit;
    case Condition::kNotEqual:
      return number != limit;
    case Condition::kGreater:
      return number > limit;
    case Condition::kGreaterOrEqual:
      return number >= limit;
    default:
      return true;
  }
}

NumberFormat::NumberFormat(std::string_view code) {
  try {
    for (std::size_t position = 0;; ++position) {
      if (sections_.size() == kMostSections) throw Unreadable();
      sections_.push_back(SectionReader(code, position).Read());
      if (position >= code.size()) break;
    }
  } catch (const Unreadable&) {
    is_readable_ = false;
    return;
  }
  // The section for texts is the fourth, or the last when it shows the text.
  if (sections_.size() == kMostSections || sections_.back().has_text) {
    text_section_ = sections_.back();
    if (sections_.size() > 1) sections_.pop_back();
  }
}

const FormatSection* NumberFormat::SectionFor(double number, bool& hides_sign) const {
  const std::size_t count = sections_.size();
  const FormatSection& first = sections_[0];
  if (count == 1) {
    hides_sign = IsForNegatives(first);
    return first.Holds(number) ? &first : nullptr;
  }
  const FormatSection& second = sections_[1];
  const bool first_has_condition = first.condition != Condition::kNone;
  const bool second_has_condition = second.condition != Condition::kNone;
  // Without conditions the first section is for positive numbers, and for 0 unless there is a
  // third.
  const bool takes_first = first_has_condition                   ? first.Holds(number)
                           : count == 2 && !second_has_condition ? number >= 0
                                                                 : number > 0;
  if (takes_first) {
    hides_sign = IsForNegatives(first);
    return &first;
  }
  if (second_has_condition ? second.Holds(number) : count == 2 || number < 0) {
    hides_sign = second_has_condition ? IsForNegatives(second)
                                      : !first_has_condition || count > 2 || LeavesNegatives(first);
    return &second;
  }
  if (count < 3) return nullptr;
  return &sections_[2];
}

std::optional<std::string> NumberFormat::Show(double number, bool date_1904) const {
  if (!is_readable_) return std::nullopt;
  bool hides_sign = false;
  const FormatSection* section = SectionFor(number, hides_sign);
  if (!section) return std::nullopt;
  const double size = std::fabs(number);
  const std::string sign = number < 0 && !hides_sign ? "-" : "";
  if (section->type == Type::kDate) {
    // Only the 1904 system shows days before its first one.
    if (number < 0 && !date_1904) return std::nullopt;
    std::optional<std::string> shown = ShowAsDate(*section, size, date_1904);
    if (!shown) return std::nullopt;
    return sign + *shown;
  }
  if (section->pieces.empty()) return "";
  return section->type == Type::kFraction ? ShowAsFraction(*section, size, sign)
                                          : ShowAsNumber(*section, size, sign);
}

std::optional<std::string> NumberFormat::Show(std::string_view text) const {
  if (!is_readable_) return std::nullopt;
  if (!text_section_) return std::string(text);
  std::string shown;
  for (const FormatPiece& piece : text_section_->pieces) {
    if (piece.kind == Kind::kText || piece.kind == Kind::kGeneral) {
      shown += text;
    } else {
      shown += piece.text;
    }
  }
  return shown;
}

const NumberFormat& NumberFormats::Of(std::string_view code) {
  constexpr std::size_t kMost = 256;
  auto known = formats_.find(code);
  if (known == formats_.end()) {
    if (formats_.size() >= kMost) formats_.clear();
    known = formats_.emplace(std::string(code), NumberFormat(code)).first;
  }
  return known->second;
}

std::string_view BuiltInNumberFormat(unsigned id) {
  static constexpr std::array<std::string_view, 50> kCodes = {
      "General",
      "0",
      "0.00",
      "#,##0",
      "#,##0.00",
      "\"$\"#,##0_);\\(\"$\"#,##0\\)",
      "\"$\"#,##0_);[Red]\\(\"$\"#,##0\\)",
      "\"$\"#,##0.00_);\\(\"$\"#,##0.00\\)",
      "\"$\"#,##0.00_);[Red]\\(\"$\"#,##0.00\\)",
      "0%",
      "0.00%",
      "0.00E+00",
      "# ?/?",
      "# ?\?/?\?",
      "m/d/yyyy",
      "d-mmm-yy",
      "d-mmm",
      "mmm-yy",
      "h:mm AM/PM",
      "h:mm:ss AM/PM",
      "h:mm",
      "h:mm:ss",
      "m/d/yyyy h:mm",
      {},
      {},
      {},
      {},
      {},
      {},
      {},
      {},
      {},
      {},
      {},
      {},
      {},
      {},
      "#,##0_);(#,##0)",
      "#,##0_);[Red](#,##0)",
      "#,##0.00_);(#,##0.00)",
      "#,##0.00_);[Red](#,##0.00)",
      "_(* #,##0_);_(* \\(#,##0\\);_(* \"-\"_);_(@_)",
      "_(\"$\"* #,##0_);_(\"$\"* \\(#,##0\\);_(\"$\"* \"-\"_);_(@_)",
      "_(* #,##0.00_);_(* \\(#,##0.00\\);_(* \"-\"?\?_);_(@_)",
      "_(\"$\"* #,##0.00_);_(\"$\"* \\(#,##0.00\\);_(\"$\"* \"-\"?\?_);_(@_)",
      "mm:ss",
      "[h]:mm:ss",
      "mm:ss.0",
      "##0.0E+0",
      "@",
  };
  if (id >= kCodes.size() || kCodes[id].empty()) return kCodes[0];
  return kCodes[id];
}

}  // namespace vantora::embedded
