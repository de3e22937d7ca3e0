#pragma once

#include <span>

#include "import/column_values.h"
#include "import/sample_table.h"
#include "import/table_format.h"

namespace velumar {

// Finds the line that names the columns: the one before the first row that names the most of them,
// at least two; else the last one, if it could be a header. Sets the header, the titles of the
// columns and their number; without a header, changes nothing.
void FindHeader(const SampleTable& sample, std::span<const TextLine> lines,
                const ColumnValues& values, TableFormat& format);

}  // namespace velumar
