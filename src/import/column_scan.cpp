#include "import/column_scan.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "base/dates.h"
#include "import/field_text.h"
#include "import/line_fields.h"
#include "import/text_source.h"

namespace velumar {

namespace {

// Which orders of day, month and year all dates allow.
class DateOrders {
 public:
  void Add(std::string_view date, std::string_view ticker) {
    // Times play no part, and the bars of one day follow each other.
    date = date.substr(0, date.find(' '));
    if (date == last_date_) return;
    last_date_ = date;
    const auto orderless = ReadOrderlessDate(date);
    if (!orderless) return;
    if (ticker != last_ticker_) {
      for (Candidate& candidate : candidates_) candidate.last = 0;
      last_ticker_ = ticker;
    }
    has_points_ |= orderless->has_points;
    for (Candidate& candidate : candidates_) {
      const bool full_year = orderless->has_full_year;
      if (full_year && candidate.order == DateOrder::kYearMonthDay) candidate.fits = false;
      if (candidate.fits) candidate.Add(ReadDateText(date, candidate.order)->date);
    }
  }

  // True if no more dates are needed, since at most one order fits.
  bool IsDecided() const { return Count(&Candidate::Fits) < 2; }

  bool Fits(DateOrder order) const {
    return std::ranges::find(candidates_, order, &Candidate::order)->fits;
  }

  // Nothing if several are left, or none. Nobody writes the month first in front of a point.
  std::optional<DateOrder> Only() const {
    if (has_points_ && candidates_[0].fits) return candidates_[0].order;
    for (const auto is : {&Candidate::Fits, &Candidate::IsSteady}) {
      if (Count(is) != 1) continue;
      return std::ranges::find_if(candidates_, [&](const Candidate& c) { return (c.*is)(); })
          ->order;
    }
    return std::nullopt;
  }

 private:
  struct Candidate {
    DateOrder order;
    bool fits = true;
    bool rises = true;
    bool falls = true;
    std::int32_t last = 0;

    bool Fits() const { return fits; }
    bool IsSteady() const { return fits && (rises || falls); }
    void Add(std::int32_t date) {
      fits = IsRealDate(date);
      if (last != 0 && date < last) rises = false;
      if (last != 0 && date > last) falls = false;
      last = date;
    }
  };

  std::ptrdiff_t Count(bool (Candidate::*is)() const) const {
    return std::ranges::count_if(candidates_, [&](const Candidate& c) { return (c.*is)(); });
  }

  std::array<Candidate, 3> candidates_ = {
      {{DateOrder::kDayMonthYear}, {DateOrder::kMonthDayYear}, {DateOrder::kYearMonthDay}}};
  bool has_points_ = false;
  std::string last_date_;
  std::string last_ticker_;
};

class Scan {
 public:
  explicit Scan(TableFormat& format) : format_(format), splitter_(format.separator) {}

  bool IsOpen() const {
    return (format_.is_order_open && !orders_.IsDecided()) || format_.is_volume_open;
  }

  void Add(std::string_view line) {
    if (IsBlankLine(line)) return;
    try {
      AddRow(splitter_.Split(line));
    } catch (const ImportError&) {
      // The reader will say what's wrong.
    }
  }

  void Finish() {
    if (format_.is_volume_open) UseTickVolume();
    if (!format_.is_order_open) return;
    const auto order = orders_.Only();
    // If no order fits, the reader will name the first line that does not.
    if (!order && !orders_.IsDecided()) {
      format_.month_may_be_first = orders_.Fits(DateOrder::kMonthDayYear);
      format_.year_may_be_first = orders_.Fits(DateOrder::kYearMonthDay);
      return;
    }
    format_.is_order_open = false;
    format_.dates.order = order.value_or(DateOrder::kDayMonthYear);
  }

 private:
  void AddRow(const std::vector<std::string_view>& fields) {
    const auto field = [&](PriceField name) {
      const auto place = format_.Place(name);
      return place && *place < fields.size() ? fields[*place] : std::string_view();
    };
    if (format_.is_order_open) orders_.Add(field(PriceField::kDate), field(PriceField::kTicker));
    const std::string_view volume = field(PriceField::kVolume);
    if (volume.find_first_of("123456789") != std::string_view::npos) format_.is_volume_open = false;
  }

  void UseTickVolume() {
    format_.is_volume_open = false;
    const std::size_t volume = *format_.Place(PriceField::kVolume);
    const std::size_t ticks = *format_.Place(PriceField::kTickVolume);
    format_.columns[volume].field = PriceField::kIgnored;
    format_.columns[volume].reason = "zero throughout";
    format_.columns[ticks].reason += "; the volume, since the other one is zero throughout";
    format_.SetPlace(PriceField::kVolume, ticks);
  }

  TableFormat& format_;
  LineFields splitter_;
  DateOrders orders_;
};

}  // namespace

void DecideByAllRows(const std::filesystem::path& file, TableFormat& format) {
  TextSource source(file);
  Scan scan(format);
  std::int64_t number = 0;
  while (scan.IsOpen()) {
    std::string_view block = source.Next();
    if (block.empty()) break;
    std::string_view line;
    while (scan.IsOpen() && TakeLine(block, line)) {
      if (++number >= format.first_row_line) scan.Add(line);
    }
  }
  scan.Finish();
}

}  // namespace velumar
