#include "formula/date_text.h"

#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "formula/calendar.h"
#include "formula/lexical.h"

namespace vantora::embedded {
namespace {

// A run of digits or of letters, or a single sign.
struct Piece {
  enum class Kind { kNumber, kWord, kSign };
  Kind kind = Kind::kSign;
  std::string text;

  bool IsNumber() const { return kind == Kind::kNumber; }
  bool IsWord() const { return kind == Kind::kWord; }
  bool Is(char sign) const { return kind == Kind::kSign && text[0] == sign; }
  int Number() const { return text.size() > 6 ? -1 : std::stoi(text); }
};

std::vector<Piece> PiecesOf(std::string_view text) {
  std::vector<Piece> pieces;

  for (std::size_t at = 0; at < text.size();) {
    const std::size_t start = at;
    if (IsBlank(text[at])) {
      ++at;
      continue;
    }
    Piece piece;
    if (IsDigit(text[at])) {
      piece.kind = Piece::Kind::kNumber;
      while (at < text.size() && IsDigit(text[at])) ++at;
    } else if (IsLetter(text[at])) {
      piece.kind = Piece::Kind::kWord;
      while (at < text.size() && IsLetter(text[at])) ++at;
    } else {
      ++at;
    }
    piece.text = UpperAscii(text.substr(start, at - start));
    pieces.push_back(std::move(piece));
  }
  return pieces;
}

// 1 to 12 for a month's name or its first three letters, 0 for another word.
int MonthOf(std::string_view word) {
  constexpr std::string_view kMonths[] = {"JANUARY",   "FEBRUARY", "MARCH",    "APRIL",
                                          "MAY",       "JUNE",     "JULY",     "AUGUST",
                                          "SEPTEMBER", "OCTOBER",  "NOVEMBER", "DECEMBER"};
  for (int month = 0; month < 12; ++month) {
    if (word == kMonths[month] || word == kMonths[month].substr(0, 3)) return month + 1;
  }
  return 0;
}

class Reader {
 public:
  Reader(std::string_view text, bool is_1904, int this_year)
      : pieces_(PiecesOf(text)), is_1904_(is_1904), this_year_(this_year) {}

  DateText Read() {
    DateText found;
    if (pieces_.empty()) return found;
    const bool starts_with_time = pieces_.size() > 1 && (pieces_[1].Is(':') || IsHalf(1));
    if (!starts_with_time) {
      if (!ReadDate()) return found;
      found.value.day = day_;
    }
    if (at_ < pieces_.size()) {
      const std::optional<double> time = ReadTime();
      if (!time || at_ < pieces_.size()) return found;
      // Behind a date, hours from 24 on are further days.
      found.value.time = *time - std::floor(*time);
      if (!starts_with_time) found.value.day += static_cast<int>(std::floor(*time));
    }
    found.kind = ambiguous_ ? DateText::Kind::kAmbiguous : DateText::Kind::kDateTime;
    return found;
  }

 private:
  bool NumberAt(std::size_t i) const { return i < pieces_.size() && pieces_[i].IsNumber(); }
  bool SignAt(std::size_t i, char sign) const { return i < pieces_.size() && pieces_[i].Is(sign); }
  int MonthAt(std::size_t i) const {
    return i < pieces_.size() && pieces_[i].IsWord() ? MonthOf(pieces_[i].text) : 0;
  }
  // "AM", "PM", "A", "P".
  bool IsHalf(std::size_t i) const {
    if (i >= pieces_.size()) return false;
    const std::string& word = pieces_[i].text;
    return word == "AM" || word == "PM" || word == "A" || word == "P";
  }
  // Behind "-", "/", "," or a blank.
  std::size_t BehindSeparator(std::size_t i) const {
    return SignAt(i, '-') || SignAt(i, '/') || SignAt(i, ',') ? i + 1 : i;
  }

  int YearAt(std::size_t i) const {
    const std::string& text = pieces_[i].text;
    const int number = pieces_[i].Number();
    if (text.size() <= 2) return number + (number < 30 ? 2000 : 1900);
    return text.size() == 4 ? number : -1;
  }

