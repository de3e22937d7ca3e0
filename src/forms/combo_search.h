#pragma once

#include <string_view>
#include <vector>

#include "forms/control.h"

namespace velumar {

// The indexes of the lines that match a typed text, best matches first: lines that begin with it,
// then lines whose note has a word that does. Ignores case and surrounding blanks; an empty text
// matches nothing.
std::vector<int> MatchingRows(const std::vector<ComboBox::Row>& rows, std::string_view typed);

}  // namespace velumar
