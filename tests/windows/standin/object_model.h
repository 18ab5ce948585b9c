// Excel's object model as it is documented, as far as the component uses it: what the stand-in
// offers, and what it refuses.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vantora::standin {

enum class Access {
  kMethod,
  kRead,
  kReadWrite,
  // A property that gives a range; arguments are handed on to that range's default member, so that
  // they have no names.
  kIndexed,
};

struct DocumentedMember {
  std::string_view kind;
  std::string_view name;
  Access access;
  // In the order of the declaration; the first `required` can't be left out.
  std::vector<std::string_view> arguments = {};
  std::size_t required = 0;
};

// An identifier is a member's place in here, counted from kFirstId: it holds for one kind only.
const std::vector<DocumentedMember>& ObjectModel();
inline constexpr long kFirstId = 100;

// The place of a kind's member, whatever the case of its name; -1 when there is none.
int FindMember(std::string_view kind, std::string_view name);

// Buttons and popups of a menu bar have the members of every control besides their own.
bool IsMemberOf(const DocumentedMember& member, std::string_view kind);

}  // namespace vantora::standin
