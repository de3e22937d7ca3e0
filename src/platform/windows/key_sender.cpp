#include "platform/windows/chart_desktop.h"

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <optional>
#include <stdexcept>
#include <vector>

#include "base/windows_text.h"
#include "platform/common/key_timeouts.h"
#include "platform/key_notation.h"
#include "platform/windows/chart_program.h"
#include "platform/windows/foreground.h"
#include "platform/windows/held_keys.h"
#include "platform/windows/waits.h"

namespace velumar {

namespace {

// A key of the keyboard with its modifiers.
struct Place {
  WORD code = 0;
  WORD scan = 0;
  bool extended = false;
  bool shift = false;
  bool ctrl = false;
  bool alt = false;
};

WORD NamedCode(NamedKey key) {
  switch (key) {
    case NamedKey::kSpace:
      return VK_SPACE;
    case NamedKey::kEnter:
      return VK_RETURN;
    case NamedKey::kEnd:
      return VK_END;
    case NamedKey::kTab:
      return VK_TAB;
    case NamedKey::kNone:
      break;
  }
  return 0;
}

bool IsLetter(char32_t c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

bool IsDigit(char32_t c) { return c >= '0' && c <= '9'; }

// The key that types the character in the layout; its code is 0 if there is none.
Place PlaceOfCharacter(const KeyStroke& stroke, HKL layout) {
  Place place{.shift = stroke.shift, .ctrl = stroke.ctrl, .alt = stroke.alt};
  const bool shortcut = stroke.alt || stroke.ctrl;
  // A shortcut's letter means a key, whatever its case and even if the layout types, say, a
  // Cyrillic letter with it.
  if (shortcut && (IsLetter(stroke.character) || IsDigit(stroke.character))) {
    constexpr char32_t kCaseBit = 0x20;
    place.code = static_cast<WORD>(IsLetter(stroke.character) ? stroke.character & ~kCaseBit
                                                              : stroke.character);
    return place;
  }
  if (stroke.character > 0xFFFF) return {};
  const SHORT key = ::VkKeyScanExW(static_cast<wchar_t>(stroke.character), layout);
  const auto held = static_cast<unsigned>(key) >> 8;
  if (key == -1 || held > 7) return {};
  place.code = static_cast<WORD>(key & 0xFF);
  place.shift |= (held & 1U) != 0;
  place.ctrl |= (held & 2U) != 0;
  place.alt |= (held & 4U) != 0;
  const bool caps_lock = (::GetKeyState(VK_CAPITAL) & 1) != 0;
  if (caps_lock && !shortcut && IsLetter(stroke.character)) place.shift = !place.shift;
  return place;
}

// The key with the stroke's modifiers; nothing if the keyboard lacks it.
std::optional<Place> PlaceOf(const KeyStroke& stroke, HKL layout) {
  Place place;
  if (stroke.named == NamedKey::kNone) {
    place = PlaceOfCharacter(stroke, layout);
  } else {
    place = {.code = NamedCode(stroke.named),
             .extended = stroke.named == NamedKey::kEnd,
             .shift = stroke.shift,
             .ctrl = stroke.ctrl,
             .alt = stroke.alt};
  }
  if (place.code == 0) return std::nullopt;
  place.scan = static_cast<WORD>(::MapVirtualKeyExW(place.code, MAPVK_VK_TO_VSC, layout));
  if (place.scan == 0) return std::nullopt;
  return place;
}

std::vector<INPUT> InputsOf(const Place& place) {
  struct Modifier {
    WORD code;
    WORD scan;
  };
  std::vector<Modifier> held;
  if (place.ctrl) held.push_back({VK_CONTROL, 0x1D});
  if (place.alt) held.push_back({VK_MENU, 0x38});
  if (place.shift) held.push_back({VK_SHIFT, 0x2A});
  std::vector<INPUT> inputs;
  for (const auto& [code, scan] : held) {
    inputs.push_back(OwnKey(code, scan, KEYEVENTF_SCANCODE));
  }
  const DWORD key = KEYEVENTF_SCANCODE | (place.extended ? KEYEVENTF_EXTENDEDKEY : 0);
  inputs.push_back(OwnKey(place.code, place.scan, key));
  inputs.push_back(OwnKey(place.code, place.scan, key | KEYEVENTF_KEYUP));
  std::reverse(held.begin(), held.end());
  for (const auto& [code, scan] : held) {
    inputs.push_back(OwnKey(code, scan, KEYEVENTF_SCANCODE | KEYEVENTF_KEYUP));
  }
  return inputs;
}

std::vector<INPUT> InputsOfCharacter(char32_t character) {
  constexpr char32_t kFirstPair = 0x10000;
  std::vector<WORD> units;
  if (character < kFirstPair) {
    units = {static_cast<WORD>(character)};
  } else {
    const char32_t rest = character - kFirstPair;
    units = {static_cast<WORD>(0xD800 + (rest >> 10)), static_cast<WORD>(0xDC00 + (rest & 0x3FF))};
  }
  std::vector<INPUT> inputs;
  for (const WORD unit : units) {
    inputs.push_back(OwnKey(0, unit, KEYEVENTF_UNICODE));
    inputs.push_back(OwnKey(0, unit, KEYEVENTF_UNICODE | KEYEVENTF_KEYUP));
  }
  return inputs;
}

bool IsText(const KeyStroke& stroke) {
  return stroke.named == NamedKey::kNone && !stroke.alt && !stroke.ctrl && !stroke.shift;
}

// Letters of a text are sent as keys, by which menus, lists and charts know them. All its other
// characters are sent as characters, which dead keys, Caps Lock and input methods don't change.
// Returns nothing for a shortcut whose key the keyboard lacks: sent as a character, without its
// modifiers, it would do something else.
std::vector<INPUT> InputsOfStroke(const KeyStroke& stroke, HKL layout) {
  const bool text = IsText(stroke);
  if (text && !IsLetter(stroke.character)) return InputsOfCharacter(stroke.character);
  if (const std::optional<Place> place = PlaceOf(stroke, layout)) return InputsOf(*place);
  return text ? InputsOfCharacter(stroke.character) : std::vector<INPUT>();
}

// Releases the keys of a sequence that the system took only in part.
void ReleaseKeys(const std::vector<INPUT>& inputs, UINT taken) {
  std::vector<INPUT> releases;
  std::copy_if(inputs.begin() + taken, inputs.end(), std::back_inserter(releases),
               [](const INPUT& input) { return (input.ki.dwFlags & KEYEVENTF_KEYUP) != 0; });
  ::SendInput(static_cast<UINT>(releases.size()), releases.data(), sizeof(INPUT));
}

// Types the keys of one text into the chart program.
class Typing {
 public:
  KeyOutcome TypeAll(const std::vector<KeyStroke>& strokes) {
    for (const KeyStroke& stroke : strokes) {
      if (!TypeInTime([&] { return Try(stroke); }, WaitServingOthers)) {
        WaitUntilRead();
        return KeyOutcome::kNotSent;
      }
      // A shortcut opens a menu that takes the next key.
      if (stroke.alt || stroke.ctrl) WaitUntilRead();
    }
    WaitUntilRead();
    return answered_ ? KeyOutcome::kAccepted : KeyOutcome::kNotAnswered;
  }

 private:
  Obstacle Try(const KeyStroke& stroke) {
    const HWND front = ::GetForegroundWindow();
    if (front == nullptr) return Obstacle::kNoFocus;
    if (!TakesChartKeys(front)) return Obstacle::kOtherWindow;
    if (UserHoldsModifier()) return Obstacle::kUserTypes;
    const HKL layout = ::GetKeyboardLayout(::GetWindowThreadProcessId(front, nullptr));
    std::vector<INPUT> inputs = InputsOfStroke(stroke, layout);
    if (inputs.empty()) return Obstacle::kNoSuchKey;
    const auto count = static_cast<UINT>(inputs.size());
    const UINT taken = ::SendInput(count, inputs.data(), sizeof(INPUT));
    if (taken != count) {
      const DWORD code = ::GetLastError();
      if (taken != 0) ReleaseKeys(inputs, taken);
      throw std::runtime_error("Windows does not accept keys from programs: " +
                               SystemErrorText(code));
    }
    unread_in_ = front;
    unread_ += count;
    return Obstacle::kNone;
  }

  // A window answers a sent message before it reads its next key, or the character that a key
  // makes. So after two answers for each key, and one more, it has read all of them. All waits of
  // one text share one timeout.
  void WaitUntilRead() {
    const HWND window = unread_in_;
    const UINT rounds = 2 * unread_ + 1;
    unread_in_ = nullptr;
    unread_ = 0;
    for (UINT round = 0; window != nullptr && round < rounds; ++round) {
      const ULONGLONG start = ::GetTickCount64();
      DWORD_PTR ignored = 0;
      ::SetLastError(ERROR_SUCCESS);
      const bool answered = ::SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL,
                                                  std::max(time_left_ms_, DWORD{1}), &ignored) != 0;
      const auto spent = static_cast<DWORD>(::GetTickCount64() - start);
      time_left_ms_ -= std::min(time_left_ms_, spent);
      if (!answered) {
        // The keys may have closed the dialog.
        answered_ = answered_ && ::IsWindow(window) == 0;
        return;
      }
      ::SwitchToThread();
    }
  }

  HWND unread_in_ = nullptr;
  UINT unread_ = 0;
  DWORD time_left_ms_{kAnswerTimeout.count()};
  bool answered_ = true;
};

// Brings a window to the front and returns the focus to the one before at the end.
class TemporaryFront {
 public:
  TemporaryFront(HWND before, HWND window) : before_(before) { BringUp(window); }
  ~TemporaryFront() { BringUp(before_); }
  TemporaryFront(const TemporaryFront&) = delete;
  TemporaryFront& operator=(const TemporaryFront&) = delete;

