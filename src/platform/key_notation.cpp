#include "platform/key_notation.h"

#include <array>
#include <optional>
#include <stdexcept>
#include <utility>

namespace velumar {

namespace {

constexpr std::array<std::pair<std::string_view, NamedKey>, 4> kNamedKeys{{
    {"SPACE", NamedKey::kSpace},
    {"ENTER", NamedKey::kEnter},
    {"END", NamedKey::kEnd},
    {"TAB", NamedKey::kTab},
}};
constexpr std::string_view kSpecial = "+^%~(){}[]";

[[noreturn]] void Refuse(std::string_view text, const std::string& why) {
  throw std::invalid_argument("keys \"" + std::string(text) + "\": " + why);
}

// Bytes of the UTF-8 character that begins with `lead`.
std::size_t CharacterBytes(char lead) {
  const auto byte = static_cast<unsigned char>(lead);
  if (byte < 0x80) return 1;
  if (byte < 0xE0) return 2;
  return byte < 0xF0 ? 3 : 4;
}

char32_t Decode(std::string_view bytes) {
  auto value = static_cast<char32_t>(static_cast<unsigned char>(bytes[0]));
  if (bytes.size() == 1) return value;
  value &= 0x7Fu >> bytes.size();
  for (const char c : bytes.substr(1)) {
    value = (value << 6) | (static_cast<unsigned char>(c) & 0x3Fu);
  }
  return value;
}

// Also no part of a pair of UTF-16.
bool IsControl(char32_t c) {
  return c < 0x20 || (c >= 0x7F && c < 0xA0) || (c >= 0xD800 && c < 0xE000) || c > 0x10FFFF;
}

class Parser {
 public:
  explicit Parser(std::string_view text) : text_(text) {}

  std::vector<KeyStroke> All() {
    while (at_ < text_.size()) Unit({});
    return std::move(keys_);
  }

 private:
  // One key or a group in parentheses, with the modifiers before it.
  void Unit(KeyStroke held) {
    while (at_ < text_.size() && Hold(held)) ++at_;
    if (at_ >= text_.size()) Refuse(text_, "a modifier has no key");
    if (text_[at_] == '(') {
      Group(held);
    } else {
      Key(held);
    }
  }

  bool Hold(KeyStroke& held) const {
    switch (text_[at_]) {
      case '%':
        return held.alt = true;
      case '^':
        return held.ctrl = true;
      case '+':
        return held.shift = true;
      default:
        return false;
    }
  }

  void Group(const KeyStroke& held) {
    ++at_;
    while (at_ < text_.size() && text_[at_] != ')') Unit(held);
    if (at_ >= text_.size()) Refuse(text_, "a parenthesis isn't closed");
    ++at_;
  }

  void Key(KeyStroke held) {
    if (text_[at_] == '{') {
      Braced(held);
    } else if (text_[at_] == '~') {
      ++at_;
      held.named = NamedKey::kEnter;
      keys_.push_back(held);
    } else if (kSpecial.find(text_[at_]) != std::string_view::npos) {
      Refuse(text_, std::string("unexpected \"") + text_[at_] + "\"");
    } else {
      AddCharacter(held, Character());
    }
  }

  void AddCharacter(KeyStroke held, char32_t character) {
    if (IsControl(character)) Refuse(text_, "a control character");
    held.character = character;
    keys_.push_back(held);
  }

  char32_t Character() {
    const std::size_t bytes = CharacterBytes(text_[at_]);
    if (at_ + bytes > text_.size()) Refuse(text_, "the last character is incomplete");
    const char32_t character = Decode(text_.substr(at_, bytes));
    at_ += bytes;
    return character;
  }

  void Braced(KeyStroke held) {
    // "{}}" is the closing brace itself.
    const std::size_t close = text_.find('}', at_ + 2);
    if (close == std::string_view::npos) Refuse(text_, "a brace isn't closed");
    const std::string_view word = text_.substr(at_ + 1, close - at_ - 1);
    at_ = close + 1;
    if (word.size() == CharacterBytes(word[0])) {
      AddCharacter(held, Decode(word));
    } else {
      held.named = Named(word);
      keys_.push_back(held);
    }
  }

  NamedKey Named(std::string_view word) const {
    for (const auto& [name, key] : kNamedKeys) {
      if (name == word) return key;
    }
    Refuse(text_, "unknown key \"" + std::string(word) + "\"");
  }

  std::string_view text_;
  std::size_t at_ = 0;
  std::vector<KeyStroke> keys_;
};

}  // namespace

std::vector<KeyStroke> ParseKeys(std::string_view text) { return Parser(text).All(); }

std::string EscapedKeys(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    if (kSpecial.find(c) != std::string_view::npos) {
      escaped += '{';
      escaped += c;
      escaped += '}';
    } else {
      escaped += c;
    }
  }
  return escaped;
}

}  // namespace velumar
