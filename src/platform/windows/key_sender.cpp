#include "platform/windows/key_sender.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <cwctype>
#include <stdexcept>
#include <vector>

#include "base/windows_text.h"
#include "platform/key_notation.h"
#include "platform/windows/chart_program.h"
#include "platform/windows/serving_wait.h"

namespace velumar {

namespace {

constexpr DWORD kAnswerPatienceMs = 2000;
constexpr DWORD kPersonPatienceMs = 1000;
// While a window is coming up or going away, none has the focus.
constexpr DWORD kFocusPatienceMs = 500;
constexpr DWORD kLookMs = 10;

constexpr std::array<int, 5> kModifiers{VK_SHIFT, VK_CONTROL, VK_MENU, VK_LWIN, VK_RWIN};

enum class Obstacle : std::uint8_t { kNone, kOtherWindow, kNoFocus, kPersonTypes };

DWORD PatienceWith(Obstacle obstacle) {
  switch (obstacle) {
    case Obstacle::kNoFocus:
      return kFocusPatienceMs;
    case Obstacle::kPersonTypes:
      return kPersonPatienceMs;
    default:
      return 0;
  }
}

bool PersonHoldsModifier() {
  return std::any_of(kModifiers.begin(), kModifiers.end(),
                     [](int key) { return (::GetAsyncKeyState(key) & 0x8000) != 0; });
}

// A key of the keyboard with what has to be held around it.
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

// The place of a key with the stroke's modifiers; without a scan code where the layout lacks the
// character.
Place PlaceOf(const KeyStroke& stroke, HKL layout) {
  Place place{.shift = stroke.shift, .ctrl = stroke.ctrl, .alt = stroke.alt};
  WORD code = NamedCode(stroke.named);
  if (stroke.named == NamedKey::kNone) {
    if (stroke.character > 0xFFFF) return {};
    const bool text = !stroke.alt && !stroke.ctrl;
    // A shortcut's letter is a key, whatever its case.
    const auto character = static_cast<wchar_t>(
        text ? stroke.character : std::towlower(static_cast<std::wint_t>(stroke.character)));
    const SHORT key = ::VkKeyScanExW(character, layout);
    if (key == -1) return {};
    const auto held = static_cast<unsigned>(key) >> 8;
    if (held > 7) return {};
    code = static_cast<WORD>(key & 0xFF);
    place.shift |= (held & 1U) != 0;
    place.ctrl |= (held & 2U) != 0;
    place.alt |= (held & 4U) != 0;
    const bool locked = (::GetKeyState(VK_CAPITAL) & 1) != 0;
    if (locked && text && ::IsCharAlphaW(character) != 0) place.shift = !place.shift;
  }
  place.code = code;
  place.scan = static_cast<WORD>(::MapVirtualKeyExW(code, MAPVK_VK_TO_VSC, layout));
  place.extended = stroke.named == NamedKey::kEnd;
  return place;
}

INPUT KeyInput(WORD code, WORD scan, DWORD flags) {
  INPUT input{};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = code;
  input.ki.wScan = scan;
  input.ki.dwFlags = flags;
  return input;
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
    inputs.push_back(KeyInput(code, scan, KEYEVENTF_SCANCODE));
  }
  const DWORD key = KEYEVENTF_SCANCODE | (place.extended ? KEYEVENTF_EXTENDEDKEY : 0);
  inputs.push_back(KeyInput(place.code, place.scan, key));
  inputs.push_back(KeyInput(place.code, place.scan, key | KEYEVENTF_KEYUP));
  std::reverse(held.begin(), held.end());
  for (const auto& [code, scan] : held) {
    inputs.push_back(KeyInput(code, scan, KEYEVENTF_SCANCODE | KEYEVENTF_KEYUP));
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
    inputs.push_back(KeyInput(0, unit, KEYEVENTF_UNICODE));
    inputs.push_back(KeyInput(0, unit, KEYEVENTF_UNICODE | KEYEVENTF_KEYUP));
  }
  return inputs;
}

// The keys of one text on their way into the chart program.
class Typing {
 public:
  explicit Typing(const std::string& host_title) : program_(host_title) {}

