#include "base/decimal.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "base/number_text.h"

namespace velumar {

namespace {

// A larger exponent makes no difference to any number of the system.
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

// Takes the digits before the point, without their commas. False if the commas do not group
// thousands: "0,500" is a half in countries with a decimal comma.
bool TakeWholeDigits(std::string_view& text, std::string& digits) {
  constexpr std::size_t kGroup = 3;
  bool grouped = false;
  std::size_t group = 0;
  for (; !text.empty() && (IsDigit(text.front()) || text.front() == ','); text.remove_prefix(1)) {
    if (text.front() != ',') {
      digits += text.front();
      ++group;
      continue;
    }
    const bool first_group = group > 0 && group <= kGroup && !digits.starts_with('0');
    if (grouped ? group != kGroup : !first_group) return false;
    grouped = true;
    group = 0;
  }
  return !grouped || group == kGroup;
}

void TakeFractionDigits(std::string_view& text, std::string& digits) {
  if (!text.starts_with('.')) return;
  text.remove_prefix(1);
  for (; !text.empty() && IsDigit(text.front()); text.remove_prefix(1)) digits += text.front();
}

// `a` and `b` are digits of the same length.
std::string Sum(const std::string& a, const std::string& b) {
  std::string sum(a.size() + 1, '0');
  int carry = 0;
  for (std::size_t i = a.size(); i-- > 0;) {
    const int digit = (a[i] - '0') + (b[i] - '0') + carry;
    sum[i + 1] = static_cast<char>('0' + digit % 10);
    carry = digit / 10;
  }
  sum[0] = static_cast<char>('0' + carry);
  return sum;
}

// The same, with a >= b.
std::string Difference(const std::string& a, const std::string& b) {
  std::string difference(a.size(), '0');
  int borrow = 0;
  for (std::size_t i = a.size(); i-- > 0;) {
    const int digit = (a[i] - '0') - (b[i] - '0') - borrow;
    borrow = digit < 0 ? 1 : 0;
    difference[i] = static_cast<char>('0' + digit + 10 * borrow);
  }
  return difference;
}

// The exponent after the digits, 0 if there is none; nothing if it is malformed.
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
  if (!TakeWholeDigits(text, digits)) return std::nullopt;
  const int point = static_cast<int>(digits.size());
  TakeFractionDigits(text, digits);
  if (digits.empty()) return std::nullopt;
  const std::optional<int> exponent = TakeExponent(text);
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

Decimal Decimal::Minus(const Decimal& other) const {
  const int point = std::max(point_, other.point_);
  const auto scale = [](const Decimal& number) {
    return number.point_ - static_cast<int>(number.digits_.size());
  };
  const auto length = static_cast<std::size_t>(point - std::min(scale(*this), scale(other)));
  const auto aligned = [&](const Decimal& number) {
    std::string digits(static_cast<std::size_t>(point - number.point_), '0');
    digits += number.digits_;
    return digits.append(length - digits.size(), '0');
  };
  const std::string a = aligned(*this);
  const std::string b = aligned(other);
  if (negative_ != other.negative_) return {negative_, Sum(a, b), point + 1};
  if (a >= b) return {negative_, Difference(a, b), point};
  return {!negative_, Difference(b, a), point};
}

Decimal Decimal::Rounded(int places, Tie tie) const {
  const int kept = point_ + places;  // digits before the cut
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

double ReadableDouble(float number) {
  return ExactNumber<double>(ExactText(number)).value_or(number);
}

double DecimalDifference(double a, double b) {
  const auto first = Decimal::FromText(ExactText(a));
  const auto second = Decimal::FromText(ExactText(b));
  if (!first || !second) return a - b;
  return ExactNumber<double>(first->Minus(*second).Canonical()).value_or(a - b);
}

}  // namespace velumar
