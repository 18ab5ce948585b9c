#include "host/text_order.h"

#include "formula/unicode.h"

namespace vantora::embedded {
namespace {

constexpr std::string_view kSigns = " _,;:!?./`^~\"()[]{}@$*\\&#%+<=>|";

constexpr char32_t kFirstAccented = 0xC0;
constexpr char kNoLetter = 'x';
// The letters U+00C0 to U+017F without their accents.
constexpr std::string_view kPlainLetters =
    "AAAAAAACEEEEIIIIDNOOOOOxOUUUUYTSAAAAAAACEEEEIIIIDNOOOOOxOUUUUYTY"
    "AAAAAACCCCCCCCDDDDEEEEEEEEEEGGGGGGGGHHHHIIIIIIIIIIIIJJKKKLLLLLLL"
    "LLLNNNNNNNNNOOOOOOOORRRRRRSSSSSSSSTTTTTTUUUUUUUUUUUUWWYYYZZZZZZS";
static_assert(kPlainLetters.size() == 0x180 - kFirstAccented);

constexpr char32_t kFirstDigit = 0x100;
constexpr char32_t kFirstLetter = 0x200;

char32_t WeightOf(char32_t character) {
  if (character >= kFirstAccented && character < kFirstAccented + kPlainLetters.size()) {
    const char plain = kPlainLetters[character - kFirstAccented];
    if (plain != kNoLetter) return kFirstLetter + static_cast<char32_t>(plain);
  }
  if (character >= '0' && character <= '9') return kFirstDigit + character;
  if (character < 0x80) {
    const std::size_t sign = kSigns.find(static_cast<char>(character));
    if (sign != std::string_view::npos) return static_cast<char32_t>(0x20 + sign);
    if (character < 0x20) return character;
  }
  return kFirstLetter + character;
}

}  // namespace

TextOrder::TextOrder(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const char32_t character = UpperCase(NextCharacter(text, at));
    if (character == '-' || character == '\'') {
      ++passed_over_;
      continue;
    }
    letters_ += WeightOf(character);
    accents_ += character;
  }
}

int TextOrder::Compare(const TextOrder& other) const {
  if (const int order = letters_.compare(other.letters_)) return order;
  if (const int order = accents_.compare(other.accents_)) return order;
  return passed_over_ < other.passed_over_ ? -1 : passed_over_ > other.passed_over_;
}

}  // namespace vantora::embedded
