# Shared by the scripts for Windows beside it: what they need of a bare Debian 12 machine, and where the
# Windows build of the libraries is. To be sourced after setup.sh; `root` is the checkout.

install_missing_for_windows() {
  packages+=(g++-mingw-w64-x86-64-posix wine wine64 nsis zip unzip zstd xz-utils tcl make python3)
  install_missing
}

windows_cache=${XDG_CACHE_HOME:-$HOME/.cache}/velumar/windows-sdk

# Whether a folder holds the whole Windows build of the libraries.
is_windows_sdk() {
  [ -e "$1/lib/cmake/Qt6/qt.toolchain.cmake" ] && [ -e "$1/lib/libQCustomPlotQt6.a" ] &&
    [ -e "$1/lib/libsqlite3.a" ] && [ -e "$1/lib/libcurl.a" ] &&
    [ -e "$1/include/nlohmann/json.hpp" ] && [ -e "$1/include/CLI/CLI.hpp" ]
}

# Unpacks an archive of the libraries into the cache, once for each content, and prints the folder.
unpacked_windows_sdk() {
  local sum folder
  sum=$(sha256sum "$1" | cut -c 1-16) || return 1
  folder=$windows_cache/unpacked/$sum
  if [ ! -d "$folder" ]; then
    rm -rf "$folder.part"
    mkdir -p "$folder.part" &&
      tar --extract --auto-compress --file "$1" --strip-components 1 --directory "$folder.part" &&
      mv "$folder.part" "$folder" || return 1
  fi
  echo "$folder"
}

# Prints the folder of the Windows build of the libraries that is at hand: the folder or archive that
# VELUMAR_WINDOWS_SDK names, else what scripts/windows-sdk made. Fails quietly where there is none,
# and in words where the variable names something else.
find_windows_sdk() {
  local sdk=$windows_cache/sdk
  if [ -n "${VELUMAR_WINDOWS_SDK:-}" ]; then
    sdk=$VELUMAR_WINDOWS_SDK
    [ ! -f "$sdk" ] || sdk=$(unpacked_windows_sdk "$sdk") || return 1
    if ! is_windows_sdk "$sdk"; then
      echo "VELUMAR_WINDOWS_SDK names no Windows build of the libraries: $VELUMAR_WINDOWS_SDK" >&2
      return 1
    fi
  fi
  is_windows_sdk "$sdk" && (cd "$sdk" && pwd)
}
