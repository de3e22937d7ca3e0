#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "forms/control.h"
#include "shell/import_batch.h"

namespace velumar {

// The columns of the list of files.
struct BatchColumn {
  enum Column : std::uint8_t { kFile, kSymbol, kInterval, kFirstDay, kLastDay, kBars, kRemarks };
};

std::string BatchCell(const ImportBatch& batch, std::size_t file, std::size_t column);
// The whole path and all remarks, one a line.
std::string BatchTip(const ImportBatch& batch, std::size_t file);
Colour BatchInk(FileState state);
// The remarks, and what was understood of the way in which a file is written, one sentence a line.
std::vector<std::string> UnderstoodLines(const ImportBatch& batch, std::size_t file);
// How many files are in which state, a sentence each.
std::string SummaryText(const ImportBatch& batch);

// All decimals of a price: "1.19978".
std::string WholePriceText(float price);
// "12 new bars, 3 changed, 1 missing in the file kept".
std::string ReportText(const ImportReport& report);

}  // namespace velumar
