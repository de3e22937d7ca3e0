#include "shown_desktop.h"

namespace velumar {
namespace {

class PlacingTest : public ShownDesktop {
 protected:
  PlacingTest() {
    form.SetLeft(1500);
    form.SetTop(3000);
  }

  Form2& form = desktop.form2();
};

TEST_F(PlacingTest, WindowAndModelFollowEachOther) {
  FormView& window = View(form);
  form.Show();
  EXPECT_EQ(window.pos(), QPoint(100, 200));
  EXPECT_EQ(window.size(), QSize(281, 77));
  form.SetTop(3052);  // 203.47 pixels
  EXPECT_EQ(window.pos(), QPoint(100, 203));
  EXPECT_EQ(form.Top(), 3052) << "rounding to pixels doesn't come back";
  window.move(120, 220);  // as a late report of an earlier place, or a window manager's own idea
  EXPECT_EQ(form.Top(), 3052);
  QTest::qWait(350);
  window.move(130, 240);  // the user, by the keys of the window manager
  EXPECT_EQ(form.Left(), 130 * 15);
  EXPECT_EQ(form.Top(), 240 * 15);
}

TEST_F(PlacingTest, ControlWindowsTakeTheFocusAndBigNumbersNever) {
  for (Form* each : desktop.All()) {
    if (!each->Loaded()) each->BeLoaded();
    each->SetTopmost(true);
    each->Show();
    const FormView& window = View(*each);
    const bool number = each->Name().rfind("frmBig", 0) == 0;
    EXPECT_TRUE(window.isVisible()) << each->Name();
    EXPECT_NE(window.windowFlags().testFlag(Qt::FramelessWindowHint), each->Bordered());
    EXPECT_TRUE(window.windowFlags().testFlag(Qt::WindowStaysOnTopHint)) << each->Name();
    EXPECT_EQ(window.windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus), number);
    EXPECT_EQ(window.testAttribute(Qt::WA_ShowWithoutActivating), number) << each->Name();
    // Where the program gives the focus back to itself by title, only windows that deal are found.
    EXPECT_EQ(window.windowTitle().startsWith(QStringLiteral("Velumar")),
              !number && !each->Bordered())
        << each->Name();
  }
}

TEST_F(PlacingTest, CornersAreRoundAndOpacityIsTheModels) {
  form.SetCorners(15, 12);
  form.SetOpacity(51);
  form.Show();
  FormView& window = View(form);
  EXPECT_NEAR(window.windowOpacity(), 0.2, 0.005);
  const QImage picture = window.grab().toImage();
  EXPECT_EQ(picture.pixelColor(0, 0).alpha(), 0) << "the corner is cut off the backdrop too";
  EXPECT_EQ(picture.pixelColor(picture.width() / 2, picture.height() - 4).alpha(), 255);
}

}  // namespace
}  // namespace velumar
