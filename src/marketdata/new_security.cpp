#include "marketdata/new_security.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>

#include "base/text.h"
#include "marketdata/metalib_error.h"
#include "marketdata/stored_text.h"

namespace velumar {

namespace {

constexpr std::size_t kLongestSymbol = 14;
constexpr int kLongestInterval = 24 * 60;

[[noreturn]] void ThrowBadIdentity(const std::string& text) {
  throw MetaLibError(MetaLibError::kNotStorable, text);
}

bool HasControls(std::string_view text) {
  return std::ranges::any_of(text, [](char c) { return static_cast<unsigned char>(c) < ' '; });
}

std::string BytesOf(std::string_view text) {
  try {
    return TextForFile(text);
  } catch (const std::invalid_argument& error) {
    ThrowBadIdentity(error.what());
  }
}

}  // namespace

void RequireStorable(const NewSecurity& security) {
  const std::string quoted = "\"" + security.symbol + "\"";
  const std::size_t size = BytesOf(security.symbol).size();
  if (size == 0 || size > kLongestSymbol || HasControls(security.symbol) ||
      Trimmed(security.symbol) != security.symbol) {
    ThrowBadIdentity("The symbol " + quoted +
                     " can't be stored: a symbol has 1 to 14 characters and no blanks around it");
  }
  NameAsStored(security.name);
  if (security.interval != -1 && (security.interval < 1 || security.interval > kLongestInterval)) {
    ThrowBadIdentity(quoted + ": an interval of " + std::to_string(security.interval) +
                     " minutes can't be stored");
  }
}

std::string NameAsStored(const std::string& name) {
  if (HasControls(name)) ThrowBadIdentity("The name \"" + name + "\" can't be stored");
  return Trimmed(TextFromFile(BytesOf(name).substr(0, kLongestSecurityName)));
}

}  // namespace velumar
