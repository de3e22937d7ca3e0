// Small texts from outside: keystrokes, settings, registry values, numbers and dates. The first byte
// selects the kind.

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <stdexcept>

#include "base/dates.h"
#include "base/number_text.h"
#include "packed_files.h"
#include "platform/key_notation.h"
#include "platform/posix/registry_value_text.h"
#include "platform/section_text.h"

namespace velumar {
namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

bool IsPlain(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= 0x20 && c < 0x7F; });
}

// Any text can be typed unchanged; plain text needs one key for each character.
void TryKeys(std::string_view text) {
  try {
    ParseKeys(text);
  } catch (const std::invalid_argument&) {
  }
  if (IsPlain(text)) return Require(ParseKeys(EscapedKeys(text)).size() == text.size());
  try {
    ParseKeys(EscapedKeys(text));
  } catch (const std::invalid_argument&) {
    // Text that is not UTF-8 has no keys.
  }
}

void TrySections(std::string_view text) {
  try {
    const Sections sections = ParseSections(text);
    Require(ParseSections(FormatSections(sections)) == sections);
  } catch (const std::invalid_argument&) {
  }
}

void TryRegistryValue(std::string_view text) {
  const auto value = ParseRegistryValue(text);
  if (!value) return;
  const auto again = ParseRegistryValue(RegistryValueText(*value));
  Require(again && again->type == value->type && again->bytes == value->bytes);
}

void TryNumbers(std::string_view text) {
  ToDouble(text);
  ToInt16(text);
  PatternText(text, kTwoDecimalsPattern);
  if (const auto single = ToSingle(text)) {
    Require(std::isfinite(*single));
    PlainNumberText(*single);
    PatternText(*single, kTwoDecimalsPattern);
  }
  const std::size_t middle = text.size() / 2;
  PatternText(1234.5F, text);
  DateFromText(text.substr(0, middle), text.substr(middle));
  DateText(20051107, text);
}

}  // namespace
}  // namespace velumar

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  using namespace velumar;
  if (size == 0) return 0;
  const std::string_view text = AsText(data + 1, size - 1);
  switch (data[0] % 4) {
    case 0:
      TryKeys(text);
      break;
    case 1:
      TrySections(text);
      break;
    case 2:
      TryRegistryValue(text);
      break;
    default:
      TryNumbers(text);
  }
  return 0;
}
