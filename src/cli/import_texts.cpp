#include "cli/import_texts.h"

#include "base/number_text.h"
#include "base/paths.h"
#include "cli/json_text.h"
#include "cli/text_table.h"
#include "import/column_names.h"
#include "marketdata/interval.h"

namespace velumar {

namespace {

using Json = nlohmann::ordered_json;

std::string Days(const FoundSeries& series) {
  return std::to_string(series.first.date) + " to " + std::to_string(series.last.date);
}

std::string Bars(std::int64_t count, const std::string& kind) {
  return std::to_string(count) + kind + (count == 1 ? " bar" : " bars");
}

std::string State(const Understanding& file, const FoundSeries& series) {
  if (!file.refusal.empty() || !series.refusal.empty()) return "refused";
  return file.questions.empty() ? "ready" : "question";
}

void AddRows(TextTable& table, const Understanding& file) {
  const std::string name = PathText(file.file.filename());
  if (file.series.empty()) {
    table.AddRow({name, "", "", "", "", "", State(file, {})});
  }
  for (const FoundSeries& series : file.series) {
    table.AddRow({name, series.symbol, series.interval == 0 ? "?" : IntervalText(series.interval),
                  std::to_string(series.first.date), std::to_string(series.last.date),
                  std::to_string(series.bars), State(file, series)});
  }
}

std::string Notes(const Understanding& file) {
  const std::string name = PathText(file.file) + ": ";
  std::string text;
  const bool several = file.series.size() > 1;
  if (!several && !file.refusal.empty()) text += name + file.refusal + "\n";
  for (const FoundSeries& series : file.series) {
    if (!several || series.refusal.empty()) continue;
    text += name + series.symbol + ": " + series.refusal + "\n";
  }
  for (const ImportQuestion& question : file.questions) {
    text += name + QuestionText(question) + "\n";
    for (const ImportQuestion::Answer& answer : question.answers) {
      text += "  " + answer.text + (answer.result.empty() ? "" : ": ") + answer.result + "\n";
    }
  }
  for (const std::string& remark : file.remarks) text += name + remark + "\n";
  if (!file.series.empty() && file.suggested_scale != 1) {
    text += name + ScaleAdvice(file.suggested_scale, file.series.front()) + "\n";
  }
  return text;
}

std::string Quoted(const std::string& text) { return "\"" + text + "\""; }

std::string SeparatorText(char separator) {
  if (separator == '\t') return "tabs";
  return separator == ' ' ? "blanks" : Quoted(std::string(1, separator));
}

Json BarJson(const Bar& bar) {
  return {{"date", bar.date},     {"time", bar.time},
          {"open", bar.open},     {"high", bar.high},
          {"low", bar.low},       {"close", bar.close},
          {"volume", bar.volume}, {"openinterest", bar.open_interest}};
}

Json FormatJson(const FileFormat& format) {
  Json columns = Json::array();
  for (const ColumnMeaning& column : format.columns) {
    columns.push_back(
        {{"title", column.title}, {"field", FieldName(column.field)}, {"reason", column.reason}});
  }
  return {{"container", format.container},
          {"encoding", format.encoding},
          {"separator", std::string(1, format.separator)},
          {"decimal_comma", format.decimal_comma},
          {"header_line", format.header_line},
          {"dates", format.dates},
          {"zone", format.zone},
          {"columns", std::move(columns)}};
}

Json SeriesJson(const FoundSeries& series) {
  return {{"symbol", series.symbol},
          {"name", series.name},
          {"interval", series.interval == 0 ? Json() : Json(series.interval)},
          {"bars", series.bars},
          {"first", BarJson(series.first)},
          {"last", BarJson(series.last)},
          {"refusal", series.refusal}};
}

Json QuestionJson(const ImportQuestion& question) {
  Json answers = Json::array();
  for (const ImportQuestion::Answer& answer : question.answers) {
    answers.push_back({{"text", answer.text}, {"result", answer.result}});
  }
  return {{"text", question.text}, {"option", question.option}, {"answers", std::move(answers)}};
}

Json FileJson(const Understanding& file) {
  Json series = Json::array();
  for (const FoundSeries& one : file.series) series.push_back(SeriesJson(one));
  Json questions = Json::array();
  for (const ImportQuestion& one : file.questions) questions.push_back(QuestionJson(one));
  return {{"file", PathText(file.file)}, {"format", FormatJson(file.format)},
          {"rows", file.counts.rows},    {"skipped", file.counts.skipped},
          {"series", std::move(series)}, {"questions", std::move(questions)},
          {"remarks", file.remarks},     {"suggested_scale", file.suggested_scale},
          {"refusal", file.refusal}};
}

}  // namespace

std::string UnderstandingText(const std::vector<Understanding>& files) {
  TextTable table({{"file"},
                   {"symbol"},
                   {"interval", TextTable::kRight},
                   {"first", TextTable::kRight},
                   {"last", TextTable::kRight},
                   {"bars", TextTable::kRight},
                   {"state"}});
  for (const Understanding& file : files) AddRows(table, file);
  std::string text = table.Text();
  for (const Understanding& file : files) text += Notes(file);
  return text;
}

std::string ExplanationText(const Understanding& file) {
  const FileFormat& format = file.format;
  std::string text = PathText(file.file) + ": ";
  if (!format.container.empty()) text += format.container + ", ";
  text += format.encoding + ", columns separated by " + SeparatorText(format.separator) +
          ", decimal " + (format.decimal_comma ? "comma" : "point") + ", dates " + format.dates +
          (format.header_line == 0 ? ", no header"
                                   : ", header on line " + std::to_string(format.header_line)) +
          "\n";
  for (std::size_t i = 0; i < format.columns.size(); ++i) {
    const ColumnMeaning& column = format.columns[i];
    text += "  column " + std::to_string(i + 1);
    if (!column.title.empty()) text += " " + Quoted(column.title);
    text += ": " + std::string(FieldName(column.field));
    if (!column.reason.empty()) text += " (" + column.reason + ")";
    text += "\n";
  }
  return text;
}

std::string UnderstandingJson(const std::vector<Understanding>& files) {
  Json list = Json::array();
  for (const Understanding& file : files) list.push_back(FileJson(file));
  return JsonText({{"files", std::move(list)}}, kIndented);
}

std::string ImportedText(const ImportedSeries& series) {
  const FoundSeries& found = series.found;
  std::string text = found.symbol + " " + IntervalText(found.interval) + ": ";
  if (series.replaced) return text + Bars(found.bars, "") + ", " + Days(found);
  text += series.added == 0 && series.changed == 0 ? "nothing new" : Bars(series.added, " new");
  if (series.changed > 0) text += ", " + std::to_string(series.changed) + " changed";
  if (series.kept > 0) text += ", " + std::to_string(series.kept) + " missing in the file kept";
  return text + ", " + Days(found);
}

std::string ScaleAdvice(int suggested_scale, const FoundSeries& series) {
  if (suggested_scale == 1) return "";
  const float price = series.last.close;
  const auto scaled = static_cast<float>(double{price} * suggested_scale);
  return "the prices have more than two decimals, but orders are filled in hundredths; --scale " +
         std::to_string(suggested_scale) + " multiplies them (" + ReadableNumberText(price) +
         " becomes " + ReadableNumberText(scaled) + ")";
}

}  // namespace velumar
