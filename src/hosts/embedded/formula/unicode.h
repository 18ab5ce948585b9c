// Characters of UTF-8 texts as worksheet functions see them: upper and lower case, and lengths in
// UTF-16 units.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vantora::embedded {

// The character at `position`, which moves behind it. A malformed byte counts as a character.
char32_t NextCharacter(std::string_view text, std::size_t& position);
void AppendCharacter(std::string& out, char32_t character);

// Latin, Greek and Cyrillic letters; all others are their own upper and lower case.
char32_t UpperCase(char32_t character);
char32_t LowerCase(char32_t character);
bool IsAlphabetic(char32_t character);

// Without regard to case: less than, equal to or greater than 0.
int CompareIgnoringCase(std::string_view a, std::string_view b);
bool EqualIgnoringCase(std::string_view a, std::string_view b);

// Length in UTF-16 units.
std::size_t LengthOf(std::string_view text);
// Byte position behind the first `units` UTF-16 units, the text's size when it is shorter.
std::size_t BytePosition(std::string_view text, std::size_t units);

// Whether the whole text matches a pattern, without regard to case: `?` is any character, `*` any
// number of them, and what follows `~` stands for itself (nothing for a last `~`).
bool MatchesPattern(std::string_view text, std::string_view pattern);
// The same for the start of the text.
bool StartMatchesPattern(std::string_view text, std::string_view pattern);
bool IsPattern(std::string_view text);

}  // namespace vantora::embedded
