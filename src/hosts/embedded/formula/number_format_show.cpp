// A number in one section of its format: digits, fractions, dates and times.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "formula/calendar.h"
#include "formula/decimal.h"
#include "formula/number_format.h"

namespace vantora::embedded {
namespace {

using Kind = FormatPiece::Kind;

// What a placeholder shows where the number has no digit.
void AppendMissingDigit(std::string& out, char sign) {
  if (sign == '0') out.push_back('0');
  if (sign == '?') out.push_back(' ');
}

// Whole digits over placeholders, from the right; the first placeholder takes all that are left.
class WholeDigits {
 public:
  WholeDigits(std::string digits, int placeholders, bool has_thousands)
      : digits_(std::move(digits)), left_(placeholders), has_thousands_(has_thousands) {}

  void AppendNext(std::string& out, char sign) {
    const int own = --left_;
    const int count = static_cast<int>(digits_.size());
    if (is_first_) {
      for (int place = count - 1; place > own; --place) AppendDigit(out, place);
    }
    is_first_ = false;
    if (own < count) {
      AppendDigit(out, own);
      return;
    }
    const std::size_t before = out.size();
    AppendMissingDigit(out, sign);
    if (has_thousands_ && own > 0 && own % 3 == 0 && out.size() > before) {
      out.push_back(sign == '0' ? ',' : ' ');
    }
  }
  void AppendAll(std::string& out) {
    for (int place = static_cast<int>(digits_.size()) - 1; place >= 0; --place) {
      AppendDigit(out, place);
    }
  }

 private:
  void AppendDigit(std::string& out, int place) {
    out.push_back(digits_[digits_.size() - 1 - place]);
    if (has_thousands_ && place > 0 && place % 3 == 0) out.push_back(',');
  }

  std::string digits_;
  int left_;
  bool has_thousands_;
  bool is_first_ = true;
};

// The placeholders of a section for numbers.
struct Placeholders {
  int whole = 0;
  std::string fraction;
  int exponent = 0;
  bool has_exponent = false;
  bool has_point = false;

  explicit Placeholders(const FormatSection& section) {
    for (const FormatPiece& piece : section.pieces) {
      if (piece.kind == Kind::kPoint) has_point = true;
      if (piece.kind == Kind::kExponent) has_exponent = true;
      if (piece.kind != Kind::kDigit) continue;
      if (has_exponent) {
        ++exponent;
      } else if (has_point) {
        fraction.push_back(piece.sign);
      } else {
        ++whole;
      }
    }
  }
};

// The exponent of a number in scientific notation, which is a multiple of `step`; takes it off the
// number.
int TakeExponent(Decimal& number, int step, int places) {
  if (number.IsZero()) return 0;
  const auto exponent_of = [step](const Decimal& value) {
    return static_cast<int>(std::floor((value.point - 1.0) / step)) * step;
  };
  int exponent = exponent_of(number);
  number.Round(places - exponent);
  // Rounding may have made one digit more.
  exponent = exponent_of(number);
  number.point -= exponent;
  return exponent;
}

// How many of the decimals are shown, by trailing zeros: the others are blanks or nothing.
std::size_t ShownDecimals(const std::string& signs, const std::string& digits) {
  std::size_t shown = signs.size();
  while (shown > 0 && signs[shown - 1] != '0' && digits[shown - 1] == '0') --shown;
  return shown;
}

std::string Padded(std::int64_t number, int digits) {
  std::string text = std::to_string(number);
  return std::string(std::max<int>(0, digits - static_cast<int>(text.size())), '0') + text;
}

}  // namespace

std::string ShowAsNumber(const FormatSection& section, double number, std::string_view sign) {
  const Placeholders signs(section);
  const int places = static_cast<int>(signs.fraction.size());
  Decimal value(number);
  if (!value.IsZero()) value.point += section.scale;
  int exponent = 0;
  if (signs.has_exponent) {
    exponent = TakeExponent(value, std::max(signs.whole, 1), places);
  } else {
    value.Round(places);
  }
  WholeDigits whole(value.Whole(), signs.whole, section.has_thousands);
  const std::string decimals = value.Fraction(places);
  const std::size_t shown_decimals = ShownDecimals(signs.fraction, decimals);
  WholeDigits power(exponent == 0 ? "" : std::to_string(std::abs(exponent)), signs.exponent, false);

  const bool shows_zero = value.IsZero() && signs.whole + places > 0;
  std::string out(shows_zero ? "" : sign);
  std::size_t decimal = 0;
  bool behind_point = false, behind_exponent = false;
  for (const FormatPiece& piece : section.pieces) {
    switch (piece.kind) {
      case Kind::kDigit:
        if (behind_exponent) {
          power.AppendNext(out, piece.sign);
        } else if (!behind_point) {
          whole.AppendNext(out, piece.sign);
        } else if (decimal++ < shown_decimals) {
          out.push_back(decimals[decimal - 1]);
        } else if (piece.sign == '?') {
          out.push_back(' ');
        }
        break;
      case Kind::kPoint:
        if (signs.whole == 0) whole.AppendAll(out);
        behind_point = true;
        out.push_back('.');
        break;
      case Kind::kExponent:
        behind_exponent = true;
        out += piece.text;
        if (exponent < 0) {
          out.push_back('-');
        } else if (piece.sign == '+') {
          out.push_back('+');
        }
        break;
      case Kind::kGeneral:
      case Kind::kText:
        out += GeneralFormatText(number);
        break;
      default:
        out += piece.text;
    }
  }
  return out;
}

// --- Fractions ---

namespace {

struct Fraction {
  std::int64_t numerator = 0;
  std::int64_t denominator = 1;
};

// The nearest fraction to a number below 1 with at most that denominator; of two the simpler one.
Fraction NearestFraction(double number, std::int64_t most) {
  // Between two neighbours, whose mediant is the simplest fraction there is between them.
  Fraction low{0, 1}, high{1, 1};
  const auto value = [](const Fraction& f) {
    return static_cast<double>(f.numerator) / static_cast<double>(f.denominator);
  };
  for (;;) {
    const Fraction middle{low.numerator + high.numerator, low.denominator + high.denominator};
    if (middle.denominator > most) break;
    if (value(middle) == number) return middle;
    (value(middle) < number ? low : high) = middle;
  }
  const double below = number - value(low), above = value(high) - number;
  if (below == above) return low.denominator <= high.denominator ? low : high;
  return below < above ? low : high;
}

// The pieces of a section that shows a fraction: those of the whole number, if there are any, are
// parted from the numerator's by something else.
struct FractionParts {
  std::size_t numerator_begin = 0;
  std::size_t slash = 0;
  std::size_t denominator_end = 0;
  int whole_digits = 0;
  int numerator_digits = 0;
  int denominator_digits = 0;
  // 0 when the number decides.
  int denominator = 0;

