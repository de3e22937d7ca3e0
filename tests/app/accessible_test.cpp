#include <gmock/gmock.h>

#include <QAccessible>
#include <map>
#include <set>

#include "shown_desktop.h"

namespace velumar {
namespace {

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

TEST_F(AccessibleTest, EachControlHasANameOfItsOwn) {
  const std::set<ControlKind> kinds = {
      ControlKind::kPictureButton, ControlKind::kButton,   ControlKind::kLabel,
      ControlKind::kTextBox,       ControlKind::kComboBox, ControlKind::kDatePicker,
      ControlKind::kSlider,        ControlKind::kCheckBox, ControlKind::kProgressLine};
  for (Form* form : desktop.All()) {
    if (!form->Loaded()) form->BeLoaded();
    form->Show();
    std::set<QString> names;
    for (Control* control : form->Controls()) {
      if (!kinds.contains(control->Kind())) continue;
      // Their tooltips are set when their window opens.
      if (control->Name() == "Image6" || control->Name() == "Image7") continue;
      if (control->Kind() == ControlKind::kLabel) control->SetText(control->Name() + " shows");
      const auto* const seen = QAccessible::queryAccessibleInterface(&WidgetOf<QWidget>(*control));
      ASSERT_NE(seen, nullptr);
      EXPECT_NE(seen->role(), QAccessible::Client) << form->Name() << "." << control->Name();
      const QString name = seen->text(QAccessible::Name);
      EXPECT_FALSE(name.isEmpty()) << form->Name() << "." << control->Name();
      EXPECT_TRUE(names.insert(name).second) << control->Name() << ": " << name.toStdString();
    }
  }
}

// From the first box to the picture buttons in the title, each once.
TEST_F(AccessibleTest, TabGoesThroughAWholeWindow) {
  const std::map<Form*, std::pair<std::string, std::string>> ends = {
      {&desktop.form1(), {"Text3", "imgGraph"}},
      {&desktop.form2(), {"HScrollx", "Image7"}},
      {&desktop.form3(), {"HScrollx", "chkShowBigform"}}};
  for (const auto& [form, end] : ends) {
    form->Show();
    const std::vector<std::string> walk = TabWalk(*form);
    EXPECT_EQ(walk.front(), end.first);
    EXPECT_EQ(walk.back(), end.second);
    EXPECT_EQ(std::set<std::string>(walk.begin(), walk.end()).size(), walk.size());
    for (const Control* control : form->Controls()) {
      if (control->Kind() != ControlKind::kPictureButton || !control->Visible()) continue;
      EXPECT_THAT(walk, testing::Contains(control->Name()));
    }
  }
}

}  // namespace
}  // namespace velumar
