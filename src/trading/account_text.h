#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velumar {

// What the orders count a text of the account in.
enum class FigureWidth : std::uint8_t { kSingle, kInt16 };

// A percentage under stock rules, else whole money of one contract.
inline FigureWidth CommissionWidth(bool stock) {
  return stock ? FigureWidth::kSingle : FigureWidth::kInt16;
}

inline constexpr std::string_view kCommissionCaption = "Comm.";
inline constexpr std::string_view kVatCaption = "VAT";
inline constexpr std::string_view kMarginCaption = "Initial Margin";

// Why the text of a box can't be used, as a sentence that names the box by its caption: no number,
// commas that don't group thousands, a negative number, or one that the width doesn't hold. Nothing
// if it can be used.
std::optional<std::string> AccountTextProblem(std::string_view caption, std::string_view text,
                                              FigureWidth width);

}  // namespace velumar
