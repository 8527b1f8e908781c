#!/usr/bin/env bash
# Builds the Debian package, looks at its parts and prints its path. The build lies in build/package.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

folder=build/package

buildPackage() {
    scripts/install-dependencies.sh --package
    desktop-file-validate packaging/vantor.desktop
    appstreamcli validate --no-net packaging/example.vantor.Vantor.metainfo.xml
    mandoc -Tlint -W warning packaging/vantor.1

    cmake --preset release -B "$folder"
    cmake --build "$folder" --parallel "$(nproc)" --target vantor
    rm -f "$folder"/*.deb
    cpack --config "$folder/CPackConfig.cmake" -B "$folder"
    # The package does not apply to become part of Debian, so its first change log closes no bug there.
    lintian --fail-on error --suppress-tags initial-upload-closes-no-bugs "$folder"/*.deb
}

buildPackage >&2
echo "$PWD"/"$folder"/*.deb
