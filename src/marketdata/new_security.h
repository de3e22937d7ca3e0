#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "marketdata/bar_layout.h"
#include "marketdata/directory_editor.h"

namespace velumar {

// What a security must be to be added to a directory.

// The fields that a daily series (interval -1) or an intraday one is stored with.
BarLayout WantedLayout(int interval);

// Cut to the bytes that the longest name field of the index files holds.
std::string StoredName(const std::string& name);

// Throw MetaLibError (kNotStorable) that names the symbol, name or interval, or the bar and the
// field, that would not read back as it is. `place` is where the bars would go.
void CheckIdentity(const NewSecurity& security);
void CheckBars(const NewSecurity& security, const std::vector<Bar>& bars, std::string_view place);

}  // namespace velumar
