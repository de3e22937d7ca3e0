#include <set>

#include "forms/desktop.h"

namespace velumar {
namespace {

TEST(Controls, AssignmentsFireEventsAndTheUserReachesOnlyEnabledControls) {
  Desktop desktop;
  Form1& form = desktop.form1();
  std::vector<std::string> events;
  form.Text3.on_change = [&] { events.push_back("Text3 " + form.Text3.Text()); };
  form.Combo1.on_click = [&] { events.push_back("Combo1 " + form.Combo1.Text()); };
  form.Image3.on_click = [&] { events.push_back("Image3"); };
  form.Image3.UserClick();  // the window is hidden
  form.Show();
  form.Image3.UserClick();
  form.Image3.SetVisible(false);
  form.Image3.UserClick();
  form.Image3.SetVisible(true);
  form.Image3.SetEnabled(false);
  form.Image3.UserClick();
  form.Text3.SetText("a");
  form.Text3.SetText("a");  // no change, no event
  form.Combo1.SetRows({{"B", 0}, {"A", 1}, {"A", 2}});
  form.Combo1.SetIndex(0);
  EXPECT_EQ(events, (std::vector<std::string>{"Image3", "Text3 a", "Combo1 A"}));
  EXPECT_EQ(form.Combo1.Rows()[0].data, 1) << "equal lines keep their order";
  form.Combo1.SetText("typed");
  EXPECT_EQ(form.Combo1.Index(), -1);
  form.Combo1.SetIndex(1);
  Chart& chart = desktop.frmResult().MSChart1;
  chart.UserSpan(std::pair(1.0, 2.0));
  chart.SetRows({});
  EXPECT_FALSE(chart.Content().span.has_value()) << "another run has other rows";
  Table& sessions = desktop.frmPractice().lstSessions;
  sessions.SetContent({3, {}, {}});
  sessions.Select({2});
  sessions.SetContent({3, {}, {}});
  EXPECT_TRUE(sessions.Selected().empty()) << "row 2 is another session now";
  desktop.Unload(form);
  EXPECT_EQ(desktop.form1().Combo1.Index(), -1) << "a window opens as it was designed";
  Table& orders = desktop.frmResult().lstOrders;
  orders.MarkSorting({6, true});
  desktop.Unload(desktop.frmResult());
  EXPECT_TRUE(desktop.frmResult().lstOrders.SortedBy() == Table::Sorting());
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
