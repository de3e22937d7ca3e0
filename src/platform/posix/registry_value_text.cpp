#include "platform/posix/registry_value_text.h"

#include <algorithm>
#include <charconv>

namespace velumar {

namespace {

constexpr std::string_view kString = "string:";
constexpr std::string_view kDWord = "dword:";
constexpr std::string_view kBinary = "binary:";
constexpr std::size_t kDWordBytes = 4;

std::string HexPairs(std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string pairs;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    pairs += kDigits[byte >> 4];
    pairs += kDigits[byte & 0xF];
  }
  return pairs;
}

std::optional<std::string> ParsedPairs(std::string_view pairs) {
  if (pairs.size() % 2 != 0) return std::nullopt;
  std::string bytes;
  for (; !pairs.empty(); pairs.remove_prefix(2)) {
    unsigned value = 0;
    const char* const end = pairs.data() + 2;
    if (std::from_chars(pairs.data(), end, value, 16).ptr != end) return std::nullopt;
    bytes += static_cast<char>(value);
  }
  return bytes;
}

// A number is written with its highest digit first, as people read it.
std::string Reversed(std::string bytes) {
  std::reverse(bytes.begin(), bytes.end());
  return bytes;
}

}  // namespace

std::string RegistryValueText(const RegistryValue& value) {
  switch (value.type) {
    case RegistryType::kDWord:
      return std::string(kDWord) + HexPairs(Reversed(value.bytes));
    case RegistryType::kBinary:
      return std::string(kBinary) + HexPairs(value.bytes);
    case RegistryType::kString:
      break;
  }
  return std::string(kString) + value.bytes;
}

std::optional<RegistryValue> ParseRegistryValue(std::string_view text) {
  if (text.starts_with(kString)) {
    return RegistryValue{RegistryType::kString, std::string(text.substr(kString.size()))};
  }
  const bool number = text.starts_with(kDWord);
  if (!number && !text.starts_with(kBinary)) return std::nullopt;
  const auto bytes = ParsedPairs(text.substr(number ? kDWord.size() : kBinary.size()));
  if (!bytes || (number && bytes->size() != kDWordBytes)) return std::nullopt;
  if (number) return RegistryValue{RegistryType::kDWord, Reversed(*bytes)};
  return RegistryValue{RegistryType::kBinary, *bytes};
}

}  // namespace velumar
