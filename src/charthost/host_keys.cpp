#include "charthost/host_keys.h"

namespace velumar {
namespace {

HostMenu MenuOf(const ChartKey& key) {
  if (!key.alt || key.control || key.meta) return HostMenu::kNone;
  if (key.letter == 'F') return HostMenu::kFile;
  return key.letter == 'V' ? HostMenu::kView : HostMenu::kNone;
}

HostAction ActionOf(HostMenu menu, const ChartKey& key) {
  if (key.control || key.meta) return HostAction::kNone;
  if (menu == HostMenu::kFile && key.letter == 'E') return HostAction::kCloseAll;
  if (menu == HostMenu::kFile && key.letter == 'O') return HostAction::kOpen;
  if (menu == HostMenu::kView && key.letter == 'R') return HostAction::kRefresh;
  return HostAction::kNone;
}

HostAction RingAction(const ChartKey& key) {
  if (key.letter != '\t' || !key.control || key.alt || key.meta) return HostAction::kNone;
  return key.shift ? HostAction::kPreviousChart : HostAction::kNextChart;
}

}  // namespace

HostKeys::Answer HostKeys::Peek(const ChartKey& key) const {
  const HostAction ring = RingAction(key);
  if (ring != HostAction::kNone) return {true, ring};
  const HostAction action = ActionOf(armed_, key);
  if (action != HostAction::kNone) return {true, action};
  return {MenuOf(key) != HostMenu::kNone, HostAction::kNone};
}

HostKeys::Answer HostKeys::Press(const ChartKey& key) {
  const Answer answer = Peek(key);
  if (answer.action != HostAction::kNone || key.letter == '\x1b') {
    Disarm();
  } else if (answer.taken) {
    armed_ = MenuOf(key);
  }
  return answer;
}

}  // namespace velumar
