#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/registry.h"

namespace velumar {

struct RegistryValue {
  RegistryType type;
  std::string bytes;  // of a number four, the lowest first
};

// "string:text", "dword:" with 8 hexadecimal digits, "binary:" with pairs of them.
std::string RegistryValueText(const RegistryValue& value);

// Nothing for a text that isn't of this form.
std::optional<RegistryValue> ParseRegistryValue(std::string_view text);

}  // namespace velumar
