# Shared by the scripts beside it: brings a bare Debian 12 machine to where the project builds.
# To be sourced; `root` is the checkout.

packages=(
  g++ cmake ninja-build ccache pkg-config
  qt6-base-dev qt6-base-dev-tools qt6-svg-dev libqcustomplot-dev librsvg2-bin
  libxdo-dev libx11-dev libxcb1-dev libxcb-ewmh-dev libxcb-xkb-dev
  libsqlite3-dev libcli11-dev nlohmann-json3-dev libhowardhinnant-date-dev libcurl4-openssl-dev libmicrohttpd-dev
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
      echo "These packages are missing, and there is neither root nor sudo to install them:" >&2
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

# The test programs that a build folder's own rules make, without what older builds left there.
built_tests() {
  ninja -C "$1" -t targets all | sed -n 's#^tests/\([a-z0-9]*_tests\(\.exe\)\?\): .*#\1#p' | sort
}

# run_tests NAME COMMAND...: runs a test program and leaves its report in the folder `reports`. One
# that dies, before its report or behind it, counts as a failure.
run_tests() {
  local name=$1 ended report=$reports/$1.xml
  shift
  echo "== $name"
  (cd "$reports" && "$@" --gtest_brief=1 "--gtest_output=xml:$name.xml" </dev/null)
  ended=$?
  [ "$ended" -eq 0 ] && [ -s "$report" ] && return
  echo "$name ended with $ended"
  grep -qs '<testsuites [^>]*\bfailures="[1-9]' "$report" ||
    echo '<testsuites tests="1" failures="1" />' >"$reports/$name-end.xml"
}

# Adds up what the reports say: count_reports tests, count_reports failures.
count_reports() {
  cat "$reports"/*.xml | sed -n "s/.*<testsuites [^>]*\b$1=\"\([0-9]*\)\".*/\1/p" | awk '{ sum += $1 } END { print sum + 0 }'
}

# Starts a virtual display with a window manager and sets DISPLAY; both end with the script.
virtual_display() {
  local pipe
  pipe=$(mktemp)
  Xvfb -displayfd 3 -screen 0 1600x1000x24 -nolisten tcp 3>"$pipe" 2>/dev/null &
  local server=$!
  trap close_display EXIT
  for _ in $(seq 100); do
    [ -s "$pipe" ] && break
    kill -0 "$server" 2>/dev/null || break
    sleep 0.1
  done
  if [ ! -s "$pipe" ]; then
    echo "the virtual display (Xvfb) did not start" >&2
    exit 1
  fi
  export DISPLAY=:$(cat "$pipe")
  rm -f "$pipe"
  openbox >/dev/null 2>&1 &
  sleep 1
}

# Ends the display and what still runs on it, so that nothing writes behind the last line.
close_display() {
  local running
  running=$(jobs -p)
  [ -n "$running" ] && kill $running 2>/dev/null
  wait 2>/dev/null
  sleep 0.5
}
