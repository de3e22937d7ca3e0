#include "charthost/indicators/indicator_text.h"

#include <cmath>
#include <nlohmann/json.hpp>
#include <optional>

namespace velumar {
namespace {

using Json = nlohmann::ordered_json;

Json ToJson(const std::vector<ChosenIndicator>& indicators) {
  Json array = Json::array();
  for (const ChosenIndicator& chosen : indicators) {
    array.push_back({{"key", chosen.key},
                     {"parameters", chosen.parameters},
                     {"shown", chosen.shown},
                     {"colour", chosen.colour},
                     {"height", chosen.height}});
  }
  return array;
}

bool IsWithin(double value, double least, double most) { return value >= least && value <= most; }

bool FitParameters(const std::vector<double>& values, const std::vector<ParameterRow>& rows) {
  if (values.size() != rows.size()) return false;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const bool whole = rows[i].decimals > 0 || values[i] == std::floor(values[i]);
    if (!whole || !IsWithin(values[i], rows[i].least, rows[i].most)) return false;
  }
  return true;
}

int WholeIn(const Json& object, const char* key, int least, int most, int otherwise) {
  const auto found = object.find(key);
  if (found == object.end() || !found->is_number_integer()) return otherwise;
  const auto value = found->get<std::int64_t>();
  return value >= least && value <= most ? static_cast<int>(value) : otherwise;
}

// A sentence if the indicator can't be used.
std::optional<std::string> ReadOne(const Json& saved, ChosenIndicator& chosen) {
  if (!saved.is_object() || !saved.contains("key") || !saved["key"].is_string()) {
    return "A saved indicator has no key.";
  }
  chosen.key = saved["key"].get<std::string>();
  const IndicatorRow* const row = FindIndicator(chosen.key);
  if (row == nullptr) return "The saved indicator \"" + chosen.key + "\" is not known.";
  try {
    chosen.parameters = saved.at("parameters").get<std::vector<double>>();
    chosen.shown = saved.value("shown", true);
    chosen.colour = WholeIn(saved, "colour", 0, ChosenIndicator::kColours - 1, 0);
    chosen.height = WholeIn(saved, "height", ChosenIndicator::kLeastHeight,
                            ChosenIndicator::kMostHeight, chosen.height);
  } catch (const Json::exception&) {
    return "The saved indicator \"" + chosen.key + "\" is damaged.";
  }
  if (!FitParameters(chosen.parameters, row->parameters)) {
    return "The saved indicator \"" + chosen.key + "\" has a parameter out of its range.";
  }
  return std::nullopt;
}

SavedIndicators FromJson(const Json& array) {
  SavedIndicators saved;
  if (!array.is_array()) {
    saved.problems.emplace_back("The saved indicators can't be read.");
    return saved;
  }
  for (const Json& one : array) {
    ChosenIndicator chosen;
    if (saved.indicators.size() == kMostIndicators) {
      saved.problems.push_back("Only " + std::to_string(kMostIndicators) +
                               " of the saved indicators are used.");
      break;
    }
    if (auto problem = ReadOne(one, chosen)) {
      saved.problems.push_back(*std::move(problem));
    } else {
      saved.indicators.push_back(std::move(chosen));
    }
  }
  return saved;
}

std::string Text(const Json& json) {
  return json.dump(-1, ' ', true, Json::error_handler_t::replace);
}

}  // namespace

std::string IndicatorsText(const std::vector<ChosenIndicator>& indicators) {
  return Text(ToJson(indicators));
}

SavedIndicators ReadIndicators(std::string_view text) {
  return FromJson(Json::parse(text, nullptr, false));
}

std::string SetsText(const IndicatorSets& sets) {
  Json object = Json::object();
  for (const auto& [name, indicators] : sets) object[name] = ToJson(indicators);
  return Text(object);
}

IndicatorSets ReadSets(std::string_view text) {
  IndicatorSets sets;
  const Json object = Json::parse(text, nullptr, false);
  if (!object.is_object()) return sets;
  for (const auto& [name, array] : object.items()) {
    if (array.is_array()) sets[name] = FromJson(array).indicators;
  }
  return sets;
}

}  // namespace velumar
