#pragma once

#include <span>

#include "import/sample_table.h"
#include "import/table_format.h"

namespace velumar {

// Finds the header and what the columns of a sample hold, by their names or, without a header, by
// their values, and sets `columns`, `places`, `width` and the header of the format. `numbers` is
// the style that the user has set. Throws ImportError naming what is missing.
void RecogniseColumns(const SampleTable& sample, std::span<const TextLine> lines,
                      std::optional<NumberStyle> numbers, TableFormat& format);

}  // namespace velumar
