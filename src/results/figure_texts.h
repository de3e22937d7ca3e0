#pragma once

#include <optional>
#include <span>
#include <string>

namespace velumar {

inline constexpr const char* kNoFigure = "-";

// "1,234,567.50"; "-" for nothing.
std::string MoneyText(std::optional<double> money);
// "1,234.50" or, with all its decimals, "1.08755"; "-" for nothing.
std::string PriceText(std::optional<double> price);
// "58.33 %" for 0.5833; "-" for nothing.
std::string PercentText(std::optional<double> share);
// Up to two decimals, without grouping or trailing zeros: "1000", "12.5".
std::string QuantityText(double quantity);
// The shortest decimal that reads back as the number, for other programs.
std::string DecimalText(double number);
// A line of CSV with its line end. Fields are quoted where needed.
std::string CsvLine(std::span<const std::string> fields);

}  // namespace velumar
