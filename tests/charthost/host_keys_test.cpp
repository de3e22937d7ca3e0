#include "charthost/host_keys.h"

#include <string>
#include <vector>

namespace velumar {
namespace {

// Keys in short: "%F" with Alt, "^\t" with Control, "+O" with Shift, in any mixture.
ChartKey Stroke(const std::string& text) {
  ChartKey key;
  for (const char c : text) {
    if (c == '%')
      key.alt = true;
    else if (c == '^')
      key.control = true;
    else if (c == '+')
      key.shift = true;
    else
      key.letter = c;
  }
  return key;
}

TEST(HostKeys, AnswersWhatProgramsSend) {
  constexpr auto kNone = HostAction::kNone;
  struct {
    const char* name;
    std::vector<std::string> keys;
    HostAction last;
  } const cases[] = {
      {"open, Alt still held", {"%F", "%+O"}, HostAction::kOpen},
      {"ring back", {"^+\t"}, HostAction::kPreviousChart},
      {"close, then open", {"%F", "E", "%F", "O"}, HostAction::kOpen},
      {"nothing is left of a menu", {"%F", "E", "O"}, kNone},
      {"the other menu instead", {"%F", "%V", "R"}, HostAction::kRefresh},
      {"Alt+F twice", {"%F", "%F", "E"}, HostAction::kCloseAll},
      {"a letter alone", {"O"}, kNone},
      {"a tabulator alone", {"\t"}, kNone},
      {"each menu has its own letters", {"%F", "R"}, kNone},
      {"not with Control", {"%F", "^E"}, kNone},
      {"Escape gives up", {"%F", "\x1b", "E"}, kNone},
      {"a person walks in the menu first", {"%V", "", "", "R"}, HostAction::kRefresh},
      {"Ctrl+Alt is another key", {"^%F", "E"}, kNone},
  };
  for (const auto& c : cases) {
    HostKeys keys;
    HostKeys::Answer answer;
    for (const std::string& text : c.keys) answer = keys.Press(Stroke(text));
    EXPECT_EQ(answer.action, c.last) << c.name;
  }
}

}  // namespace
}  // namespace velumar
