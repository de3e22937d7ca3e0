#include "shell/batch_texts.h"

#include <algorithm>
#include <set>
#include <utility>

#include "base/dates.h"
#include "base/number_text.h"
#include "base/paths.h"
#include "import/column_names.h"
#include "import/wording.h"
#include "marketdata/interval.h"

namespace velumar {

namespace {

void AppendSentence(std::string& text, std::string_view sentence) {
  if (!text.empty() && !sentence.empty()) text += "; ";
  text += sentence;
}

std::string Joined(const std::vector<std::string>& sentences) {
  std::string text;
  for (const std::string& sentence : sentences) AppendSentence(text, sentence);
  return text;
}

// Messages name the options of the command line; in the window they are boxes.
std::string InWindowWords(std::string text) {
  static constexpr std::pair<std::string_view, std::string_view> kBoxes[] = {
      {"--symbol", "\"Symbol\""},      {"--interval", "\"Interval\""},
      {"--from-zone", "\"Times in\""}, {"--replace", "\"Start over\""},
      {"--last", "\"Too long\""},      {"--scale", "\"Multiply prices\""},
      {"--from and --to", "\"Days\""}, {"--name", "\"Name\""}};
  for (const auto& [option, box] : kBoxes) {
    if (const auto at = text.find(option); at != std::string::npos) {
      text.replace(at, option.size(), box);
    }
  }
  return text;
}

// The series that can be imported; all of them if none can.
std::vector<const FoundSeries*> UsableSeries(const Understanding& understood) {
  std::vector<const FoundSeries*> usable;
  for (const FoundSeries& series : understood.series) {
    if (series.refusal.empty()) usable.push_back(&series);
  }
  if (!usable.empty()) return usable;
  for (const FoundSeries& series : understood.series) usable.push_back(&series);
  return usable;
}

std::string SymbolsText(const std::vector<const FoundSeries*>& series) {
  std::string text = series.size() > 1 ? std::to_string(series.size()) + ": " : "";
  for (const FoundSeries* one : series) {
    text += (one == series.front() ? "" : ", ") + one->symbol;
  }
  return text;
}

std::string ShortInterval(int interval) {
  return interval == kDaily ? "daily" : std::to_string(interval) + " min";
}

std::string IntervalsText(const std::vector<const FoundSeries*>& series) {
  const int first = series.front()->interval;
  const bool same = std::ranges::all_of(
      series, [first](const FoundSeries* one) { return one->interval == first; });
  if (!same) return "several";
  return first == 0 ? "" : ShortInterval(first);
}

std::int32_t FirstDay(const std::vector<const FoundSeries*>& series) {
  return std::ranges::min(series, {}, [](const auto* one) { return one->first.date; })->first.date;
}

std::int32_t LastDay(const std::vector<const FoundSeries*>& series) {
  return std::ranges::max(series, {}, [](const auto* one) { return one->last.date; })->last.date;
}

std::string BarsText(const std::vector<const FoundSeries*>& series) {
  std::int64_t bars = 0;
  for (const FoundSeries* one : series) bars += one->bars;
  return GroupedNumber(std::to_string(bars));
}

std::string SeriesText(const Understanding& understood, std::size_t column) {
  const std::vector<const FoundSeries*> series = UsableSeries(understood);
  if (series.empty()) return "";
  switch (column) {
    case BatchColumn::kSymbol:
      return SymbolsText(series);
    case BatchColumn::kInterval:
      return IntervalsText(series);
    case BatchColumn::kFirstDay:
      return IsoDate(FirstDay(series));
    case BatchColumn::kLastDay:
      return IsoDate(LastDay(series));
    default:
      return BarsText(series);
  }
}

std::vector<std::string> RemarksOf(const Understanding& understood) {
  std::vector<std::string> remarks = understood.remarks;
  for (const FoundSeries& series : understood.series) {
    if (!series.refusal.empty()) remarks.push_back(series.symbol + ": " + series.refusal);
  }
  return remarks;
}

// "b.csv", "b.csv, c.csv and 3 others".
std::string NamesText(const ImportBatch& batch, const std::vector<std::size_t>& files) {
  constexpr std::size_t kMostNames = 2;
  std::string text;
  for (std::size_t i = 0; i < files.size() && i < kMostNames; ++i) {
    text += (i == 0 ? "" : ", ") + PathText(batch.At(files[i]).path.filename());
  }
  if (files.size() > kMostNames) {
    text += " and " + Counted(files.size() - kMostNames, "other");
  }
  return text;
}

// What happens to the series that other files of the batch write, too; empty if there are none.
std::string SharedText(const ImportBatch& batch, std::size_t file) {
  const std::vector<SharedSeries> shared = batch.Shared(file);
  if (shared.empty()) return "";
  std::set<std::size_t> others;
  for (const SharedSeries& series : shared) {
    others.insert(series.others.begin(), series.others.end());
  }
  const bool replaces =
      batch.At(file).options.replace || std::ranges::any_of(others, [&batch](std::size_t other) {
        return batch.At(other).options.replace;
      });
  const SharedSeries& first = shared.front();
  return (shared.size() == 1 ? first.symbol + " " + ShortInterval(first.interval) + " is"
                             : std::to_string(shared.size()) + " series are") +
         " also in " + NamesText(batch, {others.begin(), others.end()}) +
         (replaces ? "; with \"Start over\" only the bars of the file imported last remain"
                   : "; where times are equal, the file imported last counts");
}

// What became of a file, and then what was remarkable about it.
std::vector<std::string> RemarksOf(const ImportBatch& batch, std::size_t row) {
  const BatchFile& file = batch.At(row);
  std::vector<std::string> remarks = RemarksOf(file.understood);
  const auto first = [&remarks](const std::string& remark) {
    remarks.insert(remarks.begin(), remark);
  };
  if (file.state == FileState::kNotRead) first("not read");
  if (file.state == FileState::kAsks) first("question: " + file.understood.questions.front().text);
  if (file.state == FileState::kRefused) first("cannot be imported: " + file.understood.refusal);
  if (file.state == FileState::kFailed) first("failed: " + file.failure);
  if (file.state == FileState::kImported) {
    remarks = file.report.remarks;
    first(ReportText(file.report));
  }
  const std::string shared = SharedText(batch, row);
  if (!shared.empty()) remarks.push_back(shared);
  for (std::string& remark : remarks) remark = InWindowWords(std::move(remark));
  return remarks;
}

std::string SeparatorName(char separator) {
  switch (separator) {
    case ',':
      return "commas";
    case ';':
      return "semicolons";
    case '\t':
      return "tabs";
    case ' ':
      return "blanks";
    default:
      return std::string("\"") + separator + "\"";
  }
}

std::string FormatText(const FileFormat& format) {
  std::string text = "Separated by " + SeparatorName(format.separator) + ", " + format.encoding;
  if (format.decimal_comma) text += ", decimal comma";
  if (!format.container.empty()) text += ", " + format.container;
  text += format.header_line == 0 ? ", no header" : "";
  return text;
}

void AppendCount(std::string& text, std::int64_t count, std::string_view what) {
  if (count == 0) return;
  text += (text.empty() ? "" : ", ") + GroupedNumber(std::to_string(count)) + std::string(what);
}

}  // namespace

std::string BatchCell(const ImportBatch& batch, std::size_t file, std::size_t column) {
  const BatchFile& shown = batch.At(file);
  if (column == BatchColumn::kFile) return PathText(shown.path.filename());
  if (column == BatchColumn::kRemarks) return Joined(RemarksOf(batch, file));
  return SeriesText(shown.understood, column);
}

std::string BatchTip(const ImportBatch& batch, std::size_t file) {
  std::string tip = PathText(batch.At(file).path);
  const std::string symbols = SeriesText(batch.At(file).understood, BatchColumn::kSymbol);
  if (!symbols.empty()) tip += "\n" + symbols;
  for (const std::string& remark : RemarksOf(batch, file)) tip += "\n" + remark;
  return tip;
}

Colour BatchInk(FileState state) {
  switch (state) {
    case FileState::kAsks:
      return kBlue;
    case FileState::kRefused:
    case FileState::kFailed:
      return kRed;
    case FileState::kImported:
      return kDarkGreen;
    default:
      return 0;
  }
}

std::vector<std::string> UnderstoodLines(const ImportBatch& batch, std::size_t file) {
  std::vector<std::string> lines = RemarksOf(batch, file);
  const FileFormat& format = batch.At(file).understood.format;
  if (format.columns.empty()) return lines;
  lines.push_back(FormatText(format));
  if (!format.dates.empty()) lines.push_back("Dates: " + format.dates);
  if (!format.zone.empty()) lines.push_back("Time zone in the file: " + format.zone);
  for (std::size_t i = 0; i < format.columns.size(); ++i) {
    const ColumnMeaning& column = format.columns[i];
    const std::string field(FieldName(column.field));
    lines.push_back(column.title.empty()
                        ? "Column " + std::to_string(i + 1) + ": " + field + ", " + column.reason
                        : column.title + ": " + field);
  }
  return lines;
}

std::string SummaryText(const ImportBatch& batch) {
  std::string text;
  const auto add = [&](FileState state, std::string_view one, std::string_view several) {
    const std::size_t count = batch.Count(state);
    if (count == 0) return;
    text += (text.empty() ? "" : " ") + Counted(count, "file") + " ";
    text += count == 1 ? one : several;
  };
  add(FileState::kReady, "can be imported.", "can be imported.");
  add(FileState::kAsks, "has a question.", "have a question.");
  add(FileState::kRefused, "cannot be imported.", "cannot be imported.");
  add(FileState::kNotRead, "was not read.", "were not read.");
  add(FileState::kImported, "was imported.", "were imported.");
  add(FileState::kFailed, "failed.", "failed.");
  return text;
}

std::string WholePriceText(float price) { return PatternText(price, "########0.#########"); }

std::string ReportText(const ImportReport& report) {
  ImportedSeries sum;
  std::string errors;
  for (const ImportedSeries& series : report.series) {
    if (!series.error.empty()) AppendSentence(errors, series.found.symbol + ": " + series.error);
    sum.added += series.added;
    sum.changed += series.changed;
    sum.kept += series.kept;
  }
  std::string text;
  if (sum.added > 0) text = Counted(sum.added, "new bar");
  AppendCount(text, sum.changed, " changed");
  AppendCount(text, sum.kept, " missing in the file kept");
  if (text.empty() && errors.empty()) text = "nothing new";
  AppendSentence(text, errors);
  return text;
}

}  // namespace velumar
