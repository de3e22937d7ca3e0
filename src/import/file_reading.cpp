#include "import/file_reading.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <utility>

#include "base/text.h"
#include "import/column_names.h"
#include "import/file_questions.h"
#include "import/row_findings.h"
#include "import/security_names.h"
#include "import/series_builder.h"
#include "import/text_source.h"
#include "import/wording.h"
#include "marketdata/interval.h"
#include "marketdata/metalib_error.h"

namespace velumar {

namespace {

constexpr std::size_t kSamples = 3;
constexpr auto kProgressPause = std::chrono::milliseconds(5);

// As messages name an interval that may be one that can't be replayed.
std::string HintText(int interval) {
  constexpr int kWeek = 7 * 1440;
  if (interval == kDaily) return IntervalName(interval);
  if (interval >= kWeek) return interval == kWeek ? "weekly" : "monthly";
  return DurationText(interval * 60);
}

// A line of a file that may be no table at all, without half a letter at its end.
std::string ShortenedLine(std::string_view line) {
  constexpr std::size_t kLongest = 500;
  if (line.size() <= kLongest) return std::string(line);
  std::size_t end = kLongest;
  while (end > 0 && (line[end] & 0xC0) == 0x80) --end;
  return std::string(line.substr(0, end)) + "...";
}

class FileReading {
 public:
  FileReading(const std::filesystem::path& file, const ImportOptions& options,
              const ImportProgress& progress)
      : options_(options), progress_(progress), names_(file, options) {
    read_.understanding.file = file;
  }

  ReadPrices Run() {
    if (ReadsThrough()) Finish();
    if (read_.understanding.head.empty()) AddFirstLines();
    return std::move(read_);
  }

 private:
  struct Group {
    Group(std::string ticker_text, SeriesBuilder series)
        : ticker(std::move(ticker_text)), builder(std::move(series)) {}

    std::string ticker;
    SeriesBuilder builder;
  };

  // Returns false if the file is refused or its format is a question.
  bool ReadsThrough() {
    try {
      ReadRows();
      return true;
    } catch (const ImportCancelled&) {
      throw;
    } catch (const FormatUndecided& open) {
      Ask(FormatQuestion(open, options_));
    } catch (const std::exception& error) {
      read_.understanding.refusal = error.what();
    }
    return false;
  }

  void ReadRows() {
    Understanding& understood = read_.understanding;
    PriceReader reader(understood.file, options_);
    understood.format = reader.Format();
    for (auto rows = reader.Next(); !rows.empty(); rows = reader.Next()) {
      for (const PriceRow& row : rows) AddRow(row);
      AddSamples(reader, rows);
      ShowProgress(reader.Progress());
    }
    understood.format = reader.Format();
    understood.counts = reader.Counts();
  }

  void AddRow(const PriceRow& row) {
    adjusted_.Add(row);
    steps_.Add(row.bar);
    if (read_.understanding.format.date_order_open) readings_.Add(row.bar.date);
    const Bar bar = options_.prices == Prices::kAdjusted ? Adjusted(row) : row.bar;
    GroupOf(row).builder.Add(bar, row.line, row.utc_offset);
  }

  // Rows of one series usually follow one another.
  Group& GroupOf(const PriceRow& row) {
    if (group_ != groups_.end() && group_->first.first == row.ticker &&
        group_->first.second == row.period) {
      return *group_->second;
    }
    std::pair<std::string, std::string> key(row.ticker, row.period);
    group_ = groups_.find(key);
    if (group_ != groups_.end()) return *group_->second;
    if (row.ticker.empty() && !groups_.empty()) {
      throw ImportError("line " + std::to_string(row.line) + ": has no ticker");
    }
    const std::string ticker = NormalisedSymbol(row.ticker);
    const std::optional<IntervalHint> hint = HintOf(row);
    // "abc" and "ABC" are one security, "D" and "Daily" one interval.
    std::unique_ptr<Group>& group = series_[{ticker, hint ? hint->interval : 0}];
    if (!group) {
      const std::size_t sample =
          order_.empty() ? SeriesBuilder::kSample : SeriesBuilder::kSmallSample;
      group = std::make_unique<Group>(ticker, SeriesBuilder(options_, hint, sample));
      order_.push_back(group.get());
    }
    group_ = groups_.try_emplace(std::move(key), group.get()).first;
    return *group;
  }

  std::optional<IntervalHint> HintOf(const PriceRow& row) const {
    if (const std::optional<int> period = IntervalFromWord(row.period)) {
      return IntervalHint{.interval = *period, .source = "the file says " + HintText(*period)};
    }
    const NameGuess& guess = names_.Guess();
    if (!guess.interval) return std::nullopt;
    return IntervalHint{.interval = *guess.interval,
                        .source = "the file name says " + HintText(*guess.interval),
                        .certain = guess.certain};
  }

