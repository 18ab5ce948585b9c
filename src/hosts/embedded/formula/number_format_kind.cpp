// What kind of format a code is, as CELL tells it.
#include <algorithm>

#include "formula/number_format.h"

namespace vantora::embedded {
namespace {

using Kind = FormatPiece::Kind;

bool Has(const FormatSection& section, Kind kind) {
  return std::ranges::any_of(section.pieces,
                             [kind](const FormatPiece& piece) { return piece.kind == kind; });
}

bool HasLiteral(const FormatSection& section, std::string_view text) {
  return std::ranges::any_of(section.pieces, [text](const FormatPiece& piece) {
    return piece.kind == Kind::kLiteral && piece.text.find(text) != std::string::npos;
  });
}

// "D1" to "D9". The documentation lists some codes for each; others are taken for what they show.
std::string DateKind(const FormatSection& section) {
  const bool has_year = Has(section, Kind::kYear) || Has(section, Kind::kBuddhistYear);
  const bool has_day = Has(section, Kind::kDay);
  const auto month = std::ranges::find(section.pieces, Kind::kMonth, &FormatPiece::kind);
  if (month != section.pieces.end()) {
    const bool is_named = month->count > 2;
    if (is_named) return has_day && has_year ? "D1" : has_day ? "D2" : has_year ? "D3" : "D2";
    return has_year ? "D4" : "D5";
  }
  if (has_year || has_day) return "D4";
  const bool has_seconds = Has(section, Kind::kSecond) || Has(section, Kind::kElapsedSeconds);
  if (Has(section, Kind::kHalfDay)) return has_seconds ? "D6" : "D7";
  return has_seconds ? "D8" : "D9";
}

bool IsCurrency(const FormatSection& section) {
  for (const char* sign : {"$", "\u20AC", "\u00A3", "\u00A5"}) {
    if (HasLiteral(section, sign)) return true;
  }
  return false;
}

std::string NumberKind(const FormatSection& section) {
  int decimals = 0;
  bool behind_point = false;
  for (const FormatPiece& piece : section.pieces) {
    if (piece.kind == Kind::kPoint) behind_point = true;
    if (piece.kind == Kind::kExponent) break;
    if (piece.kind == Kind::kDigit && behind_point) ++decimals;
  }
  const char letter = Has(section, Kind::kExponent) ? 'S'
                      : HasLiteral(section, "%")    ? 'P'
                      : IsCurrency(section)         ? 'C'
                      : section.has_thousands       ? ','
                                                    : 'F';
  return letter + std::to_string(decimals);
}

}  // namespace

bool NumberFormat::ColorsNegatives() const {
  if (!is_readable_ || sections_.empty()) return false;
  return sections_.size() > 1 ? sections_[1].has_color : sections_[0].has_color;
}

bool NumberFormat::HasParentheses() const {
  return is_readable_ && !sections_.empty() && HasLiteral(sections_[0], "(");
}

std::string NumberFormat::Abbreviation() const {
  std::string kind = "G";
  if (is_readable_ && !sections_.empty()) {
    const FormatSection& first = sections_[0];
    if (first.type == FormatSection::Type::kDate) {
      kind = DateKind(first);
    } else if (first.type == FormatSection::Type::kNumber && Has(first, Kind::kDigit)) {
      kind = NumberKind(first);
    }
  }
  if (ColorsNegatives()) kind += "-";
  if (HasParentheses()) kind += "()";
  return kind;
}

}  // namespace vantora::embedded
