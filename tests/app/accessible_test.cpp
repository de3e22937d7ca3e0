#include <gmock/gmock.h>

#include <QAccessible>
#include <map>

#include "shown_desktop.h"

namespace velumar {
namespace {

using ::testing::ElementsAre;

// What a screen reader and somebody without a mouse find in the windows.
class AccessibleTest : public ShownDesktop {
 protected:
  QWidget& Front(Form& form) {
    FormView& window = View(form);
    window.activateWindow();
    QApplication::setActiveWindow(&window);
    return window;
  }
  // The names of the controls that the Tab key goes to from where the window begins, until it is
  // back; at most 50.
  std::vector<std::string> TabWalk(Form& form) {
    QWidget& window = Front(form);
    std::vector<std::string> names;
    const QWidget* const first = QApplication::focusWidget();
    do {
      const std::string name = QApplication::focusWidget()->objectName().toStdString();
      if (names.empty() || names.back() != name) names.push_back(name);  // day, month, year
      QTest::keyClick(window.windowHandle(), Qt::Key_Tab);
    } while (QApplication::focusWidget() != first && names.size() < 50);
    return names;
  }
};

TEST_F(AccessibleTest, EachControlHasAnOwnNameAndItsRole) {
  const std::map<ControlKind, QAccessible::Role> roles = {
      {ControlKind::kPictureButton, QAccessible::Button},
      {ControlKind::kButton, QAccessible::Button},
      {ControlKind::kLabel, QAccessible::StaticText},
      {ControlKind::kTextBox, QAccessible::EditableText},
      {ControlKind::kComboBox, QAccessible::ComboBox},
      {ControlKind::kDatePicker, QAccessible::SpinBox},
      {ControlKind::kSlider, QAccessible::Slider},
      {ControlKind::kCheckBox, QAccessible::CheckBox},
      {ControlKind::kProgressLine, QAccessible::ProgressBar},
  };
  for (Form* form : desktop.All()) {
    if (!form->Loaded()) form->BeLoaded();
    form->Show();
    std::map<QString, std::string> owners;
    for (Control* control : form->Controls()) {
      // The logic gives these their tooltips when their window opens.
      if (control->Name() == "Image6" || control->Name() == "Image7")
        control->SetToolTip("30 bars");
      if (control->Kind() == ControlKind::kLabel) control->SetText(control->Name() + " tells");
      const auto role = roles.find(control->Kind());
      if (role == roles.end()) continue;
      const auto* const seen = QAccessible::queryAccessibleInterface(&WidgetOf<QWidget>(*control));
      ASSERT_NE(seen, nullptr);
      EXPECT_EQ(seen->role(), role->second) << form->Name() << "." << control->Name();
      const QString name = seen->text(QAccessible::Name);
      EXPECT_FALSE(name.isEmpty()) << form->Name() << "." << control->Name();
      if (control->ToolTip() == "30 bars") continue;
      const auto [owner, fresh] = owners.try_emplace(name, control->Name());
      EXPECT_TRUE(fresh) << control->Name() << " and " << owner->second << " are both called "
                         << name.toStdString();
    }
  }
}

TEST_F(AccessibleTest, TabGoesThroughAWindowFromItsFirstBoxToItsHead) {
  desktop.form1().Show();
  desktop.form2().Show();
  desktop.form3().Show();
  EXPECT_THAT(TabWalk(desktop.form1()),
              ElementsAre("Text3", "Command5", "Combo1", "cbxPeriod", "DTPicker1", "txtcomm",
                          "txtInitPorfolio", "txtVAT", "txtContractValue", "txtProfitperContract",
                          "Image3", "ImgDonate", "Image5", "imgGraph"));
  EXPECT_THAT(TabWalk(desktop.form2()),
              ElementsAre("HScrollx", "txtRefresh", "Image5", "Image6", "Image2", "Image3",
                          "Image4", "Image1", "Image7"));
  EXPECT_THAT(TabWalk(desktop.form3()),
              ElementsAre("HScrollx", "imgGraph", "Image5", "imgLong", "imgOffsetLong", "ImgShort",
                          "ImgOffsetShort", "txtContractVol", "Combo2", "chkShowBigform"));
}

TEST_F(AccessibleTest, APictureButtonShowsTheFocusAndIsPressedByKeys) {
  Form1& form = desktop.form1();
  form.Show();
  QWidget& window = Front(form);
  auto& start = WidgetOf<QWidget>(form.Image3);
  const QImage calm = start.grab().toImage();
  std::vector<std::string> events;
  form.Image3.on_press = [&] { events.emplace_back("press"); };
  form.Image3.on_release = [&] { events.emplace_back("release"); };
  form.Image3.on_click = [&] { events.emplace_back("click"); };
  start.setFocus(Qt::TabFocusReason);
  EXPECT_NE(start.grab().toImage(), calm);
  for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
    events.clear();
    QTest::keyClick(window.windowHandle(), key);
    EXPECT_THAT(events, ElementsAre("press", "release", "click")) << key;
  }
  Click(WidgetOf<QWidget>(form.Text3));
  form.Text3.SetText("/data");
  Click(start);
  EXPECT_FALSE(start.hasFocus()) << "a click leaves the focus where somebody types";
}

}  // namespace
}  // namespace velumar
