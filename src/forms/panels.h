#pragma once

#include <string>
#include <utility>
#include <vector>

#include "forms/control.h"

namespace velumar {

// A read-only list of lines.
class ListBox : public Control {
 public:
  ListBox(Form& form, const ControlSpec& spec) : Control(form, ControlKind::kListBox, spec) {}
  void Reset() override {
    Control::Reset();
    lines_.clear();
  }
  const std::vector<std::string>& Lines() const { return lines_; }
  void SetLines(std::vector<std::string> lines) {
    lines_ = std::move(lines);
    Changed();
  }
  // If true, long lines are wrapped instead of scrolled.
  bool Wraps() const { return wraps_; }
  void SetWraps(bool wraps) { wraps_ = wraps; }

 private:
  std::vector<std::string> lines_;
  bool wraps_ = false;
};

// Scrolls a view; vertical if it is higher than wide.
class ScrollBar : public Slider {
 public:
  ScrollBar(Form& form, const ControlSpec& spec, Range range, int start_value)
      : Slider(form, spec, range, start_value, ControlKind::kScrollBar) {}
};

// A row of numbered buttons; missing numbers are gaps.
class Toolbar : public Control {
 public:
  struct Item {
    int index = 0;
    std::string_view caption;  // "&" precedes the letter of its key
    std::string_view tooltip;
    std::string_view art;
  };

  Toolbar(Form& form, const ControlSpec& spec, std::vector<Item> items)
      : Control(form, ControlKind::kToolbar, spec), items_(std::move(items)) {}
  const std::vector<Item>& Items() const { return items_; }
  void UserButton(int index) { UserFire(on_button, index); }

  std::function<void(int index)> on_button;

 private:
  std::vector<Item> items_;
};

// Chooses one of several tabs. Setting the index fires on_click if it changes.
class TabBar : public ValueControl<int> {
 public:
  TabBar(Form& form, const ControlSpec& spec, std::vector<std::string> titles)
      : ValueControl(form, ControlKind::kTabBar, spec), titles_(std::move(titles)) {}
  const std::vector<std::string>& Titles() const { return titles_; }
  int Index() const { return Value(); }
  void SetIndex(int index) { SetValue(index, on_click); }
  void UserChoose(int index) {
    if (Reachable() && index >= 0 && index < static_cast<int>(titles_.size())) SetIndex(index);
  }

 private:
  std::vector<std::string> titles_;
};

// A menu bar with one menu, Text, whose lists have entries with check marks.
class Menu : public Control {
 public:
  struct List {
    std::string_view caption;
    std::vector<std::string> entries;
    int start = 0;  // the entry that is checked at first
  };

  Menu(Form& form, const ControlSpec& spec, std::vector<List> lists)
      : Control(form, ControlKind::kMenu, spec), lists_(std::move(lists)) {
    Menu::Reset();
  }
  void Reset() override {
    Control::Reset();
    ticks_.clear();
    for (const List& list : lists_) {
      ticks_.emplace_back(list.entries.size());
      ticks_.back().at(static_cast<std::size_t>(list.start)) = true;
    }
  }
  const std::vector<List>& Lists() const { return lists_; }
  bool Ticked(std::size_t list, std::size_t entry) const { return ticks_.at(list).at(entry); }
  void Tick(std::size_t list, std::size_t entry, bool ticked) {
    ticks_.at(list).at(entry) = ticked;
    Changed();
  }
  // Checks one entry and unchecks the others of its list.
  void TickOnly(std::size_t list, std::size_t entry) {
    ticks_.at(list).assign(ticks_.at(list).size(), false);
    Tick(list, entry, true);
  }
  void UserEntry(std::size_t list, std::size_t entry) { UserFire(on_entry, list, entry); }

  std::function<void(std::size_t list, std::size_t entry)> on_entry;

 private:
  std::vector<List> lists_;
  std::vector<std::vector<bool>> ticks_;
};

}  // namespace velumar
