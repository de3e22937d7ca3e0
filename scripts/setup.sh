# Shared by the other scripts: installs what the build needs on Debian 12. Source it with `root` set to
# the checkout.

packages=(
  g++ cmake ninja-build ccache pkg-config
  qt6-base-dev qt6-base-dev-tools qt6-svg-dev libqcustomplot-dev librsvg2-bin
  libxdo-dev libx11-dev libxcb1-dev libxcb-ewmh-dev libxcb-xkb-dev
  libarchive-dev libcsv-dev libsqlite3-dev libcli11-dev nlohmann-json3-dev libhowardhinnant-date-dev libcurl4-openssl-dev libmicrohttpd-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  dpkg-dev appstream
  xvfb openbox xdotool x11-utils x11-xkb-utils xauth imagemagick poppler-utils fonts-dejavu-core
)

install_missing() {
  local missing=() package
  for package in "${packages[@]}"; do
    if [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" != installed ]; then
      missing+=("$package")
    fi
  done
  [ ${#missing[@]} -eq 0 ] && return
  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
      echo "These packages are missing. Install them as root:" >&2
      echo "  apt-get install ${missing[*]}" >&2
      exit 1
    fi
    as_root=(sudo)
  fi
  echo "Installing ${missing[*]}"
  "${as_root[@]}" apt-get update -qq
  DEBIAN_FRONTEND=noninteractive "${as_root[@]}" apt-get install -y -qq --no-install-recommends \
    "${missing[@]}" >/dev/null
}

configure_and_build() {
  (cd "$root" && cmake --preset release >/dev/null && cmake --build --preset release "$@")
}

# The test programs of a build folder, without leftovers of older builds.
built_tests() {
  ninja -C "$1" -t targets all | sed -n 's#^tests/\([a-z0-9]*_tests\(\.exe\)\?\): .*#\1#p' | sort
}

# run_tests NAME COMMAND...: runs a test program and writes its report to the folder `reports`. A crash,
# before or after the report, counts as a failure.
run_tests() {
  local name=$1 ended report=$reports/$1.xml
  shift
  echo "== $name"
  (cd "$reports" && "$@" --gtest_brief=1 "--gtest_output=xml:$name.xml" </dev/null)
  ended=$?
  [ "$ended" -eq 0 ] && [ -s "$report" ] && return
  echo "$name exited with $ended"
  grep -qs '<testsuites [^>]*\bfailures="[1-9]' "$report" ||
    echo '<testsuites tests="1" failures="1" />' >"$reports/$name-end.xml"
}

# Sums up the reports: count_reports tests, count_reports failures.
count_reports() {
  cat "$reports"/*.xml | sed -n "s/.*<testsuites [^>]*\b$1=\"\([0-9]*\)\".*/\1/p" | awk '{ sum += $1 } END { print sum + 0 }'
}

# Starts a virtual display with a window manager and sets DISPLAY. Both stop when the script exits. Arguments
# are options of Xvfb.
virtual_display() {
  local pipe
  pipe=$(mktemp)
  Xvfb -displayfd 3 -screen 0 1600x1000x24 -nolisten tcp "$@" 3>"$pipe" 2>/dev/null &
  local server=$!
  trap close_display EXIT
  for _ in $(seq 100); do
    [ -s "$pipe" ] && break
    kill -0 "$server" 2>/dev/null || break
    sleep 0.1
  done
  if [ ! -s "$pipe" ]; then
    echo "Could not start the virtual display (Xvfb)" >&2
    exit 1
  fi
  export DISPLAY=:$(cat "$pipe")
  rm -f "$pipe"
  openbox >/dev/null 2>&1 &
  sleep 1
}

# Stops the display and everything on it, so that nothing is printed after the script's last line.
close_display() {
  local running
  running=$(jobs -p)
  [ -n "$running" ] && kill $running 2>/dev/null
  wait 2>/dev/null
  sleep 0.5
}
