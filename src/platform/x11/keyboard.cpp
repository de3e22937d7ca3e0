#include "platform/x11/keyboard.h"

#include <optional>
#include <stdexcept>

namespace velumar {

namespace {

// The default handlers end the process if a window has closed in the meantime.
int IgnoreError(Display*, XErrorEvent*) { return 0; }

// The same if the display is gone; all further calls fail.
void NoteGone(Display*, void* gone) { *static_cast<bool*>(gone) = true; }

bool TakesKeysFromPrograms(Display* display) {
  int opcode = 0;
  int first_event = 0;
  int first_error = 0;
  return XQueryExtension(display, "XTEST", &opcode, &first_event, &first_error) != False;
}

Window ParentOf(Display* display, Window window) {
  Window root = 0;
  Window parent = 0;
  Window* children = nullptr;
  unsigned count = 0;
  if (XQueryTree(display, window, &root, &parent, &children, &count) == 0) return 0;
  if (children != nullptr) XFree(children);
  return parent;
}

// Gives a window the focus and returns it to the previous one at the end.
class FocusLoan {
 public:
  FocusLoan(Display* display, Window window) : display_(display) {
    XGetInputFocus(display_, &before_, &revert_);
    XSetInputFocus(display_, window, RevertToParent, CurrentTime);
  }
  ~FocusLoan() {
    XSetInputFocus(display_, before_, revert_, CurrentTime);
    XSync(display_, False);
  }
  FocusLoan(const FocusLoan&) = delete;
  FocusLoan& operator=(const FocusLoan&) = delete;

 private:
  Display* display_;
  Window before_ = 0;
  int revert_ = 0;
};

}  // namespace

X11Keyboard::X11Keyboard(const std::string& display_name)
    : errors_before_(XSetErrorHandler(IgnoreError)),
      display_(xdo_new(display_name.empty() ? nullptr : display_name.c_str())) {
  try {
    if (!display_) throw std::runtime_error("The X display can't be reached.");
    XSetIOErrorExitHandler(display_->xdpy, NoteGone, &gone_);
    if (!TakesKeysFromPrograms(display_->xdpy)) {
      throw std::runtime_error(
          "The X display does not accept keys from programs: it lacks the XTEST extension.");
    }
    layout_ = std::make_unique<X11Layout>(*display_);
  } catch (...) {
    XSetErrorHandler(errors_before_);
    throw;
  }
}

X11Keyboard::~X11Keyboard() {
  layout_.reset();
  display_.reset();
  XSetErrorHandler(errors_before_);
}

void X11Keyboard::Prepare(std::span<const KeyStroke> strokes) {
  layout_->Lend(strokes, State());
  RequireAlive();
}

X11Keyboard::Outcome X11Keyboard::Type(const KeyStroke& stroke, Window window, Reach reach) {
  const Outcome outcome = TypeGrabbed(stroke, window, reach);
  RequireAlive();
  return outcome;
}

X11Keyboard::Outcome X11Keyboard::TypeGrabbed(const KeyStroke& stroke, Window window, Reach reach) {
  const X11ServerGrab grab(display_->xdpy);
  XkbStateRec state = State();
  if (reach == Reach::kFocused && !FocusIsInside(window)) return Outcome::kFocusElsewhere;
  constexpr unsigned kShortcutLocks = ShiftMask | ControlMask | Mod1Mask | Mod4Mask;
  if ((state.base_mods | state.latched_mods | (state.locked_mods & kShortcutLocks)) != 0 ||
      (reach == Reach::kBehind && GrabbedByAnotherProgram())) {
    return Outcome::kUserTypes;
  }
  std::optional<X11Layout::Key> key = layout_->Find(stroke, state);
  // Some letters can't be typed under Caps Lock, with or without Shift.
  const bool without_caps_lock = !key;
  if (without_caps_lock) {
    state.locked_mods = static_cast<unsigned char>(state.locked_mods & ~LockMask);
    key = layout_->Find(stroke, state);
  }
  if (!key) return Outcome::kNoKey;
  std::optional<FocusLoan> loan;
  if (reach == Reach::kBehind) loan.emplace(display_->xdpy, window);
  // A window that isn't on the screen doesn't get the focus.
  if (!FocusIsInside(window)) return Outcome::kFocusElsewhere;
  if (without_caps_lock) XkbLockModifiers(display_->xdpy, XkbUseCoreKbd, LockMask, 0);
  Press(*key);
  if (without_caps_lock) XkbLockModifiers(display_->xdpy, XkbUseCoreKbd, LockMask, LockMask);
  return Outcome::kTyped;
}

// Keys would then go to that program, whatever window has the focus. Only trying to grab the
// keyboard shows it.
bool X11Keyboard::GrabbedByAnotherProgram() const {
  Display* const display = display_->xdpy;
  const int answer = XGrabKeyboard(display, DefaultRootWindow(display), True, GrabModeAsync,
                                   GrabModeAsync, CurrentTime);
  if (answer == GrabSuccess) XUngrabKeyboard(display, CurrentTime);
  return answer != GrabSuccess;
}

XkbStateRec X11Keyboard::State() const {
  XkbStateRec state{};
  XkbGetState(display_->xdpy, XkbUseCoreKbd, &state);
  return state;
}

bool X11Keyboard::FocusIsInside(Window window) const {
  Window focus = 0;
  int revert = 0;
  XGetInputFocus(display_->xdpy, &focus, &revert);
  if (focus == PointerRoot) return false;
  while (focus != 0 && focus != window) focus = ParentOf(display_->xdpy, focus);
  return focus == window;
}

void X11Keyboard::Press(const X11Layout::Key& key) {
  charcodemap_t press{};
  press.code = key.code;
  press.group = key.group;
  press.modmask = static_cast<int>(key.modifiers);
  int held = 0;
  xdo_send_keysequence_window_list_do(display_.get(), CURRENTWINDOW, &press, 1, True, &held, 0);
  xdo_send_keysequence_window_list_do(display_.get(), CURRENTWINDOW, &press, 1, False, &held, 0);
}

void X11Keyboard::RequireAlive() const {
  if (gone_) throw std::runtime_error("The connection to the X display was lost.");
}

}  // namespace velumar
