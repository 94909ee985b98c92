# Shared by scripts/run and scripts/test: install what is missing, then build.
set -euo pipefail
ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
PACKAGES=(qt6-base-dev libsqlcipher-dev libgtest-dev libbenchmark-dev pkg-config cmake g++ make
          fonts-noto-cjk xvfb ccache libgl1-mesa-dev python3 python3-icalendar python3-dateutil
          sqlcipher python3-vobject libicu-dev libical-dev libzip-dev libxlsxwriter-dev
          python3-openpyxl)

install_missing() {
  local missing=()
  for p in "${PACKAGES[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
  done
  if [ ${#missing[@]} -gt 0 ]; then
    echo "Installing: ${missing[*]}"
    local sudo=""
    [ "$(id -u)" -eq 0 ] || sudo="sudo"
    $sudo apt-get update
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y --no-install-recommends "${missing[@]}"
  fi
}

build() {
  cmake -S "$ROOT" -B "$ROOT/build" -DCMAKE_BUILD_TYPE=RelWithDebInfo
  cmake --build "$ROOT/build" -j2
}
