#pragma once

#include <cstdint>

namespace velumar {

// What can be done to a window of ours by its handle. Sizes are pixels of the screen.
using NativeWindow = std::uintptr_t;

// Cuts the corners by ellipses of that size.
void RoundNativeWindow(NativeWindow window, int width, int height, int corner_width,
                       int corner_height);
// From 0, invisible, to 255, solid; nothing happens beyond.
void SetNativeAlpha(NativeWindow window, int alpha);
// Keeps the window above all others.
void KeepNativeOnTop(NativeWindow window);
// Lets the window system move the window by the mouse until its button is released.
void DragNativeWindow(NativeWindow window);

// Whether a window's message (a MSG) says that the user logs out or the system goes down.
bool IsSessionEnd(const void* message);

}  // namespace velumar
