#include "charthost/host_keys.h"

#include <gtest/gtest.h>

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

struct KeyCase {
  const char* name;
  std::vector<std::string> keys;
  std::vector<HostAction> actions;
  HostMenu armed = HostMenu::kNone;
};

constexpr auto kNone = HostAction::kNone;

TEST(HostKeys, AnswersWhatProgramsSend) {
  const std::vector<KeyCase> cases = {
      {"close all", {"%F", "E"}, {kNone, HostAction::kCloseAll}},
      {"open, Alt released", {"%F", "+O"}, {kNone, HostAction::kOpen}},
      {"open, Alt still held", {"%F", "%+O"}, {kNone, HostAction::kOpen}},
      {"refresh", {"%V", "+R"}, {kNone, HostAction::kRefresh}},
      {"ring", {"^\t"}, {HostAction::kNextChart}},
      {"ring back", {"^+\t"}, {HostAction::kPreviousChart}},
      {"close, then open",
       {"%F", "E", "%F", "O"},
       {kNone, HostAction::kCloseAll, kNone, HostAction::kOpen}},
      {"the other menu instead", {"%F", "%V", "R"}, {kNone, kNone, HostAction::kRefresh}},
      {"Alt+F twice", {"%F", "%F", "E"}, {kNone, kNone, HostAction::kCloseAll}},
      {"letters alone", {"E", "O", "R", "\t"}, {kNone, kNone, kNone, kNone}},
      {"each menu has its own letters", {"%F", "R"}, {kNone, kNone}, HostMenu::kFile},
      {"not with Control", {"%F", "^E"}, {kNone, kNone}, HostMenu::kFile},
      {"Escape gives up", {"%F", "\x1b", "E"}, {kNone, kNone, kNone}},
      {"a person walks in the menu first",
       {"%V", "", "", "R"},
       {kNone, kNone, kNone, HostAction::kRefresh}},
      {"Ctrl+Alt is another key", {"^%F", "E"}, {kNone, kNone}},
  };
  for (const KeyCase& c : cases) {
    HostKeys keys;
    std::vector<HostAction> actions;
    for (const std::string& text : c.keys) {
      const HostKeys::Answer announced = keys.Peek(Stroke(text));
      const HostKeys::Answer answer = keys.Press(Stroke(text));
      EXPECT_EQ(announced.taken, answer.taken) << c.name;
      EXPECT_TRUE(answer.taken || answer.action == kNone) << c.name;
      actions.push_back(answer.action);
    }
    EXPECT_EQ(actions, c.actions) << c.name;
    EXPECT_EQ(keys.Armed(), c.armed) << c.name;
  }
}

}  // namespace
}  // namespace velumar
