#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "import/price_reader.h"

namespace velumar {

// "<Open Int.>", "1. open" and "Open (USD)" become OPENINT, OPEN and OPEN.
std::string PlainName(std::string_view title);

// What titles may name, best first: of two columns that could be the close, the one that is named
// "Close" is preferred to the one named "Last". Titles of other columns yield nothing.
struct NamedColumn {
  std::size_t column = 0;
  PriceField field = PriceField::kIgnored;
};
std::vector<NamedColumn> NamedColumns(std::span<const std::string> titles);

// As messages name it: "open interest".
std::string_view FieldName(PriceField field);

}  // namespace velumar
