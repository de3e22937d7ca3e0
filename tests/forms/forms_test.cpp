#include <set>

#include "forms/desktop.h"

namespace velumar {
namespace {

TEST(Controls, TheUserReachesOnlyShownAndEnabledControls) {
  Desktop desktop;
  Form2& form = desktop.form2();
  int clicks = 0;
  form.Image3.on_click = [&] { ++clicks; };
  form.Image3.UserClick();  // the window is hidden
  form.Show();
  form.Image3.UserClick();
  form.Image3.SetVisible(false);
  form.Image3.UserClick();
  form.Image3.SetVisible(true);
  form.Image3.SetEnabled(false);
  form.Image3.UserClick();
  EXPECT_EQ(clicks, 1);
}

TEST(Controls, AssignmentsFireTheSameEventsAsTheUser) {
  Desktop desktop;
  Form1& form = desktop.form1();
  std::vector<std::string> events;
  form.Text3.on_change = [&] { events.push_back("Text3 " + form.Text3.Text()); };
  form.Combo1.on_click = [&] { events.push_back("Combo1 " + form.Combo1.Text()); };
  form.Text3.SetText("a");
  form.Text3.SetText("a");  // no change, no event
  form.Combo1.SetRows({{"B", 0}, {"A", 1}, {"A", 2}});
  form.Combo1.SetIndex(0);
  EXPECT_EQ(events, (std::vector<std::string>{"Text3 a", "Combo1 A"}));
  EXPECT_EQ(form.Combo1.Rows()[0].data, 1) << "equal lines keep their order";
  form.Combo1.SetText("typed");
  EXPECT_EQ(form.Combo1.Index(), -1);
}

struct RecordingListener : FormListener {
  void FormLoaded(Form& form) override { seen.push_back("loaded " + form.Name()); }
  void FormUnloaded(Form& form) override { seen.push_back("unloaded " + form.Name()); }
  void FormChanged(Form& form) override { seen.push_back("changed " + form.Name()); }
  void ControlChanged(Form& form, Control& control) override {
    seen.push_back(form.Name() + "." + control.Name());
  }
  void FormRaised(Form& form) override { seen.push_back("raise " + form.Name()); }
  void DragStarted(Form& form) override { seen.push_back("drag " + form.Name()); }
  std::vector<std::string> seen;
};

TEST(Desktop, TheListenerHearsEachChangeOnce) {
  RecordingListener listener;
  Desktop desktop;
  desktop.SetListener(&listener);
  Form2& form = desktop.form2();
  form.Label6.SetText("x");
  form.Label6.SetText("x");
  form.Show();
  form.Show();
  form.StartDrag();
  desktop.Unload(form);
  EXPECT_EQ(listener.seen,
            (std::vector<std::string>{"loaded Form2", "Form2.Label6", "changed Form2",
                                      "raise Form2", "drag Form2", "unloaded Form2"}));
}

// No control is outside its window, and no name appears twice.
TEST(Desktop, TablesAreSound) {
  constexpr float kHair = kTwipsPerPixel;  // a frame's own line may be cut
  Desktop desktop;
  for (const Form* form : desktop.All()) {
    std::set<std::string> names;
    for (const Control* control : form->Controls()) {
      EXPECT_TRUE(names.insert(control->Name()).second) << form->Name() << control->Name();
      EXPECT_EQ(desktop.Find(form->Name())->Find(control->Name()), control);
      // Fitted to the window at load, or laid under it to be looked at piece by piece.
      const ControlKind kind = control->Kind();
      if (kind == ControlKind::kPicture || kind == ControlKind::kSheet) continue;
      EXPECT_GE(control->Left(), 0);
      EXPECT_LE(control->Left() + control->Width(), form->Width() + kHair) << control->Name();
      // The one line of a big window is drawn in the middle of what shows.
      if (form->Controls().size() == 1) continue;
      EXPECT_LE(control->Top() + control->Height(), form->Height()) << control->Name();
    }
  }
}

}  // namespace
}  // namespace velumar
