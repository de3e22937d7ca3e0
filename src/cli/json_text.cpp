#include "cli/json_text.h"

#include "base/number_text.h"

namespace velumar {

std::string JsonText(const nlohmann::ordered_json& json, int indent) {
  return json.dump(indent, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

std::string LedgerText(const LedgerValue& value) {
  const auto* const number = std::get_if<double>(&value);
  return number == nullptr ? ValueAs<std::string>(value)
                           : PlainNumberText(static_cast<float>(*number));
}

nlohmann::ordered_json DecimalNumber(const std::string& text) {
  if (const auto whole = ExactNumber<std::int64_t>(text)) return *whole;
  const auto number = ToDouble(text);
  return number ? nlohmann::ordered_json(*number) : nlohmann::ordered_json();
}

nlohmann::ordered_json LedgerRowObject(const LedgerRecordset& records, std::size_t row) {
  nlohmann::ordered_json object;
  for (std::size_t i = 0; i < records.columns.size(); ++i) {
    object[records.columns[i]] = LedgerText(records.rows[row][i]);
  }
  return object;
}

}  // namespace velumar
