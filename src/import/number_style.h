#pragma once

#include <cstddef>
#include <optional>
#include <span>

#include "import/price_number.h"
#include "import/sample_table.h"

namespace velumar {

// Whether the numbers of the columns have decimal commas or points, by all rows of the sample;
// nothing if all of them can be read both ways and point to neither. A file in which every number
// has a point and three digits after it has decimal points, unless it looks continental otherwise.
// Throws ImportError if some numbers can only have the one and some only the other.
std::optional<NumberStyle> StyleOfNumbers(const SampleTable& sample,
                                          std::span<const std::size_t> columns);

}  // namespace velumar
