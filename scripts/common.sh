# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# What the scripts share; to be sourced. Leaves the caller in the root of the repository.

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# install_requirements PURPOSE...: installs the packages of scripts/requirements.txt that are for one of
# these and are missing; needs root or sudo for that only.
install_requirements() {
    local packages package missing=() as_root=()
    packages=$(requirements_for "$@")
    for package in $packages; do
        dpkg-query -W -f "\${db:Status-Abbrev}" "$package" 2>/dev/null | grep -q '^ii' ||
            missing+=("$package")
    done
    [ "${#missing[@]}" -eq 0 ] && return
    [ "$(id -u)" -eq 0 ] || as_root=(sudo)
    echo "Installing: ${missing[*]}"
    "${as_root[@]}" apt-get update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# requirements_for PURPOSE...
requirements_for() {
    local purpose
    for purpose; do
        awk -v purpose="$purpose" '
            !/^#/ { for (field = 2; field <= NF; ++field) if ($field == purpose) { print $1; ++found } }
            END { exit !found }' scripts/requirements.txt || {
            echo "scripts/requirements.txt lists nothing for \"$purpose\"" >&2
            exit 1
        }
    done
}

# build PRESET [OPTION...]: configures, again whenever the presets have changed since (other changes
# are found by the build itself), and builds.
build() {
    local preset=$1 presets=build/$1/CMakePresets.json
    shift
    if ! cmp -s CMakePresets.json "$presets"; then
        cmake --preset "$preset" --fresh >/dev/null
        cp CMakePresets.json "$presets"
    fi
    cmake --build --preset "$preset" "$@"
}
