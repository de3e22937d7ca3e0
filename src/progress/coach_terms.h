#pragma once

#include <array>
#include <string_view>

#include "progress/coach_report.h"

namespace velumar {

// In the order of ProgressPicture.
inline constexpr std::array<std::string_view, 10> kPictureHints{
    "The account at each bar played, all sessions in a row, after costs. Below: how far it was "
    "under "
    "its highest value.",
    "How many trades brought how much. A few far to the left are losses that were not cut.",
    "One red and one green dot per trade: how far the price went against it and for it, by what it "
    "brought. Green dots far to the right but low are profits that were given back.",
    "Average result of each setup; in brackets, how many trades.",
    "Average result by the weekday of the entry.",
    "Average result by the hour of the entry.",
    "Average result by how long the trade was held.",
    "How sure the trader was before the trade, from 1 to 5. If that is well judged, both rise to "
    "the "
    "right.",
    "Each session's result, the first one played on the left.",
    "What traders got who entered at random bars, but as often, on the same sides and for as long. "
    "The line is this trader."};

inline constexpr std::array<CoachTerm, 16> kCoachTerms{{
    {"95 % interval",
     "How far a figure could be off by chance alone. If that of the expectancy includes 0, there "
     "may "
     "be no edge yet."},
    {"Bar",
     "A piece of the chart: a day, or some minutes, with its first, highest, lowest and last "
     "price."},
    {"Blind", "Played without knowing the security and the date."},
    {"Confidence", "How sure the trader was before the trade, from 1 to 5."},
    {"Drawdown", "How far the account is below its highest value so far."},
    {"Excursion",
     "How far the price went against a trade, or for it, while it was open. It is taken from the "
     "highs and lows of whole bars, so the real one may be smaller."},
    {"Expectancy", "The average result of a trade, wins and losses together."},
    {"Look-ahead",
     "The trader had already seen later bars, by stepping back. Such trades prove nothing."},
    {"n", "How many trades or bars a figure is computed from. With few, anything is possible."},
    {"Payoff ratio", "The average win divided by the average loss."},
    {"Plan",
     "What the trader wrote down about a trade: stop, target, setup, confidence and reasons."},
    {"Profit factor", "All wins divided by all losses, in money. Above 1 there is a profit."},
    {"R",
     "What a trade brought divided by what it risked from the entry to the planned stop. -1 R is a "
     "full loss, 2 R a win of twice the risk."},
    {"Random traders",
     "Simulated traders without any skill, for comparison. If many of them do as well, the result "
     "may "
     "be luck. With several setups compared, one will look good by chance; the sentences allow for "
     "that."},
    {"Session", "One replay of a security, bar by bar, from its start until the trader ended it."},
    {"Setup", "The name that the trader gives to the reason for a trade, such as breakout."},
}};

}  // namespace velumar
