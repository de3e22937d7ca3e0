#include "progress/coach_report.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "base/dates.h"
#include "base/number_text.h"
#include "base/paths.h"
#include "progress/coach_cards.h"
#include "progress/coach_terms.h"
#include "progress/coach_trades.h"
#include "progress/filter_text.h"
#include "progress/pictures.h"
#include "results/figure_texts.h"

namespace velumar {

namespace {

constexpr std::size_t kMostNames = 8;
constexpr std::size_t kMostSetups = 30;

std::string Counted(std::size_t count) { return GroupedNumber(std::to_string(count)); }

// Writes what the selection is.
class Facts {
 public:
  Facts(const LedgerConnection& connection, const CoachSource& source, const Selection& selection)
      : connection_(connection),
        played_(source.played),
        filter_(source.filter),
        selection_(selection),
        sessions_(BySession(played_, selection)) {}

  std::vector<std::pair<std::string, std::string>> Lines() const {
    std::vector<std::pair<std::string, std::string>> lines;
    const auto add = [&lines](const char* name, std::string text) {
      if (!text.empty()) lines.emplace_back(name, std::move(text));
    };
    add("Selection", FilterLine());
    add("Trades", Counted(selection_.size()));
    add("Look-ahead", LookAheadLine());
    add("Sessions", SessionsLine());
    add("Played", PlayedLine());
    add("Days on the charts", MarketLine());
    add("Securities", SecuritiesLine());
    add("Bars", IntervalsLine());
    add("Money at the start", StartLine());
    return lines;
  }

  // "from 05/01/2026 to 27/11/2026"
  std::string PlayedLine() const {
    std::string first;
    std::string last;
    for (const SelectedSession& selected : sessions_) {
      const std::string day(SessionOf(selected).PlayedDay());
      if (day.empty()) continue;
      if (first.empty() || day < first) first = day;
      if (day > last) last = day;
    }
    return SpanOf(first, last);
  }

 private:
  const PlayedSession& SessionOf(const SelectedSession& selected) const {
    return played_.SessionAt(selected.session);
  }

  std::string SpanOf(const std::string& first, const std::string& last) const {
    if (first.empty()) return {};
    if (first == last) return "on " + connection_.DateText(first);
    return "from " + connection_.DateText(first) + " to " + connection_.DateText(last);
  }

  std::string FilterLine() const {
    const auto texts =
        FilterTexts(filter_, played_, [this](auto day) { return connection_.DateText(day); });
    return texts.empty() ? "all trades" : ListedNames(texts, texts.size());
  }

  std::string LookAheadLine() const {
    TradeFilter other = filter_;
    other.look_ahead = true;
    const Selection all = Select(played_, other);
    const auto count = std::ranges::count_if(
        all, [this](std::int32_t place) { return played_.TradeAt(place).look_ahead; });
    if (count == 0) return "no trade knew later bars";
    const std::string trades =
        Counted(static_cast<std::size_t>(count)) + (count == 1 ? " trade that" : " trades that");
    return (filter_.look_ahead ? "included: " : "left out: ") + trades + " knew later bars";
  }

  std::string SessionsLine() const {
    const auto blind = std::ranges::count_if(
        sessions_, [this](const SelectedSession& selected) { return SessionOf(selected).blind; });
    return Counted(sessions_.size()) + ", " +
           (blind == 0 ? "none" : Counted(static_cast<std::size_t>(blind))) + " of them blind";
  }

  // A blind session that is not revealed has made-up days.
  std::string MarketLine() const {
    std::int32_t first = 0;
    std::int32_t last = 0;
    for (const SelectedSession& selected : sessions_) {
      const PlayedSession& session = SessionOf(selected);
      if (session.blind || session.first_day == 0) continue;
      first = first == 0 ? session.first_day : std::min(first, session.first_day);
      last = std::max(last, session.last_day);
    }
    return first == 0 ? std::string() : SpanOf(IsoDate(first), IsoDate(last));
  }

  std::string SecuritiesLine() const {
    std::set<std::string> names;
    for (const SelectedSession& selected : sessions_) {
      names.insert(played_.symbols.at(static_cast<std::size_t>(SessionOf(selected).symbol)));
    }
    return ListedNames({names.begin(), names.end()}, kMostNames);
  }

  std::string IntervalsLine() const {
    std::set<std::int32_t> intervals;
    for (const SelectedSession& selected : sessions_) {
      intervals.insert(SessionOf(selected).interval);
    }
    std::vector<std::string> names;
    std::ranges::transform(intervals, std::back_inserter(names), IntervalLabel);
    return ListedNames(names, kMostNames);
  }

  std::string StartLine() const {
    if (sessions_.empty()) return {};
    return MoneyText(SessionOf(sessions_.front()).starting_money);
  }

  const LedgerConnection& connection_;
  const Played& played_;
  const TradeFilter& filter_;
  const Selection& selection_;
  std::vector<SelectedSession> sessions_;
};

CoachTable FiguresTable(const ProgressFigures& figures) {
  CoachTable table{
      .title = "Figures",
      .note = {},
      .columns = {{"Figure"}, {"Value", true}, {"95 % interval", true}, {"n", true}, {"Meaning"}},
      .rows = {}};
  for (const ProgressFigure& figure : figures.figures) {
    table.rows.push_back({std::string(figure.name), figure.ValueText(), figure.IntervalText(),
                          GroupedNumber(std::to_string(figure.n)), std::string(figure.meaning)});
  }
  return table;
}

// The sums of the trades of a setup.
struct SetupSums {
  std::size_t trades = 0;
  std::size_t wins = 0;
  std::size_t with_r = 0;
  double net = 0;
  double r = 0;

