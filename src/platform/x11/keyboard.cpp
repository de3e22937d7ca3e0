#include "platform/x11/keyboard.h"

#include <X11/Xutil.h>
#include <X11/keysym.h>

#include <algorithm>
#include <array>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

namespace velumar {

namespace {

constexpr std::array<std::pair<NamedKey, KeySym>, 4> kNamedSymbols{{
    {NamedKey::kSpace, XK_space},
    {NamedKey::kEnter, XK_Return},
    {NamedKey::kEnd, XK_End},
    {NamedKey::kTab, XK_Tab},
}};

// Zero for a stroke that is a character.
KeySym NamedSymbol(const KeyStroke& stroke) {
  for (const auto& [named, symbol] : kNamedSymbols) {
    if (named == stroke.named) return symbol;
  }
  return NoSymbol;
}

// Characters up to U+00FF are their own symbols; the others are in a separate range.
KeySym SymbolOf(char32_t character) {
  constexpr KeySym kUnicode = 0x01000000;
  constexpr char32_t kLastLatin1 = 0xFF;
  return character <= kLastLatin1 ? character : kUnicode | character;
}

char32_t LowerCased(char32_t character) {
  return character >= U'A' && character <= U'Z' ? character - U'A' + U'a' : character;
}

// The case of a shortcut's letter doesn't matter: Alt+F is the key F without Shift.
bool IsShortcut(const KeyStroke& stroke) { return stroke.alt || stroke.ctrl || stroke.shift; }

char32_t CharacterOf(const KeyStroke& stroke) {
  return IsShortcut(stroke) ? LowerCased(stroke.character) : stroke.character;
}

bool OnKeypad(KeySym symbol) { return symbol >= XK_KP_Space && symbol <= XK_KP_9; }

unsigned HeldWith(const KeyStroke& stroke) {
  return (stroke.alt ? Mod1Mask : 0u) | (stroke.ctrl ? ControlMask : 0u) |
         (stroke.shift ? ShiftMask : 0u);
}

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
class TemporaryFocus {
 public:
  TemporaryFocus(Display* display, Window window) : display_(display) {
    XGetInputFocus(display_, &before_, &revert_);
    XSetInputFocus(display_, window, RevertToParent, CurrentTime);
  }
  ~TemporaryFocus() {
    XSetInputFocus(display_, before_, revert_, CurrentTime);
    XSync(display_, False);
  }
  TemporaryFocus(const TemporaryFocus&) = delete;
  TemporaryFocus& operator=(const TemporaryFocus&) = delete;

 private:
  Display* display_;
  Window before_ = 0;
  int revert_ = 0;
};

// Blocks all other programs at the X server while it lives, so none can move the focus or change
// the layout. Until then requests must go through the same display.
class X11ServerGrab {
 public:
  explicit X11ServerGrab(Display* display) : display_(display) { XGrabServer(display_); }
  X11ServerGrab(const X11ServerGrab&) = delete;
  X11ServerGrab& operator=(const X11ServerGrab&) = delete;
  ~X11ServerGrab() {
    XUngrabServer(display_);
    XSync(display_, False);
  }

 private:
  Display* display_;
};

}  // namespace

// The keyboard layout of a display at one moment: which key types a character, and with which
// modifiers. Unused keys can be assigned to characters that it lacks.
class X11Layout {
 public:
  struct Key {
    KeyCode code = 0;
    int group = 0;  // the layout, if the user has several
    unsigned modifiers = 0;
  };

  // `display` must outlive the object.
  explicit X11Layout(const xdo_t& display);
  X11Layout(const X11Layout&) = delete;
  X11Layout& operator=(const X11Layout&) = delete;
  ~X11Layout() { AssignSpareKeys({}, std::exchange(assigned_, {}).size()); }

  // The key with all modifiers for the stroke, under the locks and the group of `state`. Nothing if
  // the layout has no such key.
  std::optional<Key> Find(const KeyStroke& stroke, const XkbStateRec& state) const;

  // Assigns spare keys to the characters that the layout lacks, in order, as far as there are any.
  // Earlier assignments end: programs look up a key when they read it, so they must have read those
  // keys. All in one change, since every program rereads the whole layout after each.
  void AssignMissing(std::span<const KeyStroke> strokes, const XkbStateRec& state);
  // Makes the assignments permanent, for a program that hasn't read the keys yet.
  void Keep();

