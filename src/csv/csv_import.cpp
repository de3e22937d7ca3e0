#include "csv/csv_import.h"

#include <algorithm>

#include "base/paths.h"
#include "base/text.h"
#include "csv/csv_guess.h"
#include "csv/csv_series.h"
#include "csv/csv_text.h"
#include "marketdata/directory_editor.h"
#include "marketdata/metalib_error.h"
#include "marketdata/metalib_reader.h"

namespace velumar {

namespace {

// What will be stored, read and guessed but not yet written.
struct Draft {
  NewSecurity security;
  CsvSeries series;
  int times_left_out = 0;
};

Draft ReadDraft(const std::filesystem::path& file, const CsvImportOptions& options) {
  const CsvNameGuess guess = GuessFromName(PathText(file.stem()));
  Draft draft;
  draft.security.symbol = options.symbol ? NormalisedSymbol(*options.symbol) : guess.symbol;
  if (draft.security.symbol.empty()) {
    throw CsvError("the file name contains no symbol; set the symbol");
  }
  draft.series = ReadCsvSeries(ReadCsvBytes(file), options.date_format);
  draft.security.interval =
      options.interval ? *options.interval : GuessInterval(draft.series.bars, guess.interval);
  if (draft.security.interval == -1) draft.times_left_out = MakeDaily(draft.series);
  return draft;
}

// The name of the security that will be replaced; of a new one, its symbol.
std::string NameOf(const NewSecurity& security, std::string_view directory, IndexCache& cache) {
  MetaLibReader reader(cache);
  try {
    reader.OpenDirectory(directory);
  } catch (const MetaLibError& error) {
    if (error.Number() == MetaLibError::kNoData) return security.symbol;
    throw;
  }
  while (reader.NextSecurity() > 0) {
    reader.ReadSecurityHeader();
    const bool same = reader.SecuritySymbol() == security.symbol &&
                      reader.SecurityInterval() == security.interval;
    if (same) return reader.SecurityName();
  }
  return security.symbol;
}

CsvImportReport ReportOf(const Draft& draft) {
  const std::vector<Bar>& bars = draft.series.bars;
  CsvImportReport report{.symbol = draft.security.symbol,
                         .interval = draft.security.interval,
                         .bars = static_cast<int>(bars.size()),
                         .first_date = bars.front().date,
                         .last_date = bars.back().date,
                         .times_left_out = draft.times_left_out};
  const auto first = std::ranges::find_if(bars, PricesContradict);
  if (first == bars.end()) return report;
  report.first_contradiction_line =
      draft.series.lines[static_cast<std::size_t>(first - bars.begin())];
  report.contradictions = static_cast<int>(std::count_if(first, bars.end(), PricesContradict));
  return report;
}

}  // namespace

CsvImportReport ImportCsv(const std::filesystem::path& file, std::string_view directory,
                          const CsvImportOptions& options, IndexCache& cache) {
  Draft draft;
  try {
    draft = ReadDraft(file, options);
  } catch (const CsvError& error) {
    throw CsvError(PathText(file) + ": " + error.what());
  }
  draft.security.name = options.name ? *options.name : NameOf(draft.security, directory, cache);
  StoreSecurity(directory, draft.security, draft.series.bars, cache);
  return ReportOf(draft);
}

}  // namespace velumar
