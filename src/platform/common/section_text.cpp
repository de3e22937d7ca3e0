#include "platform/common/section_text.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>

namespace velumar {

namespace {

char Lowered(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

void AppendEscape(std::string& text, char c) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  const auto byte = static_cast<unsigned char>(c);
  text += '%';
  text += kDigits[byte >> 4];
  text += kDigits[byte & 0xF];
}

// `special` are the characters that have a meaning where this text will stand, `first` those that
// have one at its beginning.
std::string Escaped(std::string_view text, std::string_view special, std::string_view first = {}) {
  constexpr std::string_view kAlways("%\n\r\0", 4);
  std::string escaped;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (kAlways.find(c) != std::string_view::npos || special.find(c) != std::string_view::npos ||
        (i == 0 && first.find(c) != std::string_view::npos)) {
      AppendEscape(escaped, c);
    } else {
      escaped += c;
    }
  }
  return escaped;
}

std::string Unescaped(std::string_view text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    unsigned value = 0;
    const char* const digits = text.data() + i + 1;
    if (text[i] == '%' && i + 2 < text.size() &&
        std::from_chars(digits, digits + 2, value, 16).ptr == digits + 2) {
      plain += static_cast<char>(value);
      i += 2;
    } else {
      plain += text[i];
    }
  }
  return plain;
}

class SectionParser {
 public:
  void Line(std::string_view line) {
    ++number_;
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (line.find('\0') != std::string_view::npos) Refuse("holds a zero byte");
    if (line.empty() || line.front() == '#') return;
    if (line.front() == '[') {
      Header(line);
    } else {
      Entry(line);
    }
  }

  Sections Take() { return std::move(sections_); }

 private:
  void Header(std::string_view line) {
    if (!line.ends_with(']')) Refuse("has no closing bracket");
    section_ = &sections_[Unescaped(line.substr(1, line.size() - 2))];
  }

  void Entry(std::string_view line) {
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos) Refuse("has no equals sign");
    if (section_ == nullptr) Refuse("stands before any section");
    (*section_)[Unescaped(line.substr(0, equals))] = Unescaped(line.substr(equals + 1));
  }

  [[noreturn]] void Refuse(const std::string& why) const {
    throw std::invalid_argument("line " + std::to_string(number_) + " " + why);
  }

  int number_ = 0;
  Sections sections_;
  SectionEntries* section_ = nullptr;
};

}  // namespace

bool CaselessLess::operator()(std::string_view left, std::string_view right) const {
  return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(),
                                      [](char a, char b) { return Lowered(a) < Lowered(b); });
}

std::string FormatSections(const Sections& sections) {
  std::string text;
  for (const auto& [name, entries] : sections) {
    if (!text.empty()) text += '\n';
    text += "[" + Escaped(name, "") + "]\n";
    for (const auto& [entry, value] : entries) {
      text += Escaped(entry, "=", "#[") + "=" + Escaped(value, "") + "\n";
    }
  }
  return text;
}

Sections ParseSections(std::string_view text) {
  SectionParser parser;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    parser.Line(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return parser.Take();
}

}  // namespace velumar
