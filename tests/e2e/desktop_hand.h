#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace velumar {

// Checks every 50 ms until the condition holds; false if it never did.
bool Eventually(const std::function<bool()>& condition, double seconds = 20);

// The lines that a shell command prints, without carriage returns.
std::vector<std::string> OutputOf(const std::string& command);

// A window and its place on the screen in pixels.
struct ScreenRect {
  std::string window;  // its X id
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
};

// A person at the X display: finds windows by title and size, clicks and types (with xdotool).
class DesktopHand {
 public:
  // The visible window whose title starts like this and whose size is near the given one in twips.
  std::optional<ScreenRect> Find(const std::string& title, float width_twips,
                                 float height_twips) const;
  // Screen pixels per logical pixel.
  void SetScale(int scale) { scale_ = scale; }
  // Clicks the middle of a control, given in twips relative to its window.
  void Click(const ScreenRect& window, float left, float top, float width, float height) const;
  void ClickAt(int x, int y) const;
  void PointAt(int x, int y) const;
  // A click so short that the button is up before any program has read that it went down.
  void Tap(const ScreenRect& window, float left, float top) const;
  void Press(const std::string& keys) const;  // "alt+f", "Return"
  void Type(const std::string& text) const;
  void Activate(const std::string& title) const;
  void Activate(const ScreenRect& window) const;
  // From a place in the window in twips, by a number of pixels, with the button down.
  void Drag(const ScreenRect& window, float left, float top, int dx, int dy) const;
  // The title of the window that has the focus.
  std::string FrontTitle() const;

 private:
  bool Near(int pixels, float twips) const;
  int Pixels(float twips) const;

  int scale_ = 1;
};

}  // namespace velumar
