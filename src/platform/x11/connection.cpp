#include "platform/x11/connection.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "base/text.h"

namespace velumar {

namespace {

std::string DisplayedName(const std::string& display_name) {
  if (!display_name.empty()) return "\"" + display_name + "\"";
  const char* const name = std::getenv("DISPLAY");
  return name == nullptr ? "(DISPLAY isn't set)" : "\"" + std::string(name) + "\"";
}

xcb_window_t RootOf(xcb_connection_t* connection, int screen_number) {
  auto screen = xcb_setup_roots_iterator(xcb_get_setup(connection));
  for (int i = 0; i < screen_number; ++i) xcb_screen_next(&screen);
  return screen.data->root;
}

}  // namespace

X11Connection::X11Connection(std::string display_name) : display_name_(std::move(display_name)) {
  const char* const name = display_name_.empty() ? nullptr : display_name_.c_str();
  xcb_connection_t* const connection = xcb_connect(name, &screen_number_);
  ewmh_.connection = connection;
  const bool reached = xcb_connection_has_error(connection) == 0;
  if (!reached ||
      xcb_ewmh_init_atoms_replies(&ewmh_, xcb_ewmh_init_atoms(connection, &ewmh_), nullptr) == 0) {
    xcb_disconnect(connection);
    throw std::runtime_error("The X display " + DisplayedName(display_name_) +
                             " can't be reached.");
  }
  root_ = RootOf(connection, screen_number_);
}

X11Connection::~X11Connection() {
  xcb_ewmh_connection_wipe(&ewmh_);
  xcb_disconnect(Xcb());
}

void X11Connection::RequireAlive() const {
  if (xcb_connection_has_error(Xcb()) == 0) return;
  throw std::runtime_error("The connection to the X display " + DisplayedName(display_name_) +
                           " was lost.");
}

void X11Connection::RequireAnswer() const {
  Ask(xcb_get_input_focus, xcb_get_input_focus_reply);
  RequireAlive();
}

void X11Connection::DropEvents() const {
  while (const XOwned<xcb_generic_event_t> event{xcb_poll_for_event(Xcb())}) {
  }
}

// A window manager that crashed leaves the number of its window on the root, but not the window.
bool X11Connection::HasWindowManager() {
  const xcb_window_t sign = NumberProperty(root_, ewmh_._NET_SUPPORTING_WM_CHECK);
  return sign != XCB_NONE && NumberProperty(sign, ewmh_._NET_SUPPORTING_WM_CHECK) == sign;
}

std::vector<xcb_window_t> X11Connection::TopLevelWindows() {
  std::vector<xcb_window_t> windows;
  if (HasWindowManager()) {
    windows = NumbersProperty(root_, ewmh_._NET_CLIENT_LIST_STACKING);
    if (windows.empty()) windows = NumbersProperty(root_, ewmh_._NET_CLIENT_LIST);
  } else {
    for (const xcb_window_t child : Children(root_)) {
      const xcb_window_t client = ClientBelow(child);
      if (client != XCB_NONE) windows.push_back(client);
    }
  }
  RequireAlive();
  std::reverse(windows.begin(), windows.end());
  return windows;
}

xcb_window_t X11Connection::FrontWindow() {
  if (!HasWindowManager()) return FocusedWindow();
  const xcb_window_t front = NumberProperty(root_, ewmh_._NET_ACTIVE_WINDOW);
  RequireAlive();
  return front;
}

xcb_window_t X11Connection::FocusedWindow() {
  const std::vector<xcb_window_t> clients = TopLevelWindows();
  const auto focus = Ask(xcb_get_input_focus, xcb_get_input_focus_reply);
  xcb_window_t window = focus ? focus->focus : static_cast<xcb_window_t>(XCB_NONE);
  if (window <= XCB_INPUT_FOCUS_POINTER_ROOT) return XCB_NONE;
  while (window != XCB_NONE && std::find(clients.begin(), clients.end(), window) == clients.end()) {
    window = Parent(window);
  }
  RequireAlive();
  return window;
}

// Old window managers put a frame without a title around each window.
xcb_window_t X11Connection::ClientBelow(xcb_window_t window) {
  if (window == XCB_NONE) return XCB_NONE;
  const auto attributes = Ask(xcb_get_window_attributes, xcb_get_window_attributes_reply, window);
  if (!attributes || attributes->override_redirect != 0) return XCB_NONE;
  if (!Title(window).empty()) return window;
  for (const xcb_window_t child : Children(window)) {
    if (!Title(child).empty()) return child;
  }
  return XCB_NONE;
}

std::string X11Connection::Title(xcb_window_t window) {
  std::string title = TextProperty(window, ewmh_._NET_WM_NAME);
  return title.empty() ? TextProperty(window, XCB_ATOM_WM_NAME) : title;
}

std::vector<std::string> X11Connection::ClassTexts(xcb_window_t window) {
  std::vector<std::string> texts;
  const std::string both = TextProperty(window, XCB_ATOM_WM_CLASS);
  for (std::string_view rest = both; !rest.empty();) {
    const std::size_t end = std::min(rest.find('\0'), rest.size());
    texts.emplace_back(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return texts;
}

bool X11Connection::IsMapped(xcb_window_t window) {
  const auto attributes = Ask(xcb_get_window_attributes, xcb_get_window_attributes_reply, window);
  return attributes && attributes->map_state != XCB_MAP_STATE_UNMAPPED;
}

xcb_window_t X11Connection::Owner(xcb_window_t window) {
  return NumberProperty(window, XCB_ATOM_WM_TRANSIENT_FOR);
}

bool X11Connection::SameProgram(xcb_window_t left, xcb_window_t right) {
  // All windows of one connection have numbers with the same beginning.
  const std::uint32_t own = xcb_get_setup(Xcb())->resource_id_mask;
  if ((left & ~own) == (right & ~own)) return true;
  constexpr int kLongestChain = 10;
  xcb_window_t owner = left;
  for (int i = 0; i < kLongestChain && owner != XCB_NONE; ++i) {
    owner = Owner(owner);
    if (owner == right) return true;
  }
  const xcb_atom_t leader = Atom("WM_CLIENT_LEADER");
  const std::uint32_t left_leader = NumberProperty(left, leader);
  if (left_leader != XCB_NONE && left_leader == NumberProperty(right, leader)) return true;
  const std::uint32_t left_process = NumberProperty(left, ewmh_._NET_WM_PID);
  return left_process != 0 && left_process == NumberProperty(right, ewmh_._NET_WM_PID) &&
         TextProperty(left, XCB_ATOM_WM_CLIENT_MACHINE) ==
             TextProperty(right, XCB_ATOM_WM_CLIENT_MACHINE);
}

xcb_atom_t X11Connection::Atom(const char* name) {
  const auto length = static_cast<std::uint16_t>(std::strlen(name));
  const auto reply = Ask(xcb_intern_atom, xcb_intern_atom_reply, std::uint8_t{0}, length, name);
  return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_NONE);
}

XOwned<xcb_get_property_reply_t> X11Connection::Property(xcb_window_t window, xcb_atom_t property) {
  constexpr std::uint32_t kLongest = 1 << 16;  // in units of four bytes
  return Ask(xcb_get_property, xcb_get_property_reply, std::uint8_t{0}, window, property,
             XCB_GET_PROPERTY_TYPE_ANY, 0u, kLongest);
}

std::string X11Connection::TextProperty(xcb_window_t window, xcb_atom_t property) {
  const auto reply = Property(window, property);
  if (!reply || reply->format != 8) return {};
  const std::string_view bytes(
      static_cast<const char*>(xcb_get_property_value(reply.get())),
      static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
  return reply->type == ewmh_.UTF8_STRING ? std::string(bytes) : Latin1ToUtf8(bytes);
}

std::vector<std::uint32_t> X11Connection::NumbersProperty(xcb_window_t window,
                                                          xcb_atom_t property) {
  const auto reply = Property(window, property);
  if (!reply || reply->format != 32) return {};
  std::vector<std::uint32_t> numbers(reply->value_len);
  if (!numbers.empty()) {
    std::memcpy(numbers.data(), xcb_get_property_value(reply.get()),
                numbers.size() * sizeof(std::uint32_t));
  }
  return numbers;
}

std::uint32_t X11Connection::NumberProperty(xcb_window_t window, xcb_atom_t property) {
  const std::vector<std::uint32_t> numbers = NumbersProperty(window, property);
  return numbers.empty() ? 0 : numbers.front();
}

std::vector<xcb_window_t> X11Connection::Children(xcb_window_t window) {
  const auto tree = Ask(xcb_query_tree, xcb_query_tree_reply, window);
  if (!tree) return {};
  const xcb_window_t* const first = xcb_query_tree_children(tree.get());
  return {first, first + xcb_query_tree_children_length(tree.get())};
}

xcb_window_t X11Connection::Parent(xcb_window_t window) {
  const auto tree = Ask(xcb_query_tree, xcb_query_tree_reply, window);
  return tree ? tree->parent : static_cast<xcb_window_t>(XCB_NONE);
}

}  // namespace velumar
