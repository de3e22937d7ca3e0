#include "platform/x11/layout.h"

#include <X11/Xutil.h>
#include <X11/keysym.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

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

bool IsCharacter(char32_t character) {
  const bool control = character < 0x20 || (character >= 0x7F && character < 0xA0);
  const bool surrogate = character >= 0xD800 && character < 0xE000;
  return !control && !surrogate && character <= 0x10FFFF;
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

}  // namespace

bool X11Layout::CanType(const KeyStroke& stroke) {
  return NamedSymbol(stroke) != NoSymbol || IsCharacter(stroke.character);
}

X11Layout::X11Layout(const xdo_t& display) : display_(display) {
  ReadMap();
  FindSpareKeys();
}

void X11Layout::ReadMap() {
  map_.reset(XkbGetMap(display_.xdpy, XkbAllClientInfoMask, XkbUseCoreKbd));
  if (!map_) throw std::runtime_error("The X display has no keyboard layout.");
}

void X11Layout::FindSpareKeys() {
  for (int code = display_.keycode_low; code <= display_.keycode_high; ++code) {
    const auto key = static_cast<KeyCode>(code);
    if (XkbKeyNumSyms(map_.get(), key) == 0 && map_->map->modmap[key] == 0) spare_.push_back(key);
  }
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
  for (std::size_t i = 0; i < lent_.size(); ++i) {
    if (named == NoSymbol && lent_[i] == character) {
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

void X11Layout::Lend(std::span<const KeyStroke> strokes, const XkbStateRec& state) {
  XkbStateRec unlocked = state;
  unlocked.locked_mods = static_cast<unsigned char>(unlocked.locked_mods & ~LockMask);
  const std::size_t before = std::exchange(lent_, {}).size();
  std::vector<char32_t> missing;
  for (const KeyStroke& stroke : strokes) {
    const char32_t character = CharacterOf(stroke);
    const bool known = std::find(missing.begin(), missing.end(), character) != missing.end();
    if (known || missing.size() == spare_.size() || Find(stroke, unlocked)) continue;
    missing.push_back(character);
  }
  AssignSpareKeys(std::move(missing), before);
}

void X11Layout::GiveBack() { AssignSpareKeys({}, std::exchange(lent_, {}).size()); }

void X11Layout::Keep() {
  const auto kept = static_cast<std::ptrdiff_t>(std::exchange(lent_, {}).size());
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
  lent_ = std::move(characters);
}

}  // namespace velumar
