#pragma once

#include <string_view>
#include <vector>

#include "forms/control.h"

namespace velumar {

// The lines of a list that a typed text may mean, as indexes, the likeliest first: lines that begin
// with it, then lines with a word of the note that does. Case doesn't count, nor blanks around the
// text; an empty text means none.
std::vector<int> MatchingRows(const std::vector<ComboBox::Row>& rows, std::string_view typed);

}  // namespace velumar