 private:
  // A key that may type what is wanted.
  struct Candidate {
    KeyCode code;
    KeySym symbol;
    unsigned modifiers;
  };
  struct MapFreer {
    void operator()(XkbDescRec* map) const { XkbFreeKeyboard(map, 0, True); }
  };

  void ReadMap();
  std::vector<Candidate> Candidates(const KeyStroke& stroke) const;
  std::optional<Key> FindInGroup(const Candidate& candidate, int group, bool as_shortcut,
                                 unsigned locks) const;
  bool Gives(const Candidate& candidate, int group, unsigned modifiers) const;
  // `before` spare keys have been assigned until now.
  void AssignSpareKeys(std::vector<char32_t> characters, std::size_t before);

  const xdo_t& display_;
  std::unique_ptr<XkbDescRec, MapFreer> map_;
  std::vector<KeyCode> spare_;
  std::vector<char32_t> assigned_;  // of the first spare keys
};

X11Layout::X11Layout(const xdo_t& display) : display_(display) {
  ReadMap();
  for (int code = display_.keycode_low; code <= display_.keycode_high; ++code) {
    const auto key = static_cast<KeyCode>(code);
    if (XkbKeyNumSyms(map_.get(), key) == 0 && map_->map->modmap[key] == 0) spare_.push_back(key);
  }
}

void X11Layout::ReadMap() {
  map_.reset(XkbGetMap(display_.xdpy, XkbAllClientInfoMask, XkbUseCoreKbd));
  if (!map_) throw std::runtime_error("The X display has no keyboard layout.");
}

std::optional<X11Layout::Key> X11Layout::Find(const KeyStroke& stroke,
                                              const XkbStateRec& state) const {
  // Under Caps Lock, Shift turns letters back to lower case.
  if (stroke.shift && (state.locked_mods & LockMask) != 0) return std::nullopt;
  const std::vector<Candidate> candidates = Candidates(stroke);
  const bool as_shortcut = IsShortcut(stroke) || NamedSymbol(stroke) != NoSymbol;
  std::vector<int> groups{state.group};
  for (int group = 0; group < XkbNumKbdGroups; ++group) {
    if (group != state.group) groups.push_back(group);
  }
  for (const int group : groups) {
    for (const Candidate& candidate : candidates) {
      auto key = FindInGroup(candidate, group, as_shortcut, state.locked_mods);
      if (!key) continue;
      key->modifiers |= HeldWith(stroke);
      return key;
    }
  }
  return std::nullopt;
}

std::vector<X11Layout::Candidate> X11Layout::Candidates(const KeyStroke& stroke) const {
  const KeySym named = NamedSymbol(stroke);
  const char32_t character = CharacterOf(stroke);
  std::vector<Candidate> candidates;
  for (int i = 0; i < display_.charcodes_len; ++i) {
    const charcodemap_t& place = display_.charcodes[i];
    if (place.code == 0 || OnKeypad(place.symbol)) continue;
    const bool wanted =
        named != NoSymbol ? place.symbol == named : static_cast<char32_t>(place.key) == character;
    if (wanted) {
      candidates.push_back({place.code, place.symbol, static_cast<unsigned>(place.modmask)});
    }
  }
  for (std::size_t i = 0; i < assigned_.size(); ++i) {
    if (named == NoSymbol && assigned_[i] == character) {
      candidates.push_back({spare_[i], SymbolOf(character), 0});
    }
  }
  return candidates;
}

std::optional<X11Layout::Key> X11Layout::FindInGroup(const Candidate& candidate, int group,
                                                     bool as_shortcut, unsigned locks) const {
  // Toggling a lock would outlast the key.
  const unsigned level = candidate.modifiers & ~unsigned{LockMask};
  const unsigned under = as_shortcut ? locks & ~unsigned{LockMask} : locks;
  for (const unsigned modifiers : {0u, unsigned{ShiftMask}, level, level ^ ShiftMask}) {
    if (!Gives(candidate, group, under | modifiers)) continue;
    return Key{candidate.code, group, modifiers};
  }
  return std::nullopt;
}

bool X11Layout::Gives(const Candidate& candidate, int group, unsigned modifiers) const {
  const auto core = static_cast<unsigned>(XkbBuildCoreState(modifiers, group));
  unsigned consumed = 0;
  KeySym symbol = NoSymbol;
  if (XkbTranslateKeyCode(map_.get(), candidate.code, core, &consumed, &symbol) == False) {
    return false;
  }
  if ((modifiers & LockMask & ~consumed) != 0) {
    // Programs convert such letters to upper case themselves.
    KeySym lower = NoSymbol;
    XConvertCase(symbol, &lower, &symbol);
  }
  return symbol == candidate.symbol;
}

void X11Layout::AssignMissing(std::span<const KeyStroke> strokes, const XkbStateRec& state) {
  XkbStateRec unlocked = state;
  unlocked.locked_mods = static_cast<unsigned char>(unlocked.locked_mods & ~LockMask);
  const std::size_t before = std::exchange(assigned_, {}).size();
  std::vector<char32_t> missing;
  for (const KeyStroke& stroke : strokes) {
    const char32_t character = CharacterOf(stroke);
    const bool known = std::find(missing.begin(), missing.end(), character) != missing.end();
    if (known || missing.size() == spare_.size() || Find(stroke, unlocked)) continue;
    missing.push_back(character);
  }
  AssignSpareKeys(std::move(missing), before);
}

void X11Layout::Keep() {
  const auto kept = static_cast<std::ptrdiff_t>(std::exchange(assigned_, {}).size());
  spare_.erase(spare_.begin(), spare_.begin() + kept);
}

void X11Layout::AssignSpareKeys(std::vector<char32_t> characters, std::size_t before) {
  const std::size_t touched = std::max(characters.size(), before);
  if (touched == 0) return;
  // If the user has switched the layout since, that must not be undone.
  const X11ServerGrab grab(display_.xdpy);
  ReadMap();
  for (std::size_t i = 0; i < touched; ++i) {
    const bool used = i < characters.size();
    int type = XkbOneLevelIndex;
    XkbChangeTypesOfKey(map_.get(), spare_[i], used ? 1 : 0, XkbGroup1Mask, &type, nullptr);
    if (used) *XkbKeySymsPtr(map_.get(), spare_[i]) = SymbolOf(characters[i]);
  }
  XkbMapChangesRec changes{};
  changes.changed = XkbKeySymsMask;
  changes.first_key_sym = spare_.front();
  changes.num_key_syms = static_cast<unsigned char>(spare_[touched - 1] - spare_.front() + 1);
  XkbChangeMap(display_.xdpy, map_.get(), &changes);
  assigned_ = std::move(characters);
}

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
  layout_->AssignMissing(strokes, State());
  RequireAlive();
}