  void Add(const PlayedTrade& trade) {
    ++trades;
    wins += trade.Net() > 0 ? 1 : 0;
    net += trade.Net();
    if (const auto multiple = trade.R()) {
      ++with_r;
      r += *multiple;
    }
  }
  std::vector<std::string> Cells(const std::string& name, const std::string& skill) const {
    const auto per = [](double sum, std::size_t count) {
      return count == 0 ? std::nullopt : std::optional(sum / static_cast<double>(count));
    };
    return {name,
            Counted(trades),
            PercentText(per(static_cast<double>(wins), trades)),
            MoneyText(per(net, trades)),
            MoneyText(net),
            MoneyText(per(r, with_r)),
            with_r == 0 ? kNoFigure : MoneyText(r),
            skill};
  }
};

// How often random traders do as well, by the name of the setup.
std::map<std::string, std::string> SkillTexts(const std::vector<SkillOrLuck>& skills) {
  std::map<std::string, std::string> texts;
  for (std::size_t i = 1; i < skills.size(); ++i) {
    texts.emplace(skills[i].group,
                  skills[i].Enough() ? PercentText(skills[i].share) : std::string("too few"));
  }
  return texts;
}

CoachTable SetupsTable(const Played& played, const ProgressSummary& summary) {
  std::map<std::int32_t, SetupSums> sums;
  for (const std::int32_t place : summary.trades) {
    const PlayedTrade& trade = played.TradeAt(place);
    sums[trade.setup].Add(trade);
  }
  std::vector<std::pair<std::int32_t, SetupSums>> setups(sums.begin(), sums.end());
  std::ranges::stable_sort(setups, std::greater<>(),
                           [](const auto& setup) { return setup.second.trades; });
  CoachTable table{.title = "By setup",
                   .note = "Expectancy and net profit are after costs, R is before them.",
                   .columns = {{"Setup"},
                               {"Trades", true},
                               {"Won", true},
                               {"Expectancy", true},
                               {"Net profit", true},
                               {"Average R", true},
                               {"R in all", true},
                               {"Random traders as good", true}},
                   .rows = {}};
  const auto skills = SkillTexts(summary.skills);
  for (const auto& [setup, of_setup] : setups) {
    if (table.rows.size() == kMostSetups) break;
    const std::string name = setup == kAbsent ? "none" : played.SetupAt(setup);
    const auto skill = setup == kAbsent ? skills.end() : skills.find(name);
    table.rows.push_back(of_setup.Cells(name, skill == skills.end() ? kNoFigure : skill->second));
  }
  if (setups.size() > kMostSetups) {
    table.note += " Listed are the " + Counted(kMostSetups) + " setups with most trades of " +
                  Counted(setups.size()) + ".";
  }
  return table;
}

// Leaves one point in each cell of a fine grid, so that a hundred thousand trades look the same but
// don't fill the report.
void ThinPoints(NumberPicture::Series& points) {
  constexpr double kCells = 300;  // across the picture, and along it
  if (points.x.empty()) return;
  const auto [left, right] = std::ranges::minmax(points.x);
  const auto [bottom, top] = std::ranges::minmax(points.y);
  const auto cell = [](double value, double low, double high) {
    return high > low ? static_cast<int>((value - low) / (high - low) * kCells) : 0;
  };
  std::set<std::pair<int, int>> taken;
  NumberPicture::Series thinned{points.shape, points.tone, {}, {}};
  for (std::size_t i = 0; i < points.x.size(); ++i) {
    const double x = points.x[i];
    const double y = points.y[i];
    if (!taken.emplace(cell(x, left, right), cell(y, bottom, top)).second) continue;
    thinned.x.push_back(x);
    thinned.y.push_back(y);
  }
  points = std::move(thinned);
}

std::vector<CoachPicture> Pictures(const Played& played, const ProgressSummary& summary) {
  const SkillOrLuck* const skill = summary.skills.empty() ? nullptr : &summary.skills.front();
  std::vector<CoachPicture> pictures;
  for (std::size_t i = 0; i < kProgressPictures.size(); ++i) {
    const auto kind = static_cast<ProgressPicture>(i);
    NumberPicture picture = PictureOf(kind, played, summary.trades, summary.curve, skill);
    if (picture.panes.empty()) continue;
    if (kind == ProgressPicture::kExcursions) {
      for (NumberPicture::Series& series : picture.panes.front().series) ThinPoints(series);
    }
    const bool wide = kind == ProgressPicture::kEquity || kind == ProgressPicture::kLuck;
    pictures.push_back({std::move(picture), kPictureHints.at(i), wide});
  }
  return pictures;
}

}  // namespace

CoachReport MakeCoachReport(LedgerConnection& connection, const CoachSource& source,
                            const ProgressSummary& summary) {
  const Facts facts(connection, source, summary.trades);
  CoachReport report;
  report.title = "Practice report";
  report.subtitle = PathText(NativePath(connection.File()).filename());
  if (const std::string span = facts.PlayedLine(); !span.empty()) {
    report.subtitle += ", played " + span;
  }
  report.facts = facts.Lines();
  report.terms = kCoachTerms;
  const std::optional<CoachTable> cards = CardsTable(connection);
  if (cards) report.tables.push_back(*cards);
  if (summary.trades.empty()) {
    report.findings = {"No closed trades."};
    return report;
  }
  report.findings = SummaryFindings(summary);
  report.figures = {FiguresTable(summary.figures)};
  report.pictures = Pictures(source.played, summary);
  report.tables.insert(report.tables.begin(), SetupsTable(source.played, summary));
  report.trades = BestAndWorst(connection, source, summary.trades);
  return report;
}

}  // namespace velumar
