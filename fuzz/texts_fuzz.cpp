// The small texts from outside: keystrokes, numbers and dates. The first byte says which.

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "base/dates.h"
#include "base/number_text.h"
#include "packed_files.h"
#include "platform/key_notation.h"

namespace velumar {
namespace {

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
  data[0] % 2 == 0 ? TryKeys(text) : TryNumbers(text);
  return 0;
}
