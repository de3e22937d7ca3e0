#include "shell/import_boxes.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/dates.h"
#include "base/text.h"
#include "import/wording.h"
#include "marketdata/interval.h"
#include "shell/batch_texts.h"
#include "shell/event_guard.h"

namespace velumar {

namespace {

// Those of the exchanges that most price files come from; any other can be typed.
constexpr std::array kZones = {"",
                               "UTC",
                               "Europe/London",
                               "Europe/Berlin",
                               "America/New_York",
                               "America/Chicago",
                               "Asia/Bangkok",
                               "Asia/Hong_Kong",
                               "Asia/Singapore",
                               "Asia/Tokyo",
                               "Australia/Sydney"};

constexpr int kAsInTheFile = 0;

void FillZones(ComboBox& list) {
  std::vector<ComboBox::Row> rows;
  rows.reserve(kZones.size());
  for (const char* zone : kZones) rows.push_back({zone});
  list.SetRows(std::move(rows));
}

void ChooseData(ComboBox& list, int data) {
  const auto& rows = list.Rows();
  const auto row = std::ranges::find(rows, data, &ComboBox::Row::data);
  if (row != rows.end()) list.SetIndex(static_cast<int>(row - rows.begin()));
}

int ChosenData(const ComboBox& list) {
  return list.Index() < 0 ? 0 : list.Rows().at(static_cast<std::size_t>(list.Index())).data;
}

std::string DayText(const std::optional<std::int32_t>& day) { return day ? IsoDate(*day) : ""; }

std::optional<std::string> Given(std::string_view text) {
  const std::string typed = Trimmed(text);
  return typed.empty() ? std::nullopt : std::optional(typed);
}

bool HasAdjustedPrices(const FileFormat& format) {
  return std::ranges::count(format.columns, PriceField::kAdjustedClose, &ColumnMeaning::field) > 0;
}

// Where prices are multiplied, how the last one of the file then looks.
std::string ScaleText(const BatchFile& file) {
  const int scale = std::max(file.tradable_scale, file.options.scale);
  if (scale == 1) return "Multiply prices";
  std::string text = "Multiply prices by " + std::to_string(scale);
  if (file.options.scale == 1 || file.understood.tail.empty()) return text;
  const std::string price = WholePriceText(file.understood.tail.back().bar.close);
  constexpr int kPips = 10000;
  return text + (scale == kPips ? ", in pips: " : ": ") + price;
}

}  // namespace

ImportBoxes::ImportBoxes(FrmImport& form, Platform& platform, Surroundings surroundings)
    : form_(form), platform_(platform), surroundings_(std::move(surroundings)) {
  const auto take_texts =
      EventGuard(platform_.boxes)("Reading the file again", [this] { TakeTypedTexts(); });
  for (TextBox* box : {&form_.txtSymbol, &form_.txtName, &form_.txtFrom, &form_.txtTo}) {
    box->on_leave = take_texts;
  }
  for (ComboBox* box : {&form_.cbxFromZone, &form_.cbxToZone}) {
    box->on_leave = box->on_click = take_texts;
  }
  Bind(form_.cbxInterval.on_click, [this](ImportOptions& options, const BatchFile&) {
    const int chosen = ChosenData(form_.cbxInterval);
    options.interval = chosen == kAsInTheFile ? std::nullopt : std::optional(chosen);
  });
  Bind(form_.cbxDates.on_click, [this](ImportOptions& options, const BatchFile&) {
    const int chosen = ChosenData(form_.cbxDates);
    options.date_order =
        chosen == kAsInTheFile ? std::nullopt : std::optional(static_cast<DateOrder>(chosen - 1));
  });
  Bind(form_.cbxLong.on_click, [this](ImportOptions& options, const BatchFile&) {
    options.too_long = static_cast<TooLong>(ChosenData(form_.cbxLong));
  });
  Bind(form_.chkAdjusted.on_click, [this](ImportOptions& options, const BatchFile&) {
    options.prices = form_.chkAdjusted.Checked() ? Prices::kAdjusted : Prices::kAsTraded;
  });
  Bind(form_.chkReplace.on_click, [this](ImportOptions& options, const BatchFile&) {
    options.replace = form_.chkReplace.Checked();
  });
  Bind(form_.chkScale.on_click, [this](ImportOptions& options, const BatchFile& file) {
    options.scale = form_.chkScale.Checked() ? file.tradable_scale : 1;
  });
}

void ImportBoxes::Bind(std::function<void()>& event, Change change) {
  event = EventGuard(platform_.boxes)("Reading the file again", [this, change = std::move(change)] {
    if (!filling_ && surroundings_.open()) surroundings_.decide(change);
  });
}

void ImportBoxes::Load() {
  filling_ = true;
  FillLists();
  filling_ = false;
}

void ImportBoxes::FillLists() {
  FillZones(form_.cbxFromZone);
  FillZones(form_.cbxToZone);
  std::vector<ComboBox::Row> intervals = {{"as in the file", kAsInTheFile}};
  for (const int interval : kReplayIntervals) {
    intervals.push_back({IntervalName(interval), interval});
  }
  form_.cbxInterval.SetRows(std::move(intervals));
  form_.cbxDates.SetRows({{"as in the file", kAsInTheFile},
                          {"day/month/year", 1},
                          {"month/day/year", 2},
                          {"year/month/day", 3}});
  form_.cbxLong.SetRows({{"ask", 0}, {"keep the last bars", 1}, {"split by year", 2}});
}

void ImportBoxes::Show(const BatchFile& file, std::size_t selected) {
  const bool single = selected == 1 && file.understood.series.size() <= 1;
  filling_ = true;
  form_.fraBoxes.SetText(selected > 1 ? " Decide for " + Counted(selected, "file") + " "
                                      : " Decide ");
  Fill(file, single);
  Enable(file, single);
  filled_ = TypedTexts();
  filling_ = false;
}

void ImportBoxes::Fill(const BatchFile& file, bool single) {
  const ImportOptions& options = file.options;
  const std::vector<FoundSeries>& series = file.understood.series;
  const FoundSeries found = series.empty() ? FoundSeries() : series.front();
  form_.txtSymbol.SetText(single ? options.symbol.value_or(found.symbol) : "");
  form_.txtName.SetText(single ? options.name.value_or(found.name) : "");
  form_.txtFrom.SetText(DayText(options.from));
  form_.txtTo.SetText(DayText(options.to));
  form_.cbxFromZone.SetText(options.from_zone.value_or(""));
  form_.cbxToZone.SetText(options.to_zone.value_or(""));
  ChooseData(form_.cbxInterval, options.interval.value_or(kAsInTheFile));
  ChooseData(form_.cbxDates, options.date_order ? 1 + static_cast<int>(*options.date_order) : 0);
  ChooseData(form_.cbxLong, static_cast<int>(options.too_long));
  form_.chkAdjusted.SetChecked(options.prices == Prices::kAdjusted);
  form_.chkReplace.SetChecked(options.replace);
  form_.chkScale.SetChecked(options.scale > 1);
  form_.chkScale.SetText(ScaleText(file));
}

void ImportBoxes::Enable(const BatchFile& file, bool single) {
  const bool open = surroundings_.open() && file.options.remember != Remember::kNothing;
  for (Control* control : form_.Controls()) {
    if (control->Container() == &form_.fraBoxes) control->SetEnabled(open);
  }
  for (TextBox* box : {&form_.txtSymbol, &form_.txtName}) box->SetEnabled(open && single);
  form_.chkAdjusted.SetEnabled(open && HasAdjustedPrices(file.understood.format));
  form_.chkScale.SetEnabled(open && (file.tradable_scale > 1 || file.options.scale > 1));
}

ImportBoxes::BoxTexts ImportBoxes::TypedTexts() const {
  return {form_.txtSymbol.Text(), form_.txtName.Text(),     form_.txtFrom.Text(),
          form_.txtTo.Text(),     form_.cbxFromZone.Text(), form_.cbxToZone.Text()};
}

void ImportBoxes::TakeTypedTexts() {
  const BoxTexts typed = TypedTexts();
  if (filling_ || !surroundings_.open() || typed == filled_) return;
  for (const std::string& day : {typed.from, typed.to}) {
    if (!Given(day) || TypedDay(day)) continue;
    return surroundings_.refuse("\"" + day + "\" is not a day. Write it as 2024-12-31.");
  }
  const BoxTexts before = std::exchange(filled_, typed);
  surroundings_.decide([&](ImportOptions& options, const BatchFile&) {
    if (typed.symbol != before.symbol) options.symbol = Given(typed.symbol);
    if (typed.name != before.name) options.name = Given(typed.name);
    if (typed.from != before.from) options.from = TypedDay(typed.from);
    if (typed.to != before.to) options.to = TypedDay(typed.to);
    if (typed.from_zone != before.from_zone) options.from_zone = Given(typed.from_zone);
    if (typed.to_zone != before.to_zone) options.to_zone = Given(typed.to_zone);
  });
}

std::optional<std::int32_t> ImportBoxes::TypedDay(std::string_view text) const {
  return TypedDate(Trimmed(text), platform_.locale.ShortDatePattern());
}

}  // namespace velumar