  void AddSamples(const PriceReader& reader, std::span<const PriceRow> rows) {
    const auto sample = [&](const PriceRow& row) {
      return SampleRow{.line = row.line, .text = std::string(reader.RawLine(row)), .bar = row.bar};
    };
    std::vector<SampleRow>& head = read_.understanding.head;
    std::vector<SampleRow>& tail = read_.understanding.tail;
    for (std::size_t i = 0; i < rows.size() && head.size() < kSamples; ++i) {
      head.push_back(sample(rows[i]));
    }
    for (const PriceRow& row : rows.last(std::min(rows.size(), kSamples))) {
      if (tail.size() == kSamples) tail.erase(tail.begin());
      tail.push_back(sample(row));
    }
  }

  // The lines of a file without bars show what is wrong with it. A file that can't be read or is no
  // text has none.
  void AddFirstLines() {
    std::vector<SampleRow>& head = read_.understanding.head;
    try {
      TextSource source(read_.understanding.file);
      std::string_view text = source.Next();
      std::string_view line;
      while (head.size() < 2 * kSamples && TakeLine(text, line)) {
        const auto number = static_cast<std::int64_t>(head.size()) + 1;
        head.push_back({.line = number, .text = ShortenedLine(line), .bar = {}});
      }
    } catch (const ImportError&) {
      head.clear();
    }
  }

  void ShowProgress(double done) {
    if (!progress_) return;
    const auto now = std::chrono::steady_clock::now();
    if (now < next_progress_) return;
    next_progress_ = now + kProgressPause;
    if (!progress_(done)) throw ImportCancelled();
  }

  void Finish() {
    Understanding& understood = read_.understanding;
    if (groups_.empty()) {
      understood.refusal = "has no rows with prices";
      return;
    }
    if (options_.scale == 1) {
      understood.suggested_scale = steps_.SuggestedScale(understood.format.price_decimals);
    }
    AddSkipped();
    CheckVolume();
    CheckPrices();
    if (understood.format.date_order_open && !options_.date_order) {
      Ask(DateOrderQuestion(understood.format, readings_, options_));
      return;
    }
    if (options_.symbol && Tickers() > 1) {
      understood.refusal =
          "holds " + std::to_string(Tickers()) + " tickers; --symbol is for a file with one";
      return;
    }
    for (Group* group : order_) AddSeries(*group);
    AddZone();
    const auto refused = [](const ReadPrices::Series& one) { return !one.found.refusal.empty(); };
    if (std::ranges::all_of(read_.series, refused)) {
      const FoundSeries& first = read_.series.front().found;
      understood.refusal = (order_.size() > 1 ? first.symbol + ": " : "") + first.refusal;
    }
    for (const ReadPrices::Series& one : read_.series) understood.series.push_back(one.found);
  }

  std::size_t Tickers() const {
    std::set<std::string> tickers;
    for (const Group* group : order_) tickers.insert(group->ticker);
    return tickers.size();
  }

  // Once, if it concerns several series.
  void Remark(const std::string& text) {
    std::vector<std::string>& remarks = read_.understanding.remarks;
    if (std::ranges::find(remarks, text) == remarks.end()) remarks.push_back(text);
  }

  void AddSkipped() {
    const RowCounts& counts = read_.understanding.counts;
    if (counts.skipped == 0) return;
    Remark(std::to_string(counts.skipped) +
           (counts.skipped == 1 ? " line without prices was" : " lines without prices were") +
           " skipped (first: line " + std::to_string(counts.first_skipped_line) + ")");
  }

  // A volume that is missed must not be taken for zero.
  void CheckVolume() {
    const std::vector<ColumnMeaning>& columns = read_.understanding.format.columns;
    const auto is_volume = [](const ColumnMeaning& column) {
      return column.field >= PriceField::kVolume && column.field <= PriceField::kDownVolume;
    };
    if (std::ranges::any_of(columns, is_volume)) return;
    std::string possible;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const auto& [title, field, reason, may_be_volume] = columns[i];
      if (field != PriceField::kIgnored) continue;
      const std::string name =
          title.empty() ? "number " + std::to_string(i + 1) : "\"" + title + "\"";
      if (PlainName(title).find("VOL") != std::string::npos) {
        Remark("the column " + name + " was not read; the volumes are zero");
      } else if (may_be_volume) {
        possible += (possible.empty() ? "" : ", ") + name;
      }
    }
    if (possible.empty()) return;
    Remark("a column that may be the volume was not taken: " + possible +
           "; name it \"Volume\" in the first line to import it");
  }

  void CheckPrices() {
    const FileFormat& format = read_.understanding.format;
    const auto column =
        std::ranges::find(format.columns, PriceField::kAdjustedClose, &ColumnMeaning::field);
    const bool has_column = column != format.columns.end();
    if (std::ranges::find(format.columns, PriceField::kOpen, &ColumnMeaning::field) ==
        format.columns.end()) {
      Remark("has one price for each bar; open, high and low are the close");
    }
    if (steps_.LookCounted()) {
      Remark("all prices are whole numbers above 10,000,000: are they in parts of a unit?");
    }
    if (options_.prices == Prices::kAdjusted && !has_column) {
      Remark("has no adjusted close; the prices are imported as they are");
    }
    if (options_.prices || !has_column || !adjusted_.differing) return;
    if (adjusted_.NeverBelow()) {
      Remark("the adjusted close is above the close in every row, and was ignored");
      return;
    }
    Ask(PricesQuestion(adjusted_, options_));
  }