  explicit FractionParts(const std::vector<FormatPiece>& pieces) {
    while (pieces[slash].kind != Kind::kSlash) ++slash;
    numerator_begin = slash;
    while (numerator_begin > 0 && pieces[numerator_begin - 1].kind != Kind::kDigit) {
      --numerator_begin;
    }
    while (numerator_begin > 0 && pieces[numerator_begin - 1].kind == Kind::kDigit) {
      --numerator_begin;
      ++numerator_digits;
    }
    for (std::size_t i = 0; i < numerator_begin; ++i)
      whole_digits += pieces[i].kind == Kind::kDigit;
    denominator_end = slash + 1;
    if (pieces[denominator_end].kind == Kind::kDenominator) {
      denominator = pieces[denominator_end++].count;
      denominator_digits = static_cast<int>(std::to_string(denominator).size());
      return;
    }
    while (denominator_end < pieces.size() && pieces[denominator_end].kind == Kind::kDigit) {
      ++denominator_end;
      ++denominator_digits;
    }
  }
};

}  // namespace

std::string ShowAsFraction(const FormatSection& section, double number, std::string_view sign) {
  const std::vector<FormatPiece>& pieces = section.pieces;
  const FractionParts parts(pieces);
  number *= std::pow(10.0, section.scale);
  const double whole_part = std::floor(number);
  Fraction fraction;
  if (parts.denominator > 0) {
    fraction = {std::llround((number - whole_part) * parts.denominator), parts.denominator};
  } else {
    const int digits = std::min(parts.denominator_digits, 5);
    fraction = NearestFraction(number - whole_part, std::llround(std::pow(10.0, digits)) - 1);
  }
  double whole = whole_part;
  if (parts.whole_digits == 0) {
    // Larger numbers than these have no fraction.
    constexpr double kLargest = 1e12;
    fraction.numerator += std::llround(std::min(whole, kLargest)) * fraction.denominator;
  } else if (fraction.numerator == fraction.denominator) {
    whole += 1;
    fraction.numerator = 0;
  }
  const bool blank = parts.whole_digits > 0 && fraction.numerator == 0;
  // Of a number without a fraction at least a zero is shown.
  std::string whole_text = Decimal(whole).Whole();
  if (blank && whole_text.empty()) whole_text = "0";
  WholeDigits whole_digits(whole_text, parts.whole_digits, section.has_thousands);
  WholeDigits numerator(std::to_string(fraction.numerator), parts.numerator_digits, false);
  std::string denominator = std::to_string(fraction.denominator);

  std::string out(whole == 0 && fraction.numerator == 0 ? "" : sign);
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    const FormatPiece& piece = pieces[i];
    const bool in_fraction = i >= parts.numerator_begin && i < parts.denominator_end;
    if (in_fraction && blank) {
      const bool is_fixed = piece.kind == Kind::kDenominator;
      if (piece.kind != Kind::kDigit || piece.sign != '#') {
        out.append(is_fixed ? parts.denominator_digits : 1, ' ');
      }
    } else if (i == parts.slash) {
      out.push_back('/');
    } else if (piece.kind == Kind::kDenominator) {
      out += denominator;
    } else if (piece.kind == Kind::kDigit && i < parts.numerator_begin) {
      whole_digits.AppendNext(out, piece.sign);
    } else if (piece.kind == Kind::kDigit && i < parts.slash) {
      numerator.AppendNext(out, piece.sign);
    } else if (piece.kind == Kind::kDigit && in_fraction) {
      // From the left, filled up behind.
      const std::size_t place = i - parts.slash - 1;
      if (place == 0) out += denominator;
      if (place >= denominator.size() && piece.sign != '#') out.push_back(' ');
    } else {
      out += piece.text;
    }
  }
  return out;
}

