#include "shell/import_file_view.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <memory>

#include "base/dates.h"
#include "base/number_text.h"
#include "base/paths.h"
#include "shell/batch_texts.h"

namespace velumar {

namespace {

// The first and the last rows of a file, with a gap where it has more.
std::vector<SampleRow> ShownRows(const Understanding& understood) {
  std::vector<SampleRow> rows = understood.head;
  const std::int64_t shown = rows.empty() ? 0 : rows.back().line;
  std::vector<SampleRow> tail;
  std::ranges::copy_if(understood.tail, std::back_inserter(tail),
                       [shown](const SampleRow& row) { return row.line > shown; });
  if (!tail.empty() && !rows.empty() && tail.front().line > shown + 1) rows.push_back({});
  rows.insert(rows.end(), tail.begin(), tail.end());
  return rows;
}

// Line, text and bar, if the line was read as one.
std::string RowText(const SampleRow& row, std::size_t column, bool timed) {
  if (row.line == 0) return column == 1 ? "..." : "";
  if (row.bar.date == 0 && column > 1) return "";
  const Bar& bar = row.bar;
  const std::array prices = {bar.open, bar.high, bar.low, bar.close, bar.volume};
  switch (column) {
    case 0:
      return std::to_string(row.line);
    case 1:
      return row.text;
    case 2:
      return IsoDate(bar.date);
    case 3:
      return timed ? PatternText(bar.time, kTimePattern) : "";
    default:
      return WholePriceText(prices.at(column - 4));
  }
}

void ShowAnswers(FrmImport& form, const ImportQuestion& question, bool importing) {
  const auto& answers = question.answers;
  const bool few = answers.size() <= FrmImport::kFewAnswers;
  form.PlaceAnswers(answers.size());
  for (std::size_t i = 0; i < FrmImport::kMostAnswers; ++i) {
    const bool offered = i < answers.size();
    const std::string text = offered ? answers[i].text : "";
    const std::string result = offered ? answers[i].result : "";
    Button& button = *form.Answers().at(i);
    button.SetVisible(offered);
    button.SetEnabled(!importing);
    button.SetText(few ? text : text + " (" + result + ")");
    if (offered) button.SetToolTip(text + ": " + result);
    if (i >= FrmImport::kFewAnswers) continue;
    form.Results().at(i)->SetVisible(offered && few);
    form.Results().at(i)->SetText(result);
  }
}

}  // namespace

void ShowUnderstood(FrmImport& form, const ImportBatch& batch, std::size_t row, bool importing) {
  const BatchFile& file = batch.At(row);
  const bool asks = file.state == FileState::kAsks;
  const auto& questions = file.understood.questions;
  const ImportQuestion question = asks ? questions.front() : ImportQuestion();
  const std::string name = PathText(file.path.filename());
  const std::string number =
      questions.size() > 1 ? " 1 of " + std::to_string(questions.size()) : "";
  form.fraFile.SetText(asks ? " Question" + number + " about " + name + " " : " " + name + " ");
  form.lstUnderstood.SetVisible(!asks);
  form.lstUnderstood.SetLines(UnderstoodLines(batch, row));
  form.lblQuestion.SetVisible(asks);
  form.lblQuestion.SetText(question.text);
  ShowAnswers(form, question, importing);
  form.lblResult1.SetVisible(asks && question.answers.size() <= FrmImport::kFewAnswers);
  if (question.answers.empty()) form.lblResult1.SetText("Decide it in a box below.");
  const std::size_t same = asks ? batch.WithSameQuestion(row) : 0;
  form.chkAll.SetVisible(!question.answers.empty() &&
                         (same > 1 || batch.Count(FileState::kWaiting) > 0));
  form.chkAll.SetText("For all " + (same > 1 ? std::to_string(same) + " " : "") +
                      "files with this question");
}

void ShowLines(FrmImport& form, const Understanding& understood) {
  const auto rows = std::make_shared<const std::vector<SampleRow>>(ShownRows(understood));
  const bool timed =
      std::ranges::any_of(*rows, [](const SampleRow& row) { return row.bar.time != 0; });
  form.lstRows.SetContent({rows->size(),
                           [rows, timed](std::size_t row, std::size_t column) {
                             return RowText(rows->at(row), column, timed);
                           },
                           [rows](std::size_t row) { return rows->at(row).text; },
                           {}});
}

}  // namespace velumar
