#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "import/bar_aggregator.h"
#include "import/bar_spacing.h"
#include "import/interval_counts.h"
#include "import/newest_bars.h"
#include "import/price_import.h"
#include "import/zone_times.h"

namespace velumar {

// The interval that a file name or a column names.
struct IntervalHint {
  int interval = 0;         // kDaily or minutes; also those that can't be replayed
  std::string source = {};  // "the file name says 5"
  bool certain = true;      // false: the hint may be none, as the 30 of "US30"
};

// What the rows of one series add up to.
struct BuiltSeries {
  int interval = 0;  // kDaily or minutes; 0 while a question is open
  bool hint_holds = true;
  // The first bar is aggregated, and the file begins after its start: it may lack a part.
  bool begins_within_bar = false;
  // Most bars open far from the close of the bar before, within a day: as if each were another
  // security.
  bool jumps_within_days = false;
  // The bars continue each other from open to close rather than from close to open.
  bool opens_at_end = false;
  std::int64_t bars = 0;  // of the file while a question is open
  Bar first = {};
  Bar last = {};
  // Oldest first; by year if the series is split, else under 0.
  std::map<int, std::vector<Bar>> parts = {};
  std::vector<ImportQuestion> questions = {};
  std::vector<std::string> remarks = {};
  std::string refusal = {};
};

// Makes a series of the rows of a file: converts time zones, sorts, leaves out repeated moments,
// decides on the interval, and aggregates. The rows of the sample may be in any order. A longer
// series must be sorted, oldest or newest first, except for the repeated hour at the end of summer
// time; only its newest bars are kept, so that memory is bounded.
class SeriesBuilder {
 public:
  // How many rows the sample has: that of the only series of a file, and of one of many.
  static constexpr std::size_t kSample = std::size_t{1} << 17;
  static constexpr std::size_t kSmallSample = kSample / 8;

  // `options` must outlive the builder. Throws ImportError for an unknown time zone.
  SeriesBuilder(const ImportOptions& options, std::optional<IntervalHint> hint,
                std::size_t sample = kSample)
      : options_(options), hint_(std::move(hint)), sample_(sample), limit_(sample) {}

  // `bar` is as its line states it. Throws ImportError.
  void Add(const Bar& bar, std::int64_t line, std::optional<int> utc_offset);
  BuiltSeries Finish();

 private:
  struct Row {
    Bar bar;
    std::optional<int> utc_offset;
    std::int64_t line = 0;
  };
  // How many, and the first line.
  struct Tally {
    std::int64_t count = 0;
    std::int64_t line = 0;
    void Add(std::int64_t line);
    // "1 bar WHAT (first on line 3)", "2 bars WHAT_MANY (first on line 3)"
    std::string Text(const std::string& what, const std::string& what_many) const;
  };

  void Flush(std::size_t keep);
  void Begin(bool whole_file);
  void ConvertFrom(std::size_t place);
  bool Before(const Row& a, const Row& b) const;
  void Sort();
  BarSpacing BufferSpacing() const;
  void DecideInterval(const BarSpacing& spacing);
  void Take(const Row& row);
  void TakeBar(Bar bar, std::int64_t line);
  void TakeRepeated(const Row& row);
  void CompareWithLast(const Row& row);
  void Keep(const Bar& bar);
  void CheckSpacing();
  void CheckLength(BuiltSeries& built);
  void AskInterval(BuiltSeries& built);
  void AddRemarks(BuiltSeries& built) const;

  const ImportOptions& options_;
  std::optional<IntervalHint> hint_;
  std::size_t sample_;
  bool hint_holds_ = true;

  std::vector<Row> buffer_;  // rows whose place may still change
  std::size_t converted_ = 0;
  std::size_t limit_;
  bool begun_ = false;
  bool newest_first_ = false;
  bool backwards_ = false;  // rows are taken newest first
  std::unique_ptr<ZoneTimes> zones_;
  std::optional<Row> before_;  // the last row that was taken

  int interval_ = 0;  // kDaily or minutes; 0: not decided
  int label_seconds_ = 0;
  std::unique_ptr<BarAggregator> aggregator_;
  BarSpacing spacing_;
  std::map<int, NewestBars> kept_;
  std::map<int, std::int64_t> years_;
  IntervalCounts counts_;
  std::int64_t bars_ = 0;
  std::int64_t outside_ = 0;  // of --from and --to
  Bar first_;
  Bar last_;

  Tally skipped_times_;
  Tally contradictions_;
  Tally identical_;
  Tally repeated_;
  std::int64_t repeated_days_ = 0;
  std::int32_t last_repeated_ = 0;
  std::int64_t times_ = 0;
  std::int64_t steps_ = 0;     // from bar to bar within a day
  std::int64_t jumps_ = 0;     // of those
  double gaps_ = 0;            // from the close of a bar to the open of the next one
  double exchanged_gaps_ = 0;  // the same if open and close were exchanged
  std::string refusal_;
};

// True if the open, high or close is below the low, or the open or close above the high.
bool PricesContradict(const Bar& bar);

}  // namespace velumar
