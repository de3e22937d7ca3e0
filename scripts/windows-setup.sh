# Shared by the scripts for Windows: what they need on Debian 12, and where the Windows libraries are. Source
# it after setup.sh with `root` set to the checkout.

install_missing_for_windows() {
  packages+=(g++-mingw-w64-x86-64-posix wine wine64 nsis zip unzip zstd xz-utils tcl make python3)
  install_missing
}

windows_cache=${XDG_CACHE_HOME:-$HOME/.cache}/velumar/windows-sdk

# The source packages of the Windows libraries, each with a file that it installs.
windows_libraries=(
  "nlohmann-json3 include/nlohmann/json.hpp"
  "cli11 include/CLI/CLI.hpp"
  "sqlite3 lib/libsqlite3.a"
  "curl lib/libcurl.a"
  "zlib lib/libz.a"
  "libarchive lib/libarchive.a"
  "libcsv lib/libcsv.a"
  "howardhinnant-date lib/libdate-tz.a"
  "tzdata share/tzdata/version"
  "qt6-base lib/cmake/Qt6/qt.toolchain.cmake"
  "qcustomplot lib/libQCustomPlotQt6.a"
)

# Prints the source packages whose libraries a folder lacks.
missing_windows_libraries() {
  local library package file
  for library in "${windows_libraries[@]}"; do
    read -r package file <<<"$library"
    [ -e "$1/$file" ] || echo "$package"
  done
}

# True if a folder has the Windows libraries. Those that are small may be missing: complete_windows_sdk
# builds them.
is_windows_sdk() { ! missing_windows_libraries "$1" | grep -qxE 'qt6-base|qcustomplot'; }

# Builds what the libraries of an earlier Velumar lack, in the folder VELUMAR_WINDOWS_SDK.
complete_windows_sdk() {
  local missing
  missing=$(missing_windows_libraries "$VELUMAR_WINDOWS_SDK")
  [ -z "$missing" ] && return
  echo "Building the Windows libraries that are missing:" $missing
  "$root/scripts/windows-sdk" $missing
}

# Unpacks an archive of the libraries into the cache, unless it is there already, and prints the folder.
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

# Prints the folder of the Windows libraries: the folder or archive in VELUMAR_WINDOWS_SDK, otherwise the
# result of scripts/windows-sdk. Fails without a message if there is none, and with one if the variable is
# wrong.
find_windows_sdk() {
  local sdk=$windows_cache/sdk
  if [ -n "${VELUMAR_WINDOWS_SDK:-}" ]; then
    sdk=$VELUMAR_WINDOWS_SDK
    [ ! -f "$sdk" ] || sdk=$(unpacked_windows_sdk "$sdk") || return 1
    if ! is_windows_sdk "$sdk"; then
      echo "VELUMAR_WINDOWS_SDK does not contain the Windows libraries: $VELUMAR_WINDOWS_SDK" >&2
      return 1
    fi
  fi
  is_windows_sdk "$sdk" && (cd "$sdk" && pwd)
}
