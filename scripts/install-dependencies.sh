#!/usr/bin/env bash
# Installs the Debian 12 packages that the project needs and that are missing.
#
#   scripts/install-dependencies.sh           everything
#   scripts/install-dependencies.sh --build   only what building and running need
#   scripts/install-dependencies.sh --fuzz    what the fuzzers need, too
#   scripts/install-dependencies.sh --bench   what measuring needs, too
#   scripts/install-dependencies.sh --coverage what the coverage figures need, too
#   scripts/install-dependencies.sh --faults  what failing every call to the system needs, too
#   scripts/install-dependencies.sh --window  what driving the window needs, too
#   scripts/install-dependencies.sh --package what building, packing and looking at the package need
#   scripts/install-dependencies.sh --windows what compiling and testing the parts without Qt for Windows needs
set -euo pipefail

build=(
    build-essential cmake ninja-build ccache
    qt6-base-dev qt6-svg-dev qt6-serialport-dev qt6-wayland
    qt6-tools-dev qt6-documentation-tools libqt6sql6-sqlite # the manual: its window, its generator, its storage
    libcli11-dev nlohmann-json3-dev libboost-dev
    pkg-config mdbtools-dev libgsf-1-dev libqpdf-dev libxlsxwriter-dev libsqlite3-dev
    libexpat1-dev # tracks in GPX
    libgtest-dev libgmock-dev libbenchmark-dev
    fontconfig fonts-dejavu-core # the offscreen platform brings no font of its own
)
check=(clang-format clang-tidy python3 python3-xlrd python3-openpyxl)
fuzz=(clang libclang-rt-14-dev)
bench=(python3 xvfb x11-utils gpsbabel)
coverage=(gcovr)
faults=(python3 strace)
window=(python3 xvfb x11-utils openbox xdotool imagemagick)
package=(dpkg-dev desktop-file-utils appstream mandoc lintian)
windows=(cmake ninja-build g++-mingw-w64-x86-64-posix googletest wine wine64 nlohmann-json3-dev libboost-dev
    libexpat1-dev)

case "${1-}" in
"") wanted=("${build[@]}" "${check[@]}") ;;
--build) wanted=("${build[@]}") ;;
--fuzz) wanted=("${build[@]}" "${check[@]}" "${fuzz[@]}") ;;
--bench) wanted=("${build[@]}" "${bench[@]}") ;;
--coverage) wanted=("${build[@]}" "${coverage[@]}") ;;
--faults) wanted=("${build[@]}" "${faults[@]}") ;;
--window) wanted=("${build[@]}" "${window[@]}") ;;
--package) wanted=("${build[@]}" "${package[@]}") ;;
--windows) wanted=("${windows[@]}") ;;
*)
    echo "usage: ${0##*/} [--build | --fuzz | --bench | --coverage | --faults | --window | --package | --windows]" >&2
    exit 2
    ;;
esac

if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
    echo "This is no Debian system; the equals of these packages must be there: ${wanted[*]}" >&2
    exit 0
fi

installed=" $(dpkg-query -W -f '${Package}/${db:Status-Status} ' "${wanted[@]}" 2>/dev/null || true)"
missing=()
for name in "${wanted[@]}"; do
    [[ $installed == *" $name/installed "* ]] || missing+=("$name")
done
((${#missing[@]})) || exit 0

echo "Installing with apt-get: ${missing[*]}"
asRoot=()
if ((EUID != 0)); then
    if ! command -v sudo >/dev/null; then
        echo "Installing needs root, and there is no sudo. As root, run: apt-get install ${missing[*]}" >&2
        exit 1
    fi
    asRoot=(sudo)
fi

# Another apt run (unattended upgrades) may hold the lock for a while.
aptGet=("${asRoot[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq -o DPkg::Lock::Timeout=600 -o Dpkg::Use-Pty=0)
"${aptGet[@]}" update || echo "apt-get update failed; going on with the package lists that are there." >&2
"${aptGet[@]}" install --yes --no-install-recommends "${missing[@]}" >/dev/null
