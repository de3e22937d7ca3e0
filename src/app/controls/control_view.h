#pragma once

#include <QKeyEvent>
#include <QPainterPath>
#include <QRect>
#include <QWidget>
#include <functional>
#include <map>
#include <string>
#include <utility>

#include "app/theme/theme.h"
#include "charts/qt_text.h"
#include "forms/control.h"

namespace velumar {

class Form;

using ErrorReport = std::function<void(const std::string& text)>;

// What the views in one window share: how they look, and how the user's events reach the model.
class FormContext {
 public:
  // Exceptions of handlers go to `report`. `look` may change while the window is shown.
  FormContext(QWidget& window, const Form& form, const Appearance& look, ErrorReport report);

  const Appearance& Look() const { return look_; }
  // Calls a handler of the model. The window lives until the handler returns, even if the handler
  // unloads it or waits inside. Events for an unloaded window are dropped.
  void Deliver(const std::function<void()>& event);
  // Drops all further events, and deletes the window once none of its handlers is running.
  void Retire();
  bool Retired() const { return retired_; }

  // The mean colour of the artwork at a place, or the background of the window.
  QColor BackgroundAt(const QRect& place) const;
  // The rounded outline of the window, in logical pixels.
  QPainterPath Outline() const;

 private:
  QWidget& window_;
  const Form& form_;
  const Appearance& look_;
  ErrorReport report_;
  int running_handlers_ = 0;
  bool retired_ = false;
};

// The widget that shows one control. It is a child of the window's widget, which deletes it.
class ControlView {
 public:
  virtual ~ControlView() = default;
  virtual QWidget& Widget() = 0;
  // Shows the state of the model, without sending any event back.
  virtual void Update() = 0;
};

// Place, visible, enabled, tooltip, and the name for screen readers: the same for all controls.
void ApplyCommon(QWidget& widget, const Control& control);

// The virtual key code of a key: 13 for Enter, 27 for Esc, letters by their capital; 0 if there is
// none.
int VirtualKeyCode(const QKeyEvent& event);

// What a view is made of.
template <typename Model>
struct ViewParts {
  FormContext& context;
  QWidget& parent;
  Model& model;
};

// A view that is itself a widget of the toolkit.
template <typename Base, typename Shown>
class View : public Base, public ControlView {
 public:
  using Model = Shown;
  using Parts = ViewParts<Model>;

  explicit View(const Parts& parts)
      : Base(&parts.parent), context_(parts.context), model_(parts.model) {}
  QWidget& Widget() final { return *this; }
  void Update() override {
    ApplyCommon(*this, model_);
    this->update();
  }

 protected:
  const Palette& Colours() const { return context_.Look().palette; }
  QFont DesignFont() const { return context_.Look().faces.For(model_.DesignLook()); }
  // Passes an event to a handler of the model.
  template <typename Handler, typename... Arguments>
  void Pass(Handler handler, Arguments&&... arguments) {
    context_.Deliver([&] { (model_.*handler)(std::forward<Arguments>(arguments)...); });
  }
  // A key that is held down is released once.
  void PassKeyUp(const QKeyEvent& event) {
    if (!event.isAutoRepeat()) Pass(&Model::UserKeyUp, VirtualKeyCode(event));
  }
  void PassTypedText(const QString& text) {
    if (model_.Reachable()) Pass(&Model::SetText, text.toStdString());
  }
  // A slot that passes its signal to a handler of the model.
  template <typename Handled, typename... Arguments>
  auto To(void (Handled::*handler)(Arguments...)) {
    return [this, handler](Arguments... arguments) { Pass(handler, arguments...); };
  }

  FormContext& context_;
  Model& model_;
};

// Twips to whole logical pixels.
int LogicalPixels(float twips);
QRect LogicalPlace(const Control& control);

// The control's own colour, or the theme's if it has none, made readable on that background.
QColor TextColour(const Control& control, const QColor& background, const Palette& palette);

// Text and background of a box in which text is edited.
void ApplyFieldColours(QWidget& widget, const Control& control, const Palette& palette);

ControlView* MakeControlView(FormContext& context, QWidget& parent, Control& control);

// What makes the view for each kind of control. Each file of views adds its own.
using ViewMaker = ControlView* (*)(FormContext& context, QWidget& parent, Control& control);
using ViewMakers = std::map<ControlKind, ViewMaker>;

template <typename AnyView>
ControlView* MakeView(FormContext& context, QWidget& parent, Control& control) {
  return new AnyView({context, parent, static_cast<typename AnyView::Model&>(control)});
}

void AddBarViews(ViewMakers& makers);
void AddButtonViews(ViewMakers& makers);
void AddSurfaceViews(ViewMakers& makers);
void AddListViews(ViewMakers& makers);
void AddChartViews(ViewMakers& makers);
void AddComboBoxView(ViewMakers& makers);
void AddDatePickerView(ViewMakers& makers);
void AddLabelView(ViewMakers& makers);
void AddTextBoxView(ViewMakers& makers);
void AddPictureFileView(ViewMakers& makers);

}  // namespace velumar
