# SPDX-License-Identifier: MIT
# What the scripts share; to be sourced. Leaves the caller in the root of the repository.

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# Installs the packages of scripts/packages.txt that this script needs and that are missing; needs
# root or sudo for that only.
install_packages() {
    local package only_script missing=() as_root=()
    while read -r package only_script; do
        [ "${only_script:-${0##*/}}" = "${0##*/}" ] || continue
        dpkg-query -W -f '${db:Status-Abbrev}' "$package" 2>/dev/null | grep -q '^ii' ||
            missing+=("$package")
    done < <(grep -vE '^(#|$)' scripts/packages.txt)
    [ "${#missing[@]}" -eq 0 ] && return
    [ "$(id -u)" -eq 0 ] || as_root=(sudo)
    echo "Installing: ${missing[*]}"
    "${as_root[@]}" apt-get update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# Configures (once; later changes are found by the build itself) and builds a preset.
build() {
    local preset=$1
    shift
    [ -f "build/$preset/build.ninja" ] || cmake --preset "$preset" >/dev/null
    cmake --build --preset "$preset" "$@"
}