  KeyOutcome TypeAll(const std::vector<KeyStroke>& strokes) {
    for (const KeyStroke& stroke : strokes) {
      if (!TypeWithPatience(stroke)) {
        WaitUntilRead();
        return KeyOutcome::kHeldBack;
      }
      // A shortcut opens a menu that takes the next key.
      if (stroke.alt || stroke.ctrl) WaitUntilRead();
    }
    WaitUntilRead();
    return answered_ ? KeyOutcome::kTakenIn : KeyOutcome::kNotAnswered;
  }

 private:
  bool TypeWithPatience(const KeyStroke& stroke) {
    const ULONGLONG start = ::GetTickCount64();
    while (true) {
      const Obstacle obstacle = Try(stroke);
      if (obstacle == Obstacle::kNone) return true;
      if (::GetTickCount64() - start >= PatienceWith(obstacle)) return false;
      WaitServingOthers(kLookMs);
    }
  }

  Obstacle Try(const KeyStroke& stroke) {
    const HWND front = ::GetForegroundWindow();
    if (front == nullptr) return Obstacle::kNoFocus;
    if (!program_.TakesKeys(front)) return Obstacle::kOtherWindow;
    if (PersonHoldsModifier()) return Obstacle::kPersonTypes;
    const HKL layout = ::GetKeyboardLayout(::GetWindowThreadProcessId(front, nullptr));
    const Place place = PlaceOf(stroke, layout);
    std::vector<INPUT> inputs =
        place.scan != 0 ? InputsOf(place) : InputsOfCharacter(stroke.character);
    const auto count = static_cast<UINT>(inputs.size());
    if (::SendInput(count, inputs.data(), sizeof(INPUT)) != count) {
      throw std::runtime_error("the system takes no keys: " + SystemErrorText(::GetLastError()));
    }
    unread_in_ = front;
    unread_ += count;
    return Obstacle::kNone;
  }

  // What is sent to a window is answered before it reads its next key: with as many answers as
  // there were keys, and one more, all of them are read. All waits of one text together stay within
  // the patience.
  void WaitUntilRead() {
    const HWND window = unread_in_;
    const UINT rounds = unread_ + 1;
    unread_in_ = nullptr;
    unread_ = 0;
    for (UINT round = 0; window != nullptr && round < rounds; ++round) {
      const ULONGLONG start = ::GetTickCount64();
      DWORD_PTR ignored = 0;
      ::SetLastError(ERROR_SUCCESS);
      const bool answered = ::SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL,
                                                  std::max(patience_ms_, DWORD{1}), &ignored) != 0;
      const auto spent = static_cast<DWORD>(::GetTickCount64() - start);
      patience_ms_ -= std::min(patience_ms_, spent);
      if (!answered) {
        // A dialog that the keys have closed is gone.
        answered_ = answered_ && ::IsWindow(window) == 0;
        return;
      }
      ::SwitchToThread();
    }
  }

  WindowsChartProgram program_;
  HWND unread_in_ = nullptr;
  UINT unread_ = 0;
  DWORD patience_ms_ = kAnswerPatienceMs;
  bool answered_ = true;
};

}  // namespace

KeyOutcome WindowsKeySender::Send(std::string_view keys) {
  constexpr char32_t kFirstPrintable = 0x20;
  const std::vector<KeyStroke> strokes = ParseKeys(keys);
  const bool control = std::any_of(strokes.begin(), strokes.end(), [](const KeyStroke& stroke) {
    return stroke.named == NamedKey::kNone && stroke.character < kFirstPrintable;
  });
  if (control)
    throw std::invalid_argument("keys \"" + std::string(keys) + "\": a control character");
  return Typing(host_title_).TypeAll(strokes);
}

}  // namespace velumar
