#pragma once

#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace velumar {

struct FreeMemory {
  void operator()(void* memory) const { std::free(memory); }
};
// A reply or event of the X server.
template <typename T>
using XOwned = std::unique_ptr<T, FreeMemory>;

// A connection to one screen of an X display, with queries about its windows. Windows of other
// programs may close at any moment; queries about them then return empty values.
class X11Connection {
 public:
  // An empty name means the display of the environment. Throws std::runtime_error naming the
  // display if it can't be reached.
  explicit X11Connection(std::string display_name);
  X11Connection(const X11Connection&) = delete;
  X11Connection& operator=(const X11Connection&) = delete;
  ~X11Connection();

  // Throws std::runtime_error if a call has found the connection broken.
  void RequireAlive() const;
  // The same after a round trip to the server.
  void RequireAnswer() const;
  // Drops the events that nobody reads, errors about windows that have closed among them.
  void DropEvents() const;

  // The server's answer to a request, null if it failed: Ask(xcb_query_tree, xcb_query_tree_reply,
  // window).
  template <typename Request, typename Reply, typename... Arguments>
  auto Ask(Request request, Reply reply, Arguments... arguments) const {
    auto* const answer = reply(Xcb(), request(Xcb(), arguments...), nullptr);
    return XOwned<std::remove_pointer_t<decltype(answer)>>(answer);
  }

  xcb_connection_t* Xcb() const { return ewmh_.connection; }
  // The atoms of the protocols between programs and window managers.
  xcb_ewmh_connection_t* Ewmh() { return &ewmh_; }
  int ScreenNumber() const { return screen_number_; }
  xcb_window_t Root() const { return root_; }

  bool HasWindowManager();
  // Front to back. Without a window manager, the titled children of the root.
  std::vector<xcb_window_t> TopLevelWindows();
  // The window manager's active window, without one the focused top-level window; XCB_NONE if there
  // is none.
  xcb_window_t FrontWindow();
  // The top-level window with the X server's input focus, which is up to date before the window
  // manager's active window; XCB_NONE if none has it.
  xcb_window_t FocusedWindow();

  std::string Title(xcb_window_t window);
  // Both parts of the window's class: instance and class.
  std::vector<std::string> ClassTexts(xcb_window_t window);
  bool IsMapped(xcb_window_t window);
  // The window that owns this dialog, or XCB_NONE.
  xcb_window_t Owner(xcb_window_t window);
  // Returns true if both windows belong to one program, or to a program and its helper for dialogs.
  bool SameProgram(xcb_window_t left, xcb_window_t right);

  xcb_atom_t Atom(const char* name);
  std::string TextProperty(xcb_window_t window, xcb_atom_t property);
  std::vector<std::uint32_t> NumbersProperty(xcb_window_t window, xcb_atom_t property);
  // 0 if there is none.
  std::uint32_t NumberProperty(xcb_window_t window, xcb_atom_t property);
  // Back to front.
  std::vector<xcb_window_t> Children(xcb_window_t window);
  xcb_window_t Parent(xcb_window_t window);

 private:
  XOwned<xcb_get_property_reply_t> Property(xcb_window_t window, xcb_atom_t property);
  xcb_window_t ClientBelow(xcb_window_t window);

  std::string display_name_;
  int screen_number_ = 0;
  xcb_window_t root_ = XCB_NONE;
  xcb_ewmh_connection_t ewmh_{};
};

}  // namespace velumar