void X11Keyboard::KeepPrepared() { layout_->Keep(); }

X11Keyboard::Outcome X11Keyboard::Type(const KeyStroke& stroke, Window window, Focus focus) {
  const Outcome outcome = TypeGrabbed(stroke, window, focus);
  RequireAlive();
  return outcome;
}

X11Keyboard::Outcome X11Keyboard::TypeGrabbed(const KeyStroke& stroke, Window window, Focus focus) {
  const X11ServerGrab grab(display_->xdpy);
  XkbStateRec state = State();
  if (focus == Focus::kRequired && !FocusIsInside(window)) return Outcome::kFocusElsewhere;
  constexpr unsigned kShortcutLocks = ShiftMask | ControlMask | Mod1Mask | Mod4Mask;
  if ((state.base_mods | state.latched_mods | (state.locked_mods & kShortcutLocks)) != 0 ||
      (focus == Focus::kTemporary && GrabbedByAnotherProgram())) {
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
  std::optional<TemporaryFocus> temporary;
  if (focus == Focus::kTemporary) temporary.emplace(display_->xdpy, window);
  // A window that isn't on the screen doesn't get the focus.
  if (!FocusIsInside(window)) return Outcome::kFocusElsewhere;
  if (without_caps_lock) XkbLockModifiers(display_->xdpy, XkbUseCoreKbd, LockMask, 0);
  charcodemap_t press{};
  press.code = key->code;
  press.group = key->group;
  press.modmask = static_cast<int>(key->modifiers);
  int held = 0;
  for (const int down : {True, False}) {
    xdo_send_keysequence_window_list_do(display_.get(), CURRENTWINDOW, &press, 1, down, &held, 0);
  }
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

void X11Keyboard::RequireAlive() const {
  if (gone_) throw std::runtime_error("The connection to the X display was lost.");
}

}  // namespace velumar
