#include "platform/key_notation.h"

#include <stdexcept>

namespace velumar {
namespace {

constexpr KeyStroke Typed(char32_t character) { return {.character = character}; }

TEST(KeyNotation, ParsesKeys) {
  const std::vector<std::pair<std::string, std::vector<KeyStroke>>> texts{
      {"", {}},
      {"%VR", {{.alt = true, .character = U'V'}, Typed(U'R')}},
      {"+^%~", {{.alt = true, .ctrl = true, .shift = true, .named = NamedKey::kEnter}}},
      {"%(ab)c", {{.alt = true, .character = U'a'}, {.alt = true, .character = U'b'}, Typed(U'c')}},
      {"{%}{}}{{}", {Typed(U'%'), Typed(U'}'), Typed(U'{')}},
      {"é€ก𝄞", {Typed(U'é'), Typed(U'€'), Typed(U'ก'), Typed(U'𝄞')}},
      {"{é}", {Typed(U'é')}},
  };
  for (const auto& [text, keys] : texts) EXPECT_EQ(ParseKeys(text), keys) << text;
}

TEST(KeyNotation, RefusesOtherTexts) {
  for (const char* const text : {"%", "a^", "%(ab", "a)", "{TAB", "{NOKEY}", "{}", "}", "[", "\xC3",
                                 "a\nb", "{\x01}", "\x7F"}) {
    EXPECT_THROW(ParseKeys(text), std::invalid_argument) << text;
  }
}

TEST(KeyNotation, EscapedTextsAreTypedAsTheyAre) {
  const std::string text = "C:\\100% (new)\\~a+b^c{d}[e]\\";
  std::vector<KeyStroke> keys;
  for (const char c : text) keys.push_back(Typed(static_cast<char32_t>(c)));
  EXPECT_EQ(ParseKeys(EscapedKeys(text)), keys);
}

}  // namespace
}  // namespace velumar
