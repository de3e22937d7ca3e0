#pragma once

#include <windows.h>

#include <memory>

namespace velumar {

// A system handle, closed with the object; null is none.
struct CloseNative {
  void operator()(void* handle) const { ::CloseHandle(handle); }
};
using NativeHandle = std::unique_ptr<void, CloseNative>;

inline NativeHandle OwnedHandle(HANDLE handle) {
  return NativeHandle(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

}  // namespace velumar
