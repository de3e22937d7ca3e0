# The cross compiler of Debian 12 for 64-bit Windows, with posix threads. scripts/windows-sdk builds the
# libraries with it and copies it next to them.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(target x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${target}-gcc-posix)
set(CMAKE_CXX_COMPILER ${target}-g++-posix)
# GCC assumes that an inline function changes the registers that its own copy changes, but the linker
# may keep another object's copy.
set(CMAKE_CXX_FLAGS_INIT -fno-ipa-ra)
set(CMAKE_RC_COMPILER ${target}-windres)
set(CMAKE_AR ${target}-gcc-ar-posix CACHE FILEPATH "")
set(CMAKE_RANLIB ${target}-gcc-ranlib-posix CACHE FILEPATH "")
set(CMAKE_FIND_ROOT_PATH /usr/${target})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
unset(target)
