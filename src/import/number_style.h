#pragma once

#include <cstddef>
#include <optional>
#include <span>

#include "import/price_number.h"
#include "import/sample_table.h"

namespace velumar {

// Whether the numbers of the columns, prices first, have decimal commas or points, by all rows of
// the sample; nothing if all of them can be read both ways, as 1.234 can, and neither the way the
// dates are written nor large numbers without groups decide it. Throws ImportError if some numbers
// can only have the one and some only the other.
std::optional<NumberStyle> StyleOfNumbers(const SampleTable& sample, std::size_t date,
                                          std::span<const std::size_t> columns);

}  // namespace velumar
