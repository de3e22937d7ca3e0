#include "shell/import_batch.h"

#include <algorithm>
#include <system_error>

#include "base/dates.h"
#include "base/number_text.h"
#include "base/paths.h"
#include "import/column_names.h"
#include "marketdata/interval.h"

namespace velumar {

namespace {

constexpr std::string_view kNotAPriceFile =
    "not a file whose name ends in .csv, .txt, .tsv, .prn, .zip or .gz";

bool IsFolder(const std::filesystem::path& path) {
  std::error_code unreadable;
  return std::filesystem::is_directory(path, unreadable);
}

// None if the folder can't be read.
std::vector<std::filesystem::path> FilesOfFolder(const std::filesystem::path& folder) {
  try {
    return PriceFilesIn({folder});
  } catch (const ImportError&) {
    return {};
  }
}

const ImportQuestion& FirstQuestion(const BatchFile& file) {
  return file.understood.questions.front();
}

// The first word of the option that decides a question. The others depend on the file.
std::string KindOf(const ImportQuestion& question) {
  return question.option.substr(0, question.option.find(' '));
}

bool SameQuestion(const BatchFile& a, const BatchFile& b) {
  return a.state == FileState::kAsks && b.state == FileState::kAsks &&
         KindOf(FirstQuestion(a)) == KindOf(FirstQuestion(b));
}

// The answer of that text to the first question of a file; null if there is none.
const ImportQuestion::Answer* AnswerOf(const BatchFile& file, const std::string& text) {
  const auto& answers = FirstQuestion(file).answers;
  const auto found = std::ranges::find(answers, text, &ImportQuestion::Answer::text);
  return found == answers.end() ? nullptr : &*found;
}

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
      {"--from and --to", "\"Days\""}};
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

std::string IntervalsText(const std::vector<const FoundSeries*>& series) {
  const int first = series.front()->interval;
  const bool same = std::ranges::all_of(
      series, [first](const FoundSeries* one) { return one->interval == first; });
  if (!same) return "several";
  return first == 0 ? "" : first == kDaily ? "daily" : std::to_string(first) + " min";
}

std::int32_t FirstDay(const std::vector<const FoundSeries*>& series) {
  return (*std::ranges::min_element(series, {}, [](const auto* one) { return one->first.date; }))
      ->first.date;
}

std::int32_t LastDay(const std::vector<const FoundSeries*>& series) {
  return (*std::ranges::max_element(series, {}, [](const auto* one) { return one->last.date; }))
      ->last.date;
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
    case ImportBatch::kSymbol:
      return SymbolsText(series);
    case ImportBatch::kInterval:
      return IntervalsText(series);
    case ImportBatch::kFirstDay:
      return IsoDate(FirstDay(series));
    case ImportBatch::kLastDay:
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

// What became of a file, and then what was remarkable about it.
std::vector<std::string> RemarksOf(const BatchFile& file) {
  std::vector<std::string> remarks = RemarksOf(file.understood);
  const auto first = [&remarks](const std::string& remark) {
    remarks.insert(remarks.begin(), remark);
  };
  if (file.state == FileState::kNotRead) first("not read");
  if (file.state == FileState::kAsks) first("question: " + FirstQuestion(file).text);
  if (file.state == FileState::kRefused) first("cannot be imported: " + file.understood.refusal);
  if (file.state == FileState::kFailed) first("failed: " + file.failure);
  if (file.state == FileState::kImported) {
    remarks = file.report.remarks;
    first(ReportText(file.report));
  }
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

// Lines for a list of bars that were stored, as people count them.
void AppendCount(std::string& text, std::int64_t count, std::string_view what) {
  if (count == 0) return;
  text += (text.empty() ? "" : ", ") + GroupedNumber(std::to_string(count)) + std::string(what);
}

}  // namespace

std::string Counted(std::size_t count, std::string_view what) {
  return std::to_string(count) + " " + std::string(what) + (count == 1 ? "" : "s");
}

bool HoldsPrices(const std::filesystem::path& path) {
  return IsFolder(path) ? !FilesOfFolder(path).empty() : IsPriceFile(path);
}

void ImportBatch::Add(std::vector<std::filesystem::path> paths) {
  std::ranges::sort(paths);
  for (const auto& path : paths) {
    if (!IsFolder(path) && IsPriceFile(path)) AddFile(path, Remember::kFile);
  }
  for (const auto& path : paths) {
    if (!IsFolder(path)) continue;
    for (const auto& file : FilesOfFolder(path)) AddFile(file, Remember::kFolder);
  }
  for (const auto& path : paths) {
    if (!HoldsPrices(path)) AddFile(path, Remember::kNothing);
  }
}

void ImportBatch::AddFile(const std::filesystem::path& path, Remember remember) {
  const auto listed = std::ranges::find(files_, path, &BatchFile::path);
  if (listed != files_.end()) {
    return Decide(static_cast<std::size_t>(listed - files_.begin()),
                  ImportOptions(listed->options));
  }
  BatchFile& added = files_.emplace_back();
  added.path = path;
  added.options.remember = remember;
  if (remember != Remember::kNothing) return;
  added.state = FileState::kRefused;
  added.understood.refusal = kNotAPriceFile;
}

std::size_t ImportBatch::Count(FileState state) const {
  return static_cast<std::size_t>(std::ranges::count(files_, state, &BatchFile::state));
}

std::vector<std::size_t> ImportBatch::In(FileState state) const {
  std::vector<std::size_t> found;
  for (std::size_t i = 0; i < files_.size(); ++i) {
    if (files_[i].state == state) found.push_back(i);
  }
  return found;
}

std::optional<std::size_t> ImportBatch::NextWaiting(std::size_t preferred) const {
  if (preferred < Size() && At(preferred).state == FileState::kWaiting) return preferred;
  const auto next = std::ranges::find(files_, FileState::kWaiting, &BatchFile::state);
  if (next == files_.end()) return std::nullopt;
  return static_cast<std::size_t>(next - files_.begin());
}

void ImportBatch::StopWaiting() {
  for (BatchFile& file : files_) {
    if (file.state == FileState::kWaiting) file.state = FileState::kNotRead;
  }
}

void ImportBatch::Decide(std::size_t file, ImportOptions options) {
  BatchFile& decided = files_.at(file);
  if (decided.options.remember == Remember::kNothing) return;
  decided.options = std::move(options);
  decided.state = FileState::kWaiting;
}

void ImportBatch::Answer(std::size_t file, std::size_t answer, bool for_all) {
  const BatchFile asked = files_.at(file);
  const std::string kind = KindOf(FirstQuestion(asked));
  const std::string text = FirstQuestion(asked).answers.at(answer).text;
  if (for_all) answers_.emplace_back(kind, text);
  for (std::size_t i = 0; i < files_.size(); ++i) {
    if (i != file && !(for_all && SameQuestion(files_[i], asked))) continue;
    if (const ImportQuestion::Answer* chosen = AnswerOf(files_[i], text)) {
      files_[i].answered.push_back(kind);
      Decide(i, ImportOptions(chosen->options));
    }
  }
}

std::size_t ImportBatch::WithSameQuestion(std::size_t file) const {
  return static_cast<std::size_t>(std::ranges::count_if(
      files_, [&](const BatchFile& other) { return SameQuestion(other, At(file)); }));
}

void ImportBatch::Take(std::size_t file, Understanding understood) {
  BatchFile& read = files_.at(file);
  read.understood = std::move(understood);
  const int scale = read.understood.suggested_scale;
  if (scale > 1 && read.tradable_scale == 1) {
    read.tradable_scale = scale;
    if (read.options.scale == 1) {
      read.options.scale = scale;
      return;
    }
  }
  if (!read.understood.refusal.empty()) {
    read.state = FileState::kRefused;
  } else if (read.understood.questions.empty()) {
    read.state = FileState::kReady;
  } else {
    read.state = FileState::kAsks;
    if (AnswerByItself(read)) read.state = FileState::kWaiting;
  }
}

bool ImportBatch::AnswerByItself(BatchFile& file) {
  const std::string kind = KindOf(FirstQuestion(file));
  if (std::ranges::count(file.answered, kind) > 0) return false;
  for (auto known = answers_.rbegin(); known != answers_.rend(); ++known) {
    if (known->first != kind) continue;
    const ImportQuestion::Answer* answer = AnswerOf(file, known->second);
    if (answer == nullptr) continue;
    file.answered.push_back(kind);
    file.options = ImportOptions(answer->options);
    return true;
  }
  return false;
}

// A file none of whose series could be stored has failed.
void ImportBatch::TakeReport(std::size_t file, ImportReport report) {
  BatchFile& imported = files_.at(file);
  const bool stored = std::ranges::any_of(
      report.series, [](const ImportedSeries& series) { return series.error.empty(); });
  imported.report = std::move(report);
  imported.state = stored ? FileState::kImported : FileState::kFailed;
  if (!stored) imported.failure = ReportText(imported.report);
}

void ImportBatch::TakeFailure(std::size_t file, std::string why) {
  files_.at(file).state = FileState::kFailed;
  files_.at(file).failure = std::move(why);
}

std::string ImportBatch::Text(std::size_t file, std::size_t column) const {
  const BatchFile& shown = At(file);
  if (column == kFile) return PathText(shown.path.filename());
  if (column == kRemarks) return Joined(RemarksOf(shown));
  return SeriesText(shown.understood, column);
}

std::string ImportBatch::Tip(std::size_t file) const {
  std::string tip = PathText(At(file).path);
  const std::string symbols = SeriesText(At(file).understood, kSymbol);
  if (!symbols.empty()) tip += "\n" + symbols;
  for (const std::string& remark : RemarksOf(At(file))) tip += "\n" + remark;
  return tip;
}

Colour ImportBatch::Ink(std::size_t file) const {
  switch (At(file).state) {
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

std::vector<std::string> UnderstoodLines(const BatchFile& file) {
  std::vector<std::string> lines = RemarksOf(file);
  const FileFormat& format = file.understood.format;
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
  AppendCount(text, sum.added, sum.added == 1 ? " new bar" : " new bars");
  AppendCount(text, sum.changed, " changed");
  AppendCount(text, sum.kept, " missing in the file kept");
  if (text.empty() && errors.empty()) text = "nothing new";
  AppendSentence(text, errors);
  return text;
}

}  // namespace velumar
