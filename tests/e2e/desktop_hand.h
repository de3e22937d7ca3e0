#pragma once

#include <functional>
#include <optional>
#include <string>

extern "C" {
#include <xdo.h>
}

namespace velumar {

// Waits until the condition holds, looking every 50 ms; false when it never did.
bool Eventually(const std::function<bool()>& condition, double seconds = 20);

// A window and its place on the screen in pixels.
struct ScreenRect {
  unsigned long window = 0;
  int x = 0;
  int y = 0;
  unsigned width = 0;
  unsigned height = 0;
};

// A person's hand and eyes on the X display: finds windows by title and size, clicks and types.
class DesktopHand {
 public:
  DesktopHand();
  ~DesktopHand();
  DesktopHand(const DesktopHand&) = delete;
  DesktopHand& operator=(const DesktopHand&) = delete;

  // The shown window whose title begins so and whose size in pixels is near the one given in twips.
  std::optional<ScreenRect> Find(const std::string& title, float width_twips, float height_twips);
  // What a logical pixel has of the screen's: sizes and places in twips grow with it.
  void SetScale(int scale) { scale_ = scale; }
  // Clicks into the middle of a control of that window, twips relative to it.
  void Click(const ScreenRect& window, float left, float top, float width, float height);
  void ClickAt(int x, int y);
  void PointAt(int x, int y);
  // A click so short that the button is up before any program has read that it went down.
  void Tap(const ScreenRect& window, float left, float top);
  // "alt+f", "Return"; and a text as it stands.
  void Press(const std::string& keys);
  void Type(const std::string& text);
  void Activate(const std::string& title);
  void Activate(const ScreenRect& window);
  // From a place of that window in twips, by so many pixels, with the button held.
  void Drag(const ScreenRect& window, float left, float top, int dx, int dy);
  // 1 is solid.
  double Opacity(const ScreenRect& window);
  // The whole screen as a picture file.
  void Look(const std::string& file);
  // Of the window that has the focus.
  std::string FrontTitle();

 private:
  bool Near(unsigned pixels, float twips) const;
  int Pixels(float twips) const;

  xdo_t* xdo_;
  int scale_ = 1;
};

}  // namespace velumar
