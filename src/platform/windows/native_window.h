#pragma once

#include <cstdint>

namespace velumar {

// Operations on a window of this process by its handle. Sizes are in screen pixels.
using NativeWindow = std::uintptr_t;

// Rounds the corners by ellipses of that size.
void RoundNativeWindow(NativeWindow window, int width, int height, int corner_width,
                       int corner_height);
// Sets the opacity from 0 (invisible) to 255; ignores other values.
void SetNativeAlpha(NativeWindow window, int alpha);
// Keeps the window above all others.
void KeepNativeOnTop(NativeWindow window);
// Lets the system move the window with the mouse until the button is released.
void DragNativeWindow(NativeWindow window);

// Returns true if a window's message (a MSG) reports that the user logs out or the system shuts
// down.
bool IsSessionEnd(const void* message);

}  // namespace velumar
