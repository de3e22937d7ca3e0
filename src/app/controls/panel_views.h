#pragma once

#include <QAbstractButton>
#include <QAction>
#include <QMenuBar>
#include <QScrollBar>
#include <QTabBar>
#include <QToolButton>
#include <vector>

#include "app/controls/control_view.h"
#include "forms/panels.h"

namespace velumar {

class ToolbarView : public QWidget, public ControlView {
 public:
  ToolbarView(FormCanvas& canvas, QWidget& window, Toolbar& toolbar);
  QWidget& Widget() override { return *this; }
  void Update() override;

 private:
  FormCanvas& canvas_;
  Toolbar& toolbar_;
  std::vector<QToolButton*> buttons_;  // as the toolbar's items
};

class TabBarView : public QTabBar, public ControlView {
 public:
  TabBarView(FormCanvas& canvas, QWidget& window, TabBar& tabs);
  QWidget& Widget() override { return *this; }
  void Update() override;

 private:
  FormCanvas& canvas_;
  TabBar& tabs_;
};

class SwatchView : public QAbstractButton, public ControlView {
 public:
  SwatchView(FormCanvas& canvas, QWidget& window, Swatch& swatch);
  QWidget& Widget() override { return *this; }
  void Update() override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  FormCanvas& canvas_;
  Swatch& swatch_;
};

class LinkView : public QAbstractButton, public ControlView {
 public:
  LinkView(FormCanvas& canvas, QWidget& window, Link& link);
  QWidget& Widget() override { return *this; }
  void Update() override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  FormCanvas& canvas_;
  Link& link_;
};

class ScrollBarView : public QScrollBar, public ControlView {
 public:
  ScrollBarView(FormCanvas& canvas, QWidget& window, ScrollBar& bar);
  QWidget& Widget() override { return *this; }
  void Update() override;

 private:
  FormCanvas& canvas_;
  ScrollBar& bar_;
};

// Stands above the inside of its window, whose height doesn't count it.
class MenuView : public QMenuBar, public ControlView {
 public:
  MenuView(FormCanvas& canvas, QWidget& window, Menu& menu);
  QWidget& Widget() override { return *this; }
  void Update() override;

 private:
  void AddList(QMenu& top, std::size_t list);

  FormCanvas& canvas_;
  Menu& menu_;
  std::vector<std::vector<QAction*>> actions_;  // as the menu's lists
};

class LineView : public QWidget, public ControlView {
 public:
  LineView(QWidget& window, Line& line) : QWidget(&window), line_(line) {}
  QWidget& Widget() override { return *this; }
  void Update() override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Line& line_;
};

class SheetView : public QWidget, public ControlView {
 public:
  SheetView(FormCanvas& canvas, QWidget& window, Sheet& sheet)
      : QWidget(&window), canvas_(canvas), sheet_(sheet) {}
  QWidget& Widget() override { return *this; }
  void Update() override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  FormCanvas& canvas_;
  Sheet& sheet_;
};

}  // namespace velumar
