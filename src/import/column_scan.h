#pragma once

#include <filesystem>

#include "import/table_format.h"

namespace velumar {

// Decides what the first lines of a file leave open, by as many of its rows as it takes: the order
// of day and month, which some dates allow only one way, or which only one way makes rise or fall
// steadily; and whether to take the tick volumes, if the real ones are zero throughout. An order
// that stays open is left so. Throws ImportError.
void DecideByAllRows(const std::filesystem::path& file, TableFormat& format);

}  // namespace velumar
