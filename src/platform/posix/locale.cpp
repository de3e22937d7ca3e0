#include "platform/posix/locale.h"

#include <langinfo.h>

#include <algorithm>
#include <array>
#include <clocale>
#include <cstdlib>
#include <optional>
#include <utility>

#include "platform/system.h"

namespace velumar {

namespace {

constexpr std::string_view kPlainPattern = "M/d/yyyy";

// The fields of a format. Digits of other scripts (%O) and years of an era (%E) become plain
// numbers, as in the dates of bars.
constexpr std::array<std::pair<std::string_view, std::string_view>, 18> kFields{{
    {"d", "dd"},
    {"e", "d"},
    {"-d", "d"},
    {"Od", "dd"},
    {"Oe", "d"},
    {"m", "MM"},
    {"-m", "M"},
    {"Om", "MM"},
    {"b", "MMM"},
    {"h", "MMM"},
    {"B", "MMMM"},
    {"Y", "yyyy"},
    {"Ey", "yyyy"},
    {"EY", "yyyy"},
    {"y", "yy"},
    {"Oy", "yy"},
    {"a", "ddd"},
    {"A", "dddd"},
}};

// Abbreviations, and pieces that are one field together.
constexpr std::array<std::pair<std::string_view, std::string_view>, 5> kShorthands{{
    {"%D", "%m/%d/%y"},
    {"%F", "%Y-%m-%d"},
    {"%OC%Oy", "%Y"},
    {"%EC%Ey", "%Y"},
    {"%C%y", "%Y"},
}};

std::string SpelledOut(std::string format) {
  for (const auto& [shorthand, meaning] : kShorthands) {
    for (std::size_t at = format.find(shorthand); at != std::string::npos;
         at = format.find(shorthand, at + meaning.size())) {
      format.replace(at, shorthand.size(), meaning);
    }
  }
  return format;
}

std::optional<std::string_view> TakeField(std::string_view& format) {
  for (const auto& [field, letters] : kFields) {
    if (!format.starts_with(field)) continue;
    format.remove_prefix(field.size());
    return letters;
  }
  return std::nullopt;
}

bool IsLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

// Letters would be fields of the pattern.
std::string Quoted(std::string_view text) {
  const bool letters = std::any_of(text.begin(), text.end(), IsLetter);
  return letters ? "'" + std::string(text) + "'" : std::string(text);
}

// Counts the fields of a letter that are numbers or names of months.
int CountOf(std::string_view pattern, char letter) {
  int runs = 0;
  bool quoted = false;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    if (pattern[i] == '\'') quoted = !quoted;
    if (quoted || pattern[i] != letter || (i > 0 && pattern[i - 1] == letter)) continue;
    const bool weekday = letter == 'd' && pattern.substr(i).starts_with("ddd");
    if (!weekday) ++runs;
  }
  return runs;
}

bool IsFieldLetter(char c) { return c == 'd' || c == 'M' || c == 'y'; }

// The name of the time locale, looked up as the C library does.
std::string_view NameOfTimeLocale() {
  for (const char* const variable : {"LC_ALL", "LC_TIME", "LANG"}) {
    const char* const name = std::getenv(variable);
    if (name != nullptr && *name != '\0') return name;
  }
  return "C";
}

bool IsPlainLocale(std::string_view name) {
  return name == "C" || name == "POSIX" || name.starts_with("C.");
}

std::string PatternOfEnvironment() {
  if (IsPlainLocale(NameOfTimeLocale())) return std::string(kPlainPattern);
  const locale_t locale = ::newlocale(LC_TIME_MASK, "", nullptr);
  if (locale == nullptr) return std::string(kPlainPattern);
  std::string pattern = PatternOfDateFormat(::nl_langinfo_l(D_FMT, locale));
  ::freelocale(locale);
  return pattern;
}

// The date format of the environment's LC_TIME, which the process itself doesn't switch to.
// QLocale's short format has two-digit years where the system's has four.
class PosixLocale : public LocaleInfo {
 public:
  std::string DateSeparator() const override { return SeparatorOfPattern(pattern_); }
  std::string ShortDatePattern() const override { return pattern_; }

 private:
  std::string pattern_ = PatternOfEnvironment();
};

}  // namespace

std::string PatternOfDateFormat(std::string_view format) {
  const std::string spelled = SpelledOut(std::string(format));
  // A pattern can't contain a quote.
  if (spelled.find('\'') != std::string::npos) return std::string(kPlainPattern);
  std::string pattern;
  for (std::string_view rest = spelled; !rest.empty();) {
    const std::size_t text = std::min(rest.find('%'), rest.size());
    pattern += Quoted(rest.substr(0, text));
    rest.remove_prefix(text);
    if (rest.empty()) break;
    rest.remove_prefix(1);
    const auto letters = TakeField(rest);
    if (!letters) return std::string(kPlainPattern);
    pattern += *letters;
  }
  const bool whole =
      CountOf(pattern, 'd') == 1 && CountOf(pattern, 'M') == 1 && CountOf(pattern, 'y') == 1;
  return whole ? pattern : std::string(kPlainPattern);
}

std::string SeparatorOfPattern(std::string_view pattern) {
  constexpr std::string_view kUsual = "/";
  std::optional<std::string_view> separator;
  std::optional<std::size_t> field_end;
  for (std::size_t at = 0; at < pattern.size(); ++at) {
    if (!IsFieldLetter(pattern[at])) continue;
    if (field_end && at > *field_end) {
      const std::string_view gap = pattern.substr(*field_end, at - *field_end);
      if (separator.value_or(gap) != gap) return std::string(kUsual);
      separator = gap;
    }
    field_end = at + 1;
  }
  return std::string(separator.value_or(kUsual));
}

std::unique_ptr<LocaleInfo> SystemLocale() { return std::make_unique<PosixLocale>(); }

}  // namespace velumar
