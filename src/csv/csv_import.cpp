#include "csv/csv_import.h"

#include <algorithm>
#include <map>

#include "base/dates.h"
#include "base/paths.h"
#include "base/text.h"
#include "csv/csv_series.h"
#include "csv/csv_text.h"
#include "marketdata/directory_editor.h"
#include "marketdata/interval.h"

namespace velumar {

namespace {

constexpr std::string_view kSetIt = "; set the interval";

int SecondOfDay(std::int32_t time) { return MinuteOfDay(time) * 60 + time % 100; }

// How often bars of one day are how many seconds apart.
std::map<int, int> GapsWithinDays(const std::vector<Bar>& bars) {
  std::map<int, int> gaps;
  for (std::size_t i = 1; i < bars.size(); ++i) {
    if (bars[i].date != bars[i - 1].date) continue;
    ++gaps[SecondOfDay(bars[i].time) - SecondOfDay(bars[i - 1].time)];
  }
  return gaps;
}

// One bar a day, always at the same time. A single bar with a time can have any interval.
bool LookDaily(const std::vector<Bar>& bars) {
  const auto same_time = [&](const Bar& bar) { return bar.time == bars.front().time; };
  return std::ranges::all_of(bars, same_time) && (bars.size() > 1 || bars.front().time == 0);
}

std::optional<int> IntervalOfBars(const std::vector<Bar>& bars) {
  const std::map<int, int> gaps = GapsWithinDays(bars);
  if (gaps.empty()) return LookDaily(bars) ? std::optional(kDaily) : std::nullopt;
  const auto [seconds, count] = *std::ranges::max_element(
      gaps, {}, [](const auto& gap) { return std::pair(gap.second, -gap.first); });
  return seconds / 60;
}

// A thin market may have no bars for most of the time, so wider gaps than the name's are normal.
bool Agree(int from_name, int from_bars) {
  return from_name == kDaily ? from_bars == kDaily : from_bars >= from_name;
}

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

CsvNameGuess GuessFromName(std::string_view stem) {
  const auto line = stem.rfind('_');
  if (line != std::string_view::npos && line > 0) {
    const std::optional<int> interval = IntervalFromText(stem.substr(line + 1));
    if (interval && IsReplayInterval(*interval)) {
      return {NormalisedSymbol(stem.substr(0, line)), interval};
    }
  }
  return {NormalisedSymbol(stem), std::nullopt};
}

int GuessInterval(const std::vector<Bar>& bars, std::optional<int> from_name) {
  const std::optional<int> from_bars = IntervalOfBars(bars);
  if (from_name && (!from_bars || Agree(*from_name, *from_bars))) return *from_name;
  if (!from_bars) {
    throw CsvError("the bars do not show their interval" + std::string(kSetIt));
  }
  if (!from_name && IsReplayInterval(*from_bars)) return *from_bars;
  std::string problem = "most bars are " + IntervalName(*from_bars);
  if (*from_bars != kDaily) problem += " apart";
  if (from_name) problem += ", but the file name says " + IntervalText(*from_name);
  throw CsvError(problem + std::string(kSetIt));
}

CsvImportReport ImportCsv(const std::filesystem::path& file, std::string_view directory,
                          const CsvImportOptions& options, IndexCache& cache) {
  Draft draft;
  try {
    draft = ReadDraft(file, options);
  } catch (const CsvError& error) {
    throw CsvError(PathText(file) + ": " + error.what());
  }
  draft.security.name = options.name.value_or("");
  StoreSecurity(directory, draft.security, draft.series.bars, cache);
  return ReportOf(draft);
}

}  // namespace velumar