  bool SetDay(int year, int month, int day, std::size_t end) {
    if (year < (is_1904_ ? 1904 : 1900) || year > 9999 || month < 1 || month > 12 || day < 1 ||
        day > DaysInMonth(year, month, is_1904_)) {
      return false;
    }
    day_ = SerialOf(year, month, day, is_1904_);
    at_ = end;
    return true;
  }

  bool ReadDate() {
    if (MonthAt(0)) return ReadMonthFirst();
    if (!NumberAt(0)) return false;
    const std::size_t second = BehindSeparator(1);
    if (const int month = MonthAt(second)) return ReadDayFirst(month, second);
    if (second == 1 || !NumberAt(second)) return false;
    const char sign = pieces_[1].text[0];
    if (sign == ',') return false;
    const bool has_third = SignAt(second + 1, sign) && NumberAt(second + 2);
    const int first = pieces_[0].Number(), middle = pieces_[second].Number();
    if (pieces_[0].text.size() == 4) {
      const bool is_month = !has_third;
      return SetDay(first, middle, is_month ? 1 : pieces_[second + 2].Number(),
                    is_month ? second + 1 : second + 3);
    }
    ambiguous_ = first <= 12 && middle <= 12 && first != middle;
    const int year = has_third ? YearAt(second + 2) : this_year_;
    return SetDay(year, first, middle, has_third ? second + 3 : second + 1);
  }

  // "March 31, 2020", "Mar-2020", "Mar-31" (of this year).
  bool ReadMonthFirst() {
    const int month = MonthAt(0);
    const std::size_t second = BehindSeparator(1);
    if (!NumberAt(second)) return false;
    const std::size_t third = BehindSeparator(second + 1);
    if (third > second + 1 && NumberAt(third)) {
      return SetDay(YearAt(third), month, pieces_[second].Number(), third + 1);
    }
    const int number = pieces_[second].Number();
    if (pieces_[second].text.size() <= 2 && number >= 1 &&
        number <= DaysInMonth(this_year_, month, is_1904_)) {
      return SetDay(this_year_, month, number, second + 1);
    }
    return SetDay(YearAt(second), month, 1, second + 1);
  }

  // "31-Mar-2020", "31 March", as far as what follows is no time.
  bool ReadDayFirst(int month, std::size_t month_at) {
    const int day = pieces_[0].Number();
    const std::size_t third = BehindSeparator(month_at + 1);
    const bool is_time = SignAt(third + 1, ':') || IsHalf(third + 1);
    if (NumberAt(third) && !is_time) return SetDay(YearAt(third), month, day, third + 1);
    return SetDay(this_year_, month, day, month_at + 1);
  }

  // In days.
  std::optional<double> ReadTime() {
    if (!NumberAt(at_)) return std::nullopt;
    double hours = pieces_[at_++].Number(), minutes = 0, seconds = 0;
    bool has_minutes = false;
    if (SignAt(at_, ':') && NumberAt(at_ + 1)) {
      minutes = pieces_[at_ + 1].Number();
      has_minutes = true;
      at_ += 2;
      if (SignAt(at_, ':') && NumberAt(at_ + 1)) {
        seconds = pieces_[at_ + 1].Number();
        at_ += 2;
        if (SignAt(at_, '.') && NumberAt(at_ + 1)) {
          seconds += std::stod("0." + pieces_[at_ + 1].text);
          at_ += 2;
        }
      }
    }
    if (IsHalf(at_)) {
      if (hours < 0 || hours > 12) return std::nullopt;
      hours = std::fmod(hours, 12) + (pieces_[at_].text[0] == 'P' ? 12 : 0);
      ++at_;
    } else if (!has_minutes) {
      return std::nullopt;
    }
    if (hours < 0 || hours > 9999 || minutes < 0 || minutes > 59 || seconds < 0 || seconds >= 60) {
      return std::nullopt;
    }
    return (hours * 3600 + minutes * 60 + seconds) / 86400;
  }

  std::vector<Piece> pieces_;
  bool is_1904_;
  int this_year_;
  std::size_t at_ = 0;
  int day_ = 0;
  bool ambiguous_ = false;
};

}  // namespace

DateText ReadDateTime(std::string_view text, bool is_1904, int this_year) {
  return Reader(text, is_1904, this_year).Read();
}

}  // namespace vantora::embedded
