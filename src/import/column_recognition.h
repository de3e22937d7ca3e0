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

// Marks the columns that nothing names and that may hold the volume, if no column is known to. The
// format is complete but for that.
void MarkPossibleVolumes(const SampleTable& sample, TableFormat& format);

}  // namespace velumar
