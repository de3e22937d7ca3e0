#include "shell/window_shaping.h"

#include <stdexcept>

#include "forms/desktop.h"
#include "platform/virtual_platform.h"

namespace velumar {
namespace {

class ShapingTest : public testing::Test {
 protected:
  VirtualPlatform outside;
  Platform platform = outside.References();
  Desktop desktop;
  Form2& form = desktop.form2();
};

TEST_F(ShapingTest, SlidesMoveInStepsOfFiftyTwips) {
  SlideIn(form, "10000", "120", platform);
  EXPECT_EQ(form.Top(), 10020) << "the last step that doesn't pass the end";
  SlideOut(form, platform);
  EXPECT_EQ(form.Top(), 11520);
  SlideIn(form, "12000", "8132.5", platform);
  EXPECT_EQ(form.Top(), 11520) << "a place below the screen moves it only sideways";
  EXPECT_EQ(form.Left(), 8132);
  EXPECT_THROW(SlideIn(form, "abc", "0", platform), std::invalid_argument);
}

TEST_F(ShapingTest, ASavedPlaceMustBeOnAScreen) {
  const struct {
    const char* top;
    const char* left;
    bool known;
    const char* top_then;
    const char* left_then;
  } cases[] = {
      {"8155.5", "-200", true, "8155.5", "-200"},
      {"0", "500", false, "0", "500"},
      {"11600", "500", false, "11600", "500"},  // below the screen
      {"-1200", "500", false, "-1200", "500"},  // above it
      {"40000", "500", true, "10365", "500"},   // beyond 16 bits: the lowest that shows it whole
      {"300", "1E+09", true, "300", "11145"},
      {"-99999", "500", false, "-99999", "500"},
      {"100", "", false, "100", ""},
  };
  for (const auto& c : cases) {
    std::string top = c.top;
    std::string left = c.left;
    EXPECT_EQ(CanRestorePlace(top, left, form, outside.screen), c.known) << c.top << ", " << c.left;
    EXPECT_EQ(top, c.top_then);
    EXPECT_EQ(left, c.left_then);
  }
}

}  // namespace
}  // namespace velumar