// --- Dates and times ---

namespace {

constexpr std::array<std::string_view, 12> kMonths = {
    "January", "February", "March",     "April",   "May",      "June",
    "July",    "August",   "September", "October", "November", "December"};
constexpr std::array<std::string_view, 7> kDays = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                   "Thursday", "Friday", "Saturday"};

// A moment to the precision that a format shows.
class Moment {
 public:
  Moment(const FormatSection& section, double serial, bool date_1904) {
    for (const FormatPiece& piece : section.pieces) {
      shows_time_ = shows_time_ || piece.kind >= Kind::kHour;
      has_halves_ = has_halves_ || piece.kind == Kind::kHalfDay;
      if (piece.kind == Kind::kSecondFraction) places_ = std::max(places_, piece.count);
    }
    const std::int64_t units = PowerOfTen(places_);
    const std::int64_t day_length = 86400 * units;
    const double whole_days = std::floor(serial);
    std::int64_t ticks = std::llround((serial - whole_days) * static_cast<double>(day_length));
    std::int64_t day = static_cast<std::int64_t>(whole_days);
    // A date alone does not become the next one by rounding.
    if (ticks >= day_length) {
      if (shows_time_) {
        ++day;
        ticks = 0;
      } else {
        ticks = day_length - 1;
      }
    }
    is_valid_ = day <= LastDay(date_1904);
    if (!is_valid_) return;
    date_ = DateOf(static_cast<int>(day), date_1904);
    weekday_ = DayOfWeek(static_cast<int>(day), date_1904);
    elapsed_seconds_ = day * 86400 + ticks / units;
    fraction_ = ticks % units;
  }

  bool is_valid() const { return is_valid_; }

  std::string Show(const FormatPiece& piece) const {
    const std::int64_t seconds = elapsed_seconds_ % 86400;
    const int hour = static_cast<int>(seconds / 3600);
    switch (piece.kind) {
      case Kind::kYear:
        return Year(date_.year, piece.count);
      case Kind::kBuddhistYear:
        return Year(date_.year + 543, piece.count);
      case Kind::kMonth:
        if (piece.count == 5) return std::string(kMonths[date_.month - 1].substr(0, 1));
        return NumberOrName(date_.month, kMonths[date_.month - 1], piece.count);
      case Kind::kDay:
        return NumberOrName(date_.day, kDays[weekday_], piece.count);
      case Kind::kHour:
        return Padded(has_halves_ ? (hour + 11) % 12 + 1 : hour, std::min(piece.count, 2));
      case Kind::kMinute:
        return Padded(seconds / 60 % 60, std::min(piece.count, 2));
      case Kind::kSecond:
        return Padded(seconds % 60, std::min(piece.count, 2));
      case Kind::kElapsedHours:
        return Padded(elapsed_seconds_ / 3600, piece.count);
      case Kind::kElapsedMinutes:
        return Padded(elapsed_seconds_ / 60, piece.count);
      case Kind::kElapsedSeconds:
        return Padded(elapsed_seconds_, piece.count);
      case Kind::kSecondFraction:
        return "." + Padded(fraction_ / PowerOfTen(places_ - piece.count), piece.count);
      case Kind::kHalfDay: {
        const std::size_t slash = piece.text.find('/');
        return hour < 12 ? piece.text.substr(0, slash) : piece.text.substr(slash + 1);
      }
      default:
        return piece.text;
    }
  }

 private:
  static std::int64_t PowerOfTen(int exponent) {
    std::int64_t power = 1;
    while (exponent-- > 0) power *= 10;
    return power;
  }
  static std::string Year(int year, int count) {
    return count <= 2 ? Padded(year % 100, 2) : Padded(year, 4);
  }
  static std::string NumberOrName(int number, std::string_view name, int count) {
    if (count <= 2) return Padded(number, count);
    return std::string(count == 3 ? name.substr(0, 3) : name);
  }

  bool shows_time_ = false;
  bool has_halves_ = false;
  bool is_valid_ = false;
  int places_ = 0;
  Date date_;
  int weekday_ = 0;
  std::int64_t elapsed_seconds_ = 0;
  std::int64_t fraction_ = 0;
};

}  // namespace

std::optional<std::string> ShowAsDate(const FormatSection& section, double number, bool date_1904) {
  if (number >= LastDay(date_1904) + 1.0) return std::nullopt;
  const Moment moment(section, number, date_1904);
  if (!moment.is_valid()) return std::nullopt;
  std::string shown;
  for (const FormatPiece& piece : section.pieces) shown += moment.Show(piece);
  return shown;
}

}  // namespace vantora::embedded
