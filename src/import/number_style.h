#pragma once

#include <cstddef>
#include <span>

#include "import/price_number.h"
#include "import/sample_table.h"

namespace velumar {

// Whether the numbers of the columns have decimal commas or points, by all rows of the sample.
// Throws ImportError if some can only have the one and some only the other.
NumberStyle StyleOfNumbers(const SampleTable& sample, std::span<const std::size_t> columns);

}  // namespace velumar
