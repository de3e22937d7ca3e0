#include "shell/progress_tab.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <utility>

#include "base/number_text.h"
#include "base/text.h"
#include "progress/coach_report.h"
#include "progress/pictures.h"
#include "progress/played_ledger.h"
#include "progress/trade_export.h"
#include "session/played_trades.h"
#include "shell/event_guard.h"

namespace velumar {

namespace {

// Ends a computation that nobody waits for any more.
struct Superseded {};

}  // namespace

ProgressTab::ProgressTab(Desktop& desktop, Platform& platform, LedgerConnection& ledger,
                         IndexCache& cache)
    : desktop_(desktop),
      platform_(platform),
      ledger_(ledger),
      cache_(cache),
      filters_(Controls(), platform) {
  const EventGuard guarded(platform_.boxes);
  ProgressControls& controls = Controls();
  filters_.Connect(guarded("Computing the figures", [this] { Recompute(); }));
  controls.cbxPicture.on_click = guarded("Drawing the picture", [this] { ShowPicture(); });
  controls.cmdReport.on_click = guarded("Saving the report", [this] { SaveReport(); });
  controls.cmdSavePicture.on_click = guarded("Saving the picture", [this] { SavePicture(); });
  controls.lstFigures.on_copy =
      guarded("Copying", [this] { platform_.clipboard.SetText(Controls().lstFigures.CopyText()); });
}

void ProgressTab::SetUp() {
  scopes_.clear();
  played_.reset();
  own_ = {};
  other_.reset();
  complete_ = false;
}

void ProgressTab::Leave() {
  ++computing_;
  SetUp();
}

void ProgressTab::SetVisible(bool visible) {
  for (Control* const control : Controls().All()) control->SetVisible(visible);
  if (!visible) ++computing_;
}

void ProgressTab::Show() {
  if (!played_ && !Read()) return;
  Recompute();
}

std::string ProgressTab::TradesAsCsv() const {
  return TradesCsv(scopes_, LedgerEntryPlans(ledger_), own_.trades);
}

bool ProgressTab::Read() {
  const unsigned reading = ++computing_;
  std::vector<PlayedScope> scopes =
      PlayedScopes(ledger_, cache_, [&](std::size_t done, std::size_t all) {
        ShowFindings({"Reading the bars of " + std::to_string(done) + " of " + std::to_string(all) +
                      " sessions ..."});
        platform_.events.ProcessPending();
        return reading == computing_;
      });
  if (reading != computing_) return false;
  scopes_ = std::move(scopes);
  played_ = std::make_shared<const Played>(PlayedOf(scopes_, LedgerEntryPlans(ledger_)));
  ListChoices();
  return true;
}

void ProgressTab::ListChoices() {
  filters_.List(*played_);
  std::vector<ComboBox::Row> pictures;
  pictures.reserve(kProgressPictures.size());
  for (const std::string_view name : kProgressPictures) pictures.push_back({std::string(name)});
  Controls().cbxPicture.SetRows(std::move(pictures));
  Controls().cbxPicture.SetIndex(0);
}

void ProgressTab::Recompute() {
  if (!played_) return;
  const unsigned computing = ++computing_;
  const TradeFilter filter = filters_.Filter();
  const auto values_of = [this](Selection trades) {
    ProgressSummary summary;
    summary.trades = std::move(trades);
    summary.curve = ChainEquity(*played_, summary.trades);
    RoundOptions values_only;
    values_only.count = 0;
    summary.figures = ComputeFigures(*played_, summary.trades, summary.curve, values_only);
    return summary;
  };
  complete_ = false;
  own_ = values_of(Select(*played_, filter));
  ProgressFilterBoxes::Compared compared = filters_.Compare(*played_, filter, own_.trades);
  other_ = compared.trades ? std::optional(values_of(std::move(*compared.trades))) : std::nullopt;
  hint_ = std::move(compared.hint);
  Controls().Arrange(other_.has_value());
  ShowFigures();
  ShowPicture();
  ShowFindings({"Computing ..."});
  try {
    ComputeRounds(computing);
  } catch (const Superseded&) {
    // The newer computation shows its own.
  }
}

void ProgressTab::ComputeRounds(unsigned computing) {
  // The trades may be read again while events run.
  const std::shared_ptr<const Played> played = played_;
  const ProgressSummary own = own_;
  const RoundOptions resampling = Rounds(computing, "Resampling for the intervals");
  own_.figures = ComputeFigures(*played, own.trades, own.curve, resampling);
  if (other_) {
    const ProgressSummary other = *other_;
    other_->figures = ComputeFigures(*played, other.trades, other.curve, resampling);
  }
  ShowFigures();
  std::vector<TradeGroup> groups = ComparedGroups(*played, own.trades);
  if (other_) groups.insert(groups.begin() + 1, {"Compared", other_->trades});
  own_.skills =
      CompareWithRandomTraders(*played, groups, Rounds(computing, "Comparing with random traders"));
  ShowPicture();
  own_.risk =
      ComputeRiskAhead(*played, own.trades, Rounds(computing, "Resampling the next trades"));
  complete_ = true;
  ShowFindings(SummaryFindings(own_));
}

RoundOptions ProgressTab::Rounds(unsigned computing, std::string what) {
  static constexpr std::chrono::milliseconds kSoon(300);
  constexpr int kPercent = 100;
  RoundOptions options;
  options.progress = [this, computing, what = std::move(what), began = platform_.events.Now(),
                      shown = -1](double share) mutable {
    const int percent = static_cast<int>(share * kPercent);
    if (percent != shown && platform_.events.Now() - began > kSoon) {
      shown = percent;
      ShowFindings({what + " ... " + std::to_string(percent) + " %"});
    }
    platform_.events.ProcessPending();
    if (computing != computing_) throw Superseded();
  };
  return options;
}

void ProgressTab::SaveReport() {
  const auto file = platform_.files.ChooseFile(
      {{"Report (*.pdf)", "pdf"}, {"Web page (*.html)", "html"}}, "Practice report");
  if (!file || file->empty()) return;
  if (!complete_) Recompute();
  const std::shared_ptr<const Played> played = played_;
  ProgressSummary summary = own_;
  try {
    if (!complete_) throw Superseded();
    ShowFindings({"Writing the report ..."});
    const RoundOptions options = Rounds(computing_, "Writing the report");
    options.progress(0);
    if (other_) {
      const std::vector<TradeGroup> groups = ComparedGroups(*played, summary.trades);
      summary.skills = CompareWithRandomTraders(*played, groups, options);
    }
  } catch (const Superseded&) {
    throw std::runtime_error(
        "Other trades were chosen while the report was made. Nothing was saved.");
  }
  ShowFindings(SummaryFindings(own_));  // visible once events run again
  platform_.printers.SaveCoachReport(
      MakeCoachReport(ledger_, {*played, scopes_, filters_.Filter()}, summary), *file);
  platform_.boxes.Show("The report was saved as " + *file + ".", BoxIcon::kInformation);
}

void ProgressTab::ShowFigures() {
  Table& table = Controls().lstFigures;
  const auto own = std::make_shared<const std::vector<ProgressFigure>>(own_.figures.figures);
  const auto other =
      other_ ? std::make_shared<const std::vector<ProgressFigure>>(other_->figures.figures)
             : nullptr;
  std::vector<Table::Column> columns{{"Figure"}, {"Value", true}, {"95 % interval", true}};
  if (other) {
    columns.push_back({"Compared", true});
    columns.push_back({"95 % interval", true});
  } else {
    columns.push_back({"n", true});
  }
  table.SetColumns(std::move(columns));
  table.SetContent({own->size(),
                    [own, other](std::size_t row, std::size_t column) -> std::string {
                      const ProgressFigure& figure = own->at(row);
                      if (column == 0) return std::string(figure.name);
                      if (column == 1) return figure.ValueText();
                      if (column == 2) return figure.IntervalText();
                      if (!other) return GroupedNumber(std::to_string(figure.n));
                      return column == 3 ? other->at(row).ValueText()
                                         : other->at(row).IntervalText();
                    },
                    [own](std::size_t row) { return std::string(own->at(row).formula); }});
}

void ProgressTab::ShowPicture() {
  if (!played_) return;
  const auto kind = static_cast<ProgressPicture>(std::max(Controls().cbxPicture.Index(), 0));
  const auto show = [&](Plot& plot, const ProgressSummary& group, const SkillOrLuck* skill) {
    plot.SetPicture(std::make_shared<const NumberPicture>(
        PictureOf(kind, *played_, group.trades, group.curve, skill)));
  };
  const auto skill_of = [this](std::size_t group) {
    return group < own_.skills.size() ? &own_.skills[group] : nullptr;
  };
  show(Controls().pltProgress, own_, skill_of(0));
  if (other_) show(Controls().pltOther, *other_, skill_of(1));
}

void ProgressTab::ShowFindings(std::vector<std::string> lines) {
  if (!hint_.empty()) lines.insert(lines.begin(), hint_);
  Controls().lstFindings.SetLines(std::move(lines));
}

void ProgressTab::SavePicture() {
  const Plot& plot = Controls().pltProgress;
  std::vector<FileForm> forms;
  for (const std::string& ending : plot.endings) {
    if (ending != "bmp") forms.push_back({UpperCased(ending) + " (*." + ending + ")", ending});
  }
  const auto file = platform_.files.ChooseFile(forms, "Progress");
  if (file && !file->empty()) plot.SaveTo(*file);
}

}  // namespace velumar
