#pragma once

#include <string>
#include <vector>

#include "progress/parallel.h"
#include "progress/trade_filter.h"

namespace velumar {

// Skill or luck: how often random traders do as well. A random trader makes as many trades in the
// same sessions, with the same sides and quantities; the bars of entry are drawn, each one that
// leaves room for the holding time being as likely, and each trade by itself. The holding times are
// those of the trader, dealt out again among the trades of the same interval, setup and side, as
// far as the session has the bars. Left where they are they would say how the market went: a trader
// who takes small profits and waits with losses holds the trades that went against the market
// longest, and random traders who did the same in the same session would lose more than by chance.
//
// A trade counts by how far the close has moved in its direction from the entry to the exit, in
// usual moves of its session: the root mean square of the changes from close to close. So no
// security with large moves and no large quantity outweighs all others. A trader whose entries have
// nothing to do with what follows does better than 95 of 100 random traders in five of a hundred
// ledgers; in seven to eight with small targets and no stop.

struct TradeGroup {
  std::string name;
  Selection trades;
};

struct SkillOrLuck {
  std::string group;
  // Trades that could be compared. The others closed before they were opened, after a step back, or
  // their session has no closes.
  int trades = 0;
  int left_out = 0;
  double compared = 0;      // the trader's result in usual moves
  double result = 0;        // money at the closes, before costs
  double buy_and_hold = 0;  // of each session, see CompareWithRandomTraders
  // Of random traders who did as well or better: (number + 1) / (rounds + 1), the trader being one
  // of them (Davison & Hinkley 1997, "Bootstrap Methods and their Application", section 4.2;
  // Phipson & Smyth 2010, "Permutation p-values should never be zero").
  double share = 1;
  // The same, raised for the number of groups looked at (Holm 1979, "A simple sequentially
  // rejective multiple test procedure").
  double adjusted_share = 1;
  std::vector<double> random_results;  // in usual moves, ascending, one for each random trader

  bool Enough() const;
  // In ledgers of luck alone, one in twenty has a group that is called skill.
  bool IsSkill() const { return Enough() && adjusted_share <= 0.05; }
};

// Compares each group with random traders. Buy and hold is the average quantity of a session's
// trades, bought at the close of its first bar and sold at the last, summed over the sessions.
// The first group usually is the whole selection.
std::vector<SkillOrLuck> CompareWithRandomTraders(const Played& played,
                                                  const std::vector<TradeGroup>& groups,
                                                  const RoundOptions& options);

// One group for each setup that the selection has, ordered by name; trades without one are none.
// Empty if one setup has the whole selection.
std::vector<TradeGroup> GroupsBySetup(const Played& played, const Selection& selection);

// "7 of 100 random traders did as well: not yet more than luck."
std::string SkillSentence(const SkillOrLuck& skill, std::size_t groups);

// How many results lie in each of `bins` equal parts from the lowest to the highest.
struct Histogram {
  double low = 0;
  double high = 0;
  std::vector<int> counts;
};
Histogram HistogramOf(const std::vector<double>& ascending, int bins);

}  // namespace velumar