 private:
  static void BringUp(HWND window) {
    constexpr std::chrono::milliseconds kTimeout{500};
    TakeFocus(window);
    WaitUntil(kTimeout, [window] { return IsInFront(window); });
  }

  HWND before_;
};

class WindowsKeySender : public KeySender {
 public:
  KeyOutcome Send(std::string_view keys) override { return Typing().TypeAll(ParseKeys(keys)); }

  KeyOutcome SendInBackground(std::string_view keys) override {
    const HWND front = ::GetForegroundWindow();
    if (front != nullptr && TakesChartKeys(front)) return Send(keys);
    const std::vector<HWND> charts = ChartMainWindows();
    // Once keys are held, the release of a modifier would not arrive either.
    const bool free =
        front != nullptr && !charts.empty() && ::IsIconic(charts.front()) == 0 &&
        ::IsWindowEnabled(charts.front()) != 0 &&
        WaitUntil(TimeoutFor(Obstacle::kUserTypes), [] { return !UserHoldsModifier(); });
    if (!free) return KeyOutcome::kNotSent;
    const HeldKeys held(front);
    if (!held) return KeyOutcome::kNotSent;
    const TemporaryFront temporary(front, charts.front());
    return Send(keys);
  }
};

}  // namespace

std::unique_ptr<KeySender> MakeWindowsKeySender() { return std::make_unique<WindowsKeySender>(); }

}  // namespace velumar
