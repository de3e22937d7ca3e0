#include <algorithm>
#include <array>
#include <charconv>
#include <ostream>
#include <stdexcept>

#include "cli/commands.h"
#include "cli/json_text.h"
#include "cli/text_table.h"
#include "ledger/trades.h"
#include "marketdata/interval.h"
#include "progress/findings.h"
#include "progress/played_ledger.h"
#include "progress/progress_figures.h"
#include "progress/trade_export.h"
#include "session/played_trades.h"

namespace velumar {

namespace {

// The place of a name that an option gives; nothing if the option is not given.
std::optional<std::int32_t> PlaceOf(const std::vector<std::string>& names, const std::string& name,
                                    const std::string& what) {
  if (name.empty()) return std::nullopt;
  const auto found = std::ranges::find(names, name);
  if (found == names.end()) throw std::runtime_error("no trade has the " + what + " " + name);
  return static_cast<std::int32_t>(found - names.begin());
}

// The last digits of a logarithm differ between the systems' libraries, so they are left out.
nlohmann::ordered_json Estimate(double value) {
  std::array<char, 32> text{};
  const auto end =
      std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, 12);
  return DecimalNumber({text.data(), end.ptr});
}

nlohmann::ordered_json FigureObject(const ProgressFigure& figure) {
  nlohmann::ordered_json object{
      {"name", figure.name}, {"value", nullptr}, {"n", figure.n},    {"counted", figure.counted},
      {"low", nullptr},      {"high", nullptr},  {"too_few", false}, {"formula", figure.formula}};
  if (figure.value) object["value"] = Estimate(*figure.value);
  if (figure.sureness == ProgressFigure::Sureness::kInterval) {
    object["low"] = Estimate(figure.interval.low);  // null if it is infinite
    object["high"] = Estimate(figure.interval.high);
  }
  object["too_few"] = figure.sureness == ProgressFigure::Sureness::kTooFew;
  return object;
}

nlohmann::ordered_json SkillObject(const SkillOrLuck& skill, std::size_t groups) {
  return {{"group", skill.group},
          {"trades", skill.trades},
          {"left_out", skill.left_out},
          {"result", skill.result},
          {"usual_moves", skill.compared},
          {"buy_and_hold", skill.buy_and_hold},
          {"share", skill.share},
          {"adjusted_share", skill.adjusted_share},
          {"more_than_luck", skill.IsSkill()},
          {"sentence", SkillSentence(skill, groups)}};
}

nlohmann::ordered_json RiskObject(const RiskAhead& risk) {
  nlohmann::ordered_json object{{"ruin", risk.ruin},
                                {"drawdown_10", risk.falls[0]},
                                {"drawdown_20", risk.falls[1]},
                                {"drawdown_30", risk.falls[2]},
                                {"size", risk.size},
                                {"risk_per_trade", nullptr}};
  if (risk.risk_per_trade) object["risk_per_trade"] = *risk.risk_per_trade;
  return object;
}

std::string StatsJson(const ProgressSummary& stats, const StatsArguments& arguments) {
  nlohmann::ordered_json object{{"trades", stats.trades.size()},
                                {"sessions", stats.figures.sessions},
                                {"rounds", arguments.rounds},
                                {"seed", arguments.seed},
                                {"resampled", stats.figures.over_sessions ? "sessions" : "trades"},
                                {"figures", nlohmann::ordered_json::array()},
                                {"groups", nlohmann::ordered_json::array()},
                                {"next_100_trades", nullptr}};
  for (const ProgressFigure& figure : stats.figures.figures) {
    object["figures"].push_back(FigureObject(figure));
  }
  for (const SkillOrLuck& skill : stats.skills) {
    object["groups"].push_back(SkillObject(skill, stats.skills.size()));
  }
  if (stats.risk) object["next_100_trades"] = RiskObject(*stats.risk);
  return JsonText(object, kIndented);
}

std::string StatsText(const ProgressSummary& stats) {
  TextTable table({{"Figure"},
                   {"Value", TextTable::kRight},
                   {"95 % interval", TextTable::kRight},
                   {"n", TextTable::kRight},
                   {"of"}});
  for (const ProgressFigure& figure : stats.figures.figures) {
    table.AddRow({std::string(figure.name), figure.ValueText(), figure.IntervalText(),
                  std::to_string(figure.n), std::string(figure.counted)});
  }
  std::string text = table.Text() + "\n";
  for (const std::string& line : FindingsOf(stats.skills, stats.risk)) text += line + "\n";
  return text;
}

}  // namespace

TradeFilter FilterOf(const SelectionArguments& arguments, const Played& played) {
  TradeFilter filter = arguments.filter;
  filter.symbol = PlaceOf(played.symbols, arguments.symbol, "security");
  filter.setup = PlaceOf(played.setups, arguments.setup, "setup");
  if (!arguments.interval.empty()) filter.interval = IntervalFromText(arguments.interval);
  return filter;
}

ProgressSummary SummaryOf(const Played& played, const TradeFilter& filter,
                          const SelectionArguments& arguments, CliContext& context) {
  RoundOptions options{.count = arguments.rounds, .seed = arguments.seed};
  if (context.shows_progress) {
    options.progress = [&context](double share) {
      context.err << "\r" << static_cast<int>(share * 100) << " %" << std::flush;
    };
  }
  ProgressSummary summary = Summarise(played, Select(played, filter), options);
  if (context.shows_progress) context.err << "\r     \r" << std::flush;
  return summary;
}

void PrintStats(const StatsArguments& arguments, CliContext& context) {
  LedgerConnection ledger = OpenScope({arguments.file, kCurrentRun, {}});
  const std::vector<PlayedScope> scopes = PlayedScopes(ledger, context.cache);
  const std::vector<LedgerEntryPlan> plans = LedgerEntryPlans(ledger);
  const Played played = PlayedOf(scopes, plans);
  if (arguments.csv) {
    context.out << TradesCsv(scopes, plans, Select(played, FilterOf(arguments, played)));
    return;
  }
  const ProgressSummary stats = SummaryOf(played, FilterOf(arguments, played), arguments, context);
  context.out << (arguments.json ? StatsJson(stats, arguments) : StatsText(stats));
}

}  // namespace velumar
