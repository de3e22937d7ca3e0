#include "base/decimal.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace velumar {

namespace {

// Beyond these an exponent can't matter to any number that the system holds.
constexpr int kExponentLimit = 100000;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

std::string_view WithoutSpace(std::string_view text) {
  while (!text.empty() && IsSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsSpace(text.back())) text.remove_suffix(1);
  return text;
}

bool TakeSign(std::string_view& text) {
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  return negative;
}

// The exponent behind the digits, 0 where there is none; nothing when it is malformed.
std::optional<int> TakeExponent(std::string_view text) {
  if (text.empty()) return 0;
  if (text.front() != 'e' && text.front() != 'E') return std::nullopt;
  text.remove_prefix(1);
  const bool negative = TakeSign(text);
  if (text.empty() || !std::all_of(text.begin(), text.end(), IsDigit)) return std::nullopt;
  int exponent = 0;
  for (const char c : text) exponent = std::min(exponent * 10 + (c - '0'), kExponentLimit);
  return negative ? -exponent : exponent;
}

}  // namespace

Decimal::Decimal(bool negative, std::string digits, int point)
    : negative_(negative), digits_(std::move(digits)), point_(point) {
  Normalise();
}

void Decimal::Normalise() {
  const std::size_t first = digits_.find_first_not_of('0');
  if (first == std::string::npos) {
    digits_.clear();
    point_ = 0;
    return;
  }
  digits_.erase(0, first);
  point_ -= static_cast<int>(first);
  digits_.erase(digits_.find_last_not_of('0') + 1);
}

std::optional<Decimal> Decimal::FromText(std::string_view text) {
  text = WithoutSpace(text);
  const bool negative = TakeSign(text);
  std::string digits;
  int point = 0;
  std::size_t at = 0;
  // Thousands grouping stands only behind a first digit, and only in front of the point.
  for (; at < text.size() && (IsDigit(text[at]) || (text[at] == ',' && at > 0)); ++at) {
    if (text[at] != ',') digits += text[at];
  }
  point = static_cast<int>(digits.size());
  if (at < text.size() && text[at] == '.') {
    for (++at; at < text.size() && IsDigit(text[at]); ++at) digits += text[at];
  }
  if (digits.empty()) return std::nullopt;
  const std::optional<int> exponent = TakeExponent(text.substr(at));
  if (!exponent) return std::nullopt;
  return Decimal(negative, std::move(digits), point + *exponent);
}

Decimal Decimal::Shortest(float value) {
  std::array<char, 32> buffer;
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                 std::chars_format::scientific)
                       .ptr;
  return FromText({buffer.data(), static_cast<std::size_t>(end - buffer.data())})
      .value_or(Decimal(false, {}, 0));
}

Decimal Decimal::FromInteger(std::int64_t value) {
  std::string digits = std::to_string(value);
  const bool negative = value < 0;
  if (negative) digits.erase(0, 1);
  const int point = static_cast<int>(digits.size());
  return {negative, std::move(digits), point};
}

Decimal Decimal::Rounded(int places, Tie tie) const {
  const int kept = point_ + places;  // digits in front of the cut
  if (kept >= static_cast<int>(digits_.size())) return *this;
  if (kept < 0) return {negative_, {}, 0};
  const auto cut = static_cast<std::size_t>(kept);
  std::string head = "0" + digits_.substr(0, cut);
  const bool exact_half = digits_.size() == cut + 1 && digits_[cut] == '5';
  const bool odd = (head.back() - '0') % 2 == 1;
  const bool up = exact_half && tie == Tie::kToEven ? odd : digits_[cut] >= '5';
  if (up) {
    std::size_t at = head.size() - 1;
    while (head[at] == '9') head[at--] = '0';
    ++head[at];
  }
  return {negative_, std::move(head), point_ + 1};
}

std::string Decimal::WholeDigits() const {
  if (point_ <= 0) return {};
  const auto whole = static_cast<std::size_t>(point_);
  std::string digits = digits_.substr(0, whole);
  digits.resize(whole, '0');
  return digits;
}

std::string Decimal::FractionDigits() const {
  if (IsWhole()) return {};
  if (point_ >= 0) return digits_.substr(static_cast<std::size_t>(point_));
  return std::string(static_cast<std::size_t>(-point_), '0') + digits_;
}

std::string Decimal::Canonical() const {
  const std::string sign = negative_ ? "-" : "";
  return IsZero() ? sign + "0" : sign + "0." + digits_ + "e" + std::to_string(point_);
}

}  // namespace velumar