  // Once for all series of the file.
  void Ask(ImportQuestion question) {
    std::vector<ImportQuestion>& questions = read_.understanding.questions;
    const bool asked = std::ranges::any_of(
        questions, [&](const ImportQuestion& one) { return one.Kind() == question.Kind(); });
    if (!asked) questions.push_back(std::move(question));
  }

  void AddSeries(Group& group) {
    BuiltSeries built = group.builder.Finish();
    if (built.opens_at_end && read_.understanding.format.header_line == 0) {
      built = {.refusal =
                   "the first and the last of the four prices may be exchanged: each bar "
                   "begins where the one before has begun; add a first line that names the "
                   "columns"};
    }
    if (built.jumps_within_days && read_.understanding.format.times_may_be_tickers) {
      built = {.refusal =
                   "the column after the dates may hold times or symbols of several "
                   "securities; add a first line that names the columns"};
    }
    const std::string symbol = names_.SymbolOf(group.ticker, built.hint_holds);
    const std::string prefix = order_.size() > 1 ? symbol + ": " : "";
    for (const std::string& remark : built.remarks) Remark(prefix + remark);
    for (ImportQuestion& question : built.questions) {
      question.text.insert(0, prefix);
      Ask(std::move(question));
    }
    FoundSeries found{.symbol = symbol,
                      .name = names_.NameOf(symbol),
                      .interval = built.questions.empty() ? built.interval : 0,
                      .bars = built.bars,
                      .first = built.first,
                      .last = built.last,
                      .refusal = built.refusal};
    if (options_.too_long == TooLong::kSplitByYear && found.refusal.empty() &&
        found.interval != 0) {
      const std::size_t first = read_.series.size();
      for (auto& [year, bars] : built.parts) AddYear(found, year, std::move(bars));
      read_.series[first].begins_within_bar = built.begins_within_bar;
      return;
    }
    if (found.refusal.empty()) found.refusal = ProblemOf(group, symbol);
    CheckName(found);
    std::vector<Bar> bars;
    if (!built.parts.empty()) bars = std::move(built.parts.begin()->second);
    read_.series.push_back({.found = std::move(found),
                            .bars = std::move(bars),
                            .begins_within_bar = built.begins_within_bar});
  }

  void AddYear(FoundSeries found, int year, std::vector<Bar> bars) {
    const std::string text = std::to_string(year);
    found.symbol += "-" + text;
    found.name = names_.NameOfYear(found.symbol, text);
    found.bars = static_cast<std::int64_t>(bars.size());
    found.first = bars.front();
    found.last = bars.back();
    found.refusal = SymbolProblem(found.symbol);
    CheckName(found);
    read_.series.push_back({.found = std::move(found), .bars = std::move(bars)});
  }

  void CheckName(FoundSeries& found) {
    if (!found.refusal.empty()) return;
    try {
      const std::string cut = names_.CutRemark(found.name);
      if (!cut.empty()) Remark(cut);
    } catch (const MetaLibError& error) {
      found.refusal = error.what();
    }
  }

  // A name that is no symbol is a question; a ticker or an option is refused.
  std::string ProblemOf(const Group& group, const std::string& symbol) {
    const std::string problem = SymbolProblem(symbol);
    if (problem.empty() || options_.symbol || !group.ticker.empty()) return problem;
    Ask(names_.SymbolQuestion(symbol));
    return "";
  }

  void AddZone() {
    const std::string& zone = read_.understanding.format.zone;
    const bool intraday = std::ranges::any_of(
        read_.series, [](const ReadPrices::Series& one) { return one.found.interval != kDaily; });
    if (!intraday || ZoneTimes::Wanted(options_) || zone.empty()) return;
    Remark("the times are kept as written; the file states \"" + zone + "\"");
  }

  const ImportOptions& options_;
  const ImportProgress& progress_;
  SecurityNames names_;
  ReadPrices read_;
  std::map<std::pair<std::string, int>, std::unique_ptr<Group>> series_;  // by symbol and hint
  using Groups = std::map<std::pair<std::string, std::string>, Group*>;   // as rows name them
  Groups groups_;
  Groups::iterator group_ = groups_.end();  // of the last row
  std::vector<Group*> order_;               // as they begin in the file
  AdjustedCloses adjusted_;
  PriceSteps steps_;
  DateReadings readings_;
  std::chrono::steady_clock::time_point next_progress_;
};

}  // namespace

ReadPrices ReadPriceFile(const std::filesystem::path& file, const ImportOptions& options,
                         const ImportProgress& progress) {
  return FileReading(file, options, progress).Run();
}

}  // namespace velumar
