#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "charthost/indicators/catalogue.h"

namespace velumar {

// How indicators are saved: as JSON.
//   [{"key": "rsi", "parameters": [14], "shown": true, "colour": 0, "height": 30}, ...]

std::string IndicatorsText(const std::vector<ChosenIndicator>& indicators);

struct SavedIndicators {
  std::vector<ChosenIndicator> indicators;
  // One sentence for each indicator that was left out, because the settings are damaged or from
  // another version.
  std::vector<std::string> problems;
};

SavedIndicators ReadIndicators(std::string_view text);

// Named sets of indicators, as an object of such arrays. Reading leaves out what it can't read.
using IndicatorSets = std::map<std::string, std::vector<ChosenIndicator>>;
std::string SetsText(const IndicatorSets& sets);
IndicatorSets ReadSets(std::string_view text);

}  // namespace velumar
