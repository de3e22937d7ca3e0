#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velumar {

// A folder as people and programs type it, in the one form that this program keeps: "\" and "/"
// both separate, doubled ones count as one, a closing one and blanks at both ends fall away.
// "~" alone or in front of a separator is the user's home.
std::string NormalFolder(std::string_view typed);

// The folders that the text in a folder line may be the beginning of, each in full, sorted; at most
// `limit`. Hidden ones only when the text asks for them by a dot. Unreadable folders have none.
std::vector<std::string> FoldersBeginningWith(std::string_view typed, std::size_t limit);

// What all of them have in common from the left.
std::string CommonBeginning(const std::vector<std::string>& texts);

}  // namespace velumar
