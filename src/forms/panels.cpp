#include "forms/panels.h"

namespace velumar {

void Toolbar::UserButton(int index) {
  if (!Reachable()) return;
  if (const auto handler = on_button) handler(index);
}

void TabBar::Reset() {
  Control::Reset();
  index_ = 0;
}

void TabBar::SetIndex(int index) {
  if (!Assign(index_, index)) return;
  if (const auto handler = on_click) handler();
}

void TabBar::UserChoose(int index) {
  if (Reachable() && index >= 0 && index < static_cast<int>(titles_.size())) SetIndex(index);
}

Menu::Menu(Form& form, const ControlSpec& spec, std::vector<List> lists)
    : Control(form, ControlKind::kMenu, spec), lists_(std::move(lists)) {
  Menu::Reset();
}

void Menu::Reset() {
  Control::Reset();
  ticks_.clear();
  for (const List& list : lists_) {
    ticks_.emplace_back(list.entries.size());
    ticks_.back().at(static_cast<std::size_t>(list.start)) = true;
  }
}

void Menu::Tick(std::size_t list, std::size_t entry, bool ticked) {
  ticks_.at(list).at(entry) = ticked;
  Changed();
}

void Menu::TickOnly(std::size_t list, std::size_t entry) {
  ticks_.at(list).assign(ticks_.at(list).size(), false);
  Tick(list, entry, true);
}

void Menu::UserEntry(std::size_t list, std::size_t entry) {
  if (!Reachable()) return;
  if (const auto handler = on_entry) handler(list, entry);
}

}  // namespace velumar
