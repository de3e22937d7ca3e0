#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "progress/equity_curve.h"
#include "progress/number_picture.h"
#include "progress/played.h"
#include "progress/random_traders.h"

namespace velumar {

enum class ProgressPicture : std::uint8_t {
  kEquity,
  kResults,
  kExcursions,
  kBySetup,
  kByWeekday,
  kByHour,
  kByHolding,
  kByConfidence,
  kBySession,
  kLuck
};

// In the order of the values.
inline constexpr std::array<std::string_view, 10> kProgressPictures{
    "Equity and drawdown",    "Distribution of results", "Excursions against result",
    "Result by setup",        "Result by weekday",       "Result by hour",
    "Result by holding time", "Confidence and outcome",  "Progress by session",
    "Skill or luck"};

// Of the selected trades. `curve` is that of the selection, and `skill` its comparison with random
// traders, null before it is computed. Results are net of costs, and in R where most trades have a
// plan with a stop.
NumberPicture PictureOf(ProgressPicture kind, const Played& played,
                        std::span<const std::int32_t> selection, const EquityCurve& curve,
                        const SkillOrLuck* skill);

}  // namespace velumar
