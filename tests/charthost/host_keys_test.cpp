#include "charthost/host_keys.h"

namespace velumar {
namespace {

// Keys in short: "%F" with Alt, "^\t" with Control, "+O" with Shift, in any mixture, and last the
// letter.
ChartKey Stroke(const std::string& text) {
  ChartKey key;
  key.alt = text.find('%') != std::string::npos;
  key.control = text.find('^') != std::string::npos;
  key.shift = text.find('+') != std::string::npos;
  if (!text.empty()) key.letter = text.back();
  return key;
}

TEST(HostKeys, AnswersWhatProgramsSend) {
  constexpr auto kNone = HostAction::kNone;
  const std::tuple<const char*, std::vector<std::string>, HostAction> cases[] = {
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
  for (const auto& [name, texts, last] : cases) {
    HostKeys keys;
    HostKeys::Answer answer;
    for (const std::string& text : texts) answer = keys.Press(Stroke(text));
    EXPECT_EQ(answer.action, last) << name;
  }
}

}  // namespace
}  // namespace velumar
