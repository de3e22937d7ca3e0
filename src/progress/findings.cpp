#include "progress/findings.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>

#include "results/figure_texts.h"

namespace velumar {

namespace {

std::string WholePercent(double share) {
  const double percent = share * 100;
  if (percent > 0 && percent < 1) return "less than 1 %";
  return std::to_string(std::lround(percent)) + " %";
}

std::string Comparison(const SkillOrLuck& whole) {
  const double random =
      std::accumulate(whole.random_results.begin(), whole.random_results.end(), 0.0) /
      static_cast<double>(std::max<std::size_t>(whole.random_results.size(), 1));
  std::string text =
      "Moves of the price in the trades' direction, in usual moves from close to close: " +
      MoneyText(whole.compared) + " in these trades, " + MoneyText(random) +
      " in those of random traders on average. In money, before costs: " + MoneyText(whole.result) +
      "; buying at the start of each session and holding to its end: " +
      MoneyText(whole.buy_and_hold) + ".";
  if (whole.left_out > 0) {
    text += " Left out: " + std::to_string(whole.left_out) +
            (whole.left_out == 1 ? " trade" : " trades") + " whose bars were not recorded.";
  }
  return text;
}

std::string RiskSentence(const RiskAhead& risk) {
  std::string text = "In the next " + std::to_string(kTradesAhead) +
                     " trades like these, the chance of losing half of the account is " +
                     WholePercent(risk.ruin);
  for (std::size_t i = 0; i < kFallShares.size(); ++i) {
    text += (i == 0 ? "; of a drawdown of " : ", of ") + WholePercent(kFallShares[i]) + ": " +
            WholePercent(risk.falls[i]);
  }
  return text + ".";
}

std::string SizeSentence(const RiskAhead& risk) {
  const bool bounded = risk.size < kLargestSize;
  std::string text =
      bounded ? "At " + QuantityText(std::floor(risk.size * 100) / 100) + " times the size"
              : "Even at " + QuantityText(kLargestSize) + " times the size";
  if (bounded && risk.risk_per_trade) {
    text += " (" + PercentText(risk.risk_per_trade) + " of the account at risk in each trade)";
  }
  return text + ", the chance of a drawdown of " + WholePercent(kWorstFall) + " is below " +
         WholePercent(kAcceptedRisk) + ".";
}

}  // namespace

std::vector<std::string> FindingsOf(const std::vector<SkillOrLuck>& skills,
                                    const std::optional<RiskAhead>& risk) {
  std::vector<std::string> lines;
  if (!skills.empty()) {
    lines.push_back(SkillSentence(skills.front(), skills.size()));
    if (skills.front().Enough()) lines.push_back(Comparison(skills.front()));
  }
  for (std::size_t i = 1; i < skills.size(); ++i) {
    if (skills[i].IsSkill()) {
      lines.push_back(skills[i].group + ": " + SkillSentence(skills[i], skills.size()));
    }
  }
  if (risk) {
    lines.push_back(RiskSentence(*risk));
    lines.push_back(SizeSentence(*risk));
  }
  return lines;
}

}  // namespace velumar
