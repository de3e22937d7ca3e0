#pragma once

#include "import/price_import.h"
#include "import/price_reader.h"
#include "import/row_findings.h"

namespace velumar {

// What a price file leaves open about all of its rows. The answers begin with the options that it
// was read with.

ImportQuestion FormatQuestion(const FormatUndecided& open, const ImportOptions& options);

// With what the dates become in each order that they allow.
ImportQuestion DateOrderQuestion(const FileFormat& format, const DateReadings& readings,
                                 const ImportOptions& options);

// Shows the first row where the adjusted close differs; there must be one.
ImportQuestion PricesQuestion(const AdjustedCloses& closes, const ImportOptions& options);

}  // namespace velumar
