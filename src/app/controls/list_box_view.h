#pragma once

#include <QListView>
#include <QStringListModel>
#include <string>
#include <vector>

#include "app/controls/control_view.h"
#include "forms/list_box.h"

namespace velumar {

class ListBoxView : public QListView, public ControlView {
 public:
  ListBoxView(FormCanvas& canvas, QWidget& window, ListBox& box);
  QWidget& Widget() override { return *this; }
  void Update() override;

 private:
  FormCanvas& canvas_;
  ListBox& box_;
  QStringListModel lines_;
  std::vector<std::string> shown_;
};

}  // namespace velumar
