#include "marketdata/csv_import.h"

#include <algorithm>
#include <system_error>

#include "base/paths.h"
#include "base/text.h"
#include "base/whole_file.h"
#include "marketdata/csv_error.h"
#include "marketdata/csv_guess.h"
#include "marketdata/csv_series.h"
#include "marketdata/data_file.h"
#include "marketdata/directory_editor.h"
#include "marketdata/metalib_error.h"
#include "marketdata/metalib_reader.h"

namespace velumar {

namespace {

// What is to be stored, read and guessed but not yet written.
struct Draft {
  NewSecurity security;
  CsvSeries series;
  int times_left_out = 0;
};

// Bytes: a thousand for each bar of the longest series.
constexpr std::size_t kLargestFile = 64 << 20;

std::string WholeText(const std::filesystem::path& file) {
  try {
    return ReadWholeFile(file, kLargestFile);
  } catch (const FileError& error) {
    std::string why = std::string(kCantRead) + ": " + error.Reason();
    const bool too_large = error.code() == std::errc::file_too_large;
    if (too_large) why += "; a series holds at most " + std::to_string(kMostBars) + " bars";
    throw CsvError(why);
  }
}

Draft ReadDraft(const std::filesystem::path& file, const CsvImportOptions& options) {
  const CsvNameGuess guess = GuessFromName(PathText(file.stem()));
  Draft draft;
  draft.security.symbol = options.symbol ? NormalisedSymbol(*options.symbol) : guess.symbol;
  if (draft.security.symbol.empty()) throw CsvError("the file's name tells no symbol; say one");
  draft.series = ReadCsvSeries(WholeText(file), options.date_format);
  draft.security.interval =
      options.interval ? *options.interval : GuessInterval(draft.series.bars, guess.interval);
  if (draft.security.interval == -1) draft.times_left_out = MakeDaily(draft.series);
  return draft;
}

// The name of the security that is replaced, or the symbol for a new one.
std::string StoredName(std::string_view directory, const NewSecurity& security, IndexCache& cache) {
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
    if (same) return reader.Security().name;
  }
  return security.symbol;
}

CsvImportReport ReportOf(const Draft& draft) {
  const CsvSeries& series = draft.series;
  CsvImportReport report;
  report.symbol = draft.security.symbol;
  report.interval = draft.security.interval;
  report.bars = static_cast<int>(series.bars.size());
  report.first_date = series.bars.front().date;
  report.last_date = series.bars.back().date;
  report.times_left_out = draft.times_left_out;
  const auto first = std::ranges::find_if(series.bars, PricesContradict);
  if (first == series.bars.end()) return report;
  report.first_contradiction_line =
      series.lines[static_cast<std::size_t>(first - series.bars.begin())];
  report.contradictions =
      static_cast<int>(std::count_if(first, series.bars.end(), PricesContradict));
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
  draft.security.name = options.name ? *options.name : StoredName(directory, draft.security, cache);
  StoreSecurity(directory, draft.security, draft.series.bars, cache);
  return ReportOf(draft);
}

}  // namespace velumar
