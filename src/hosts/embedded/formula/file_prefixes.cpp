#include "formula/file_prefixes.h"

#include <algorithm>
#include <iterator>

#include "formula/lexical.h"

namespace vantora::embedded {
namespace {

constexpr std::string_view kPrefix = "_xlfn.";
constexpr std::string_view kSheetPrefix = "_xlws.";

// Functions that came after Excel 2007; sorted.
constexpr std::string_view kNewer[] = {"ACOT",
                                       "ACOTH",
                                       "AGGREGATE",
                                       "ARABIC",
                                       "BASE",
                                       "BETA.DIST",
                                       "BETA.INV",
                                       "BINOM.DIST",
                                       "BINOM.DIST.RANGE",
                                       "BINOM.INV",
                                       "BITAND",
                                       "BITLSHIFT",
                                       "BITOR",
                                       "BITRSHIFT",
                                       "BITXOR",
                                       "CEILING.MATH",
                                       "CEILING.PRECISE",
                                       "CHISQ.DIST",
                                       "CHISQ.DIST.RT",
                                       "CHISQ.INV",
                                       "CHISQ.INV.RT",
                                       "CHISQ.TEST",
                                       "COMBINA",
                                       "CONCAT",
                                       "CONFIDENCE.NORM",
                                       "CONFIDENCE.T",
                                       "COT",
                                       "COTH",
                                       "COVARIANCE.P",
                                       "COVARIANCE.S",
                                       "CSC",
                                       "CSCH",
                                       "DAYS",
                                       "DECIMAL",
                                       "ENCODEURL",
                                       "ERF.PRECISE",
                                       "ERFC.PRECISE",
                                       "EXPON.DIST",
                                       "F.DIST",
                                       "F.DIST.RT",
                                       "F.INV",
                                       "F.INV.RT",
                                       "F.TEST",
                                       "FILTERXML",
                                       "FLOOR.MATH",
                                       "FLOOR.PRECISE",
                                       "FORECAST.LINEAR",
                                       "FORMULATEXT",
                                       "GAMMA",
                                       "GAMMA.DIST",
                                       "GAMMA.INV",
                                       "GAMMALN.PRECISE",
                                       "GAUSS",
                                       "HYPGEOM.DIST",
                                       "IFNA",
                                       "IFS",
                                       "ISFORMULA",
                                       "ISOWEEKNUM",
                                       "LAMBDA",
                                       "LET",
                                       "LOGNORM.DIST",
                                       "LOGNORM.INV",
                                       "MAXIFS",
                                       "MINIFS",
                                       "MODE.MULT",
                                       "MODE.SNGL",
                                       "MUNIT",
                                       "NEGBINOM.DIST",
                                       "NORM.DIST",
                                       "NORM.INV",
                                       "NORM.S.DIST",
                                       "NORM.S.INV",
                                       "NUMBERVALUE",
                                       "PDURATION",
                                       "PERCENTILE.EXC",
                                       "PERCENTILE.INC",
                                       "PERCENTRANK.EXC",
                                       "PERCENTRANK.INC",
                                       "PERMUTATIONA",
                                       "PHI",
                                       "POISSON.DIST",
                                       "QUARTILE.EXC",
                                       "QUARTILE.INC",
                                       "RANDARRAY",
                                       "RANK.AVG",
                                       "RANK.EQ",
                                       "RRI",
                                       "SEC",
                                       "SECH",
                                       "SEQUENCE",
                                       "SHEET",
                                       "SHEETS",
                                       "SKEW.P",
                                       "SORTBY",
                                       "STDEV.P",
                                       "STDEV.S",
                                       "SWITCH",
                                       "T.DIST",
                                       "T.DIST.2T",
                                       "T.DIST.RT",
                                       "T.INV",
                                       "T.INV.2T",
                                       "T.TEST",
                                       "TEXTJOIN",
                                       "UNICHAR",
                                       "UNICODE",
                                       "UNIQUE",
                                       "VAR.P",
                                       "VAR.S",
                                       "WEBSERVICE",
                                       "WEIBULL.DIST",
                                       "XLOOKUP",
                                       "XMATCH",
                                       "XOR",
                                       "Z.TEST"};
// Of them, those that carry a second prefix.
constexpr std::string_view kNewerOfSheets[] = {"FILTER", "SORT"};

}  // namespace

std::string WithFilePrefixes(std::string_view formula) {
  static_assert(std::ranges::is_sorted(kNewer));
  std::string out;
  std::size_t at = 0;
  while (at < formula.size()) {
    const char c = formula[at];
    std::size_t end = at + 1;
    if (c == '"' || c == '\'') {
      end = EndOfQuoted(formula, at);
    } else if (IsNameStart(c)) {
      end = std::max(EndOfName(formula, at), end);
      if (end < formula.size() && formula[end] == '(') {
        const std::string name = UpperAscii(formula.substr(at, end - at));
        const bool of_sheets = std::ranges::count(kNewerOfSheets, name) > 0;
        if (of_sheets || std::ranges::binary_search(kNewer, name)) out += kPrefix;
        if (of_sheets) out += kSheetPrefix;
      }
    } else if (IsDigit(c)) {
      end = std::max(EndOfName(formula, at), end);
    }
    out += formula.substr(at, end - at);
    at = end;
  }
  return out;
}

std::string WithoutFilePrefixes(std::string formula) {
  for (std::string_view prefix : {kPrefix, kSheetPrefix}) {
    for (std::size_t at = 0; (at = formula.find(prefix, at)) != std::string::npos;) {
      formula.erase(at, prefix.size());
    }
  }
  return formula;
}

}  // namespace vantora::embedded
