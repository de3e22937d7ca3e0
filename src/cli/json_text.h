#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace velumar {

// JSON on one line, or indented for people. Bytes that aren't UTF-8 are replaced.
inline std::string JsonText(const nlohmann::ordered_json& json, int indent = -1) {
  return json.dump(indent, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

inline constexpr int kIndented = 2;

}  // namespace velumar
