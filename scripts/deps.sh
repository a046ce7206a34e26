# SPDX-License-Identifier: MIT
# Sourced by the other scripts: installs Debian packages that are missing.
ensure_packages() {
    local missing=()
    local pkg
    for pkg in "$@"; do
        if ! dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q 'ok installed'; then
            missing+=("$pkg")
        fi
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    echo "Installing: ${missing[*]}"
    local sudo=""
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || { echo "Need root (or sudo) to install ${missing[*]}" >&2; return 1; }
        sudo="sudo"
    fi
    $sudo apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

# Everything a build of the library, its tests and its demo needs, against
# Qt 5 and Qt 6 (Concurrent comes with qtbase5-dev and qt6-base-dev; Linguist
# and the Designer plugin interface with the tools packages).
GNSSPLOT_BUILD_PACKAGES=(cmake ninja-build g++ pkg-config
    qtbase5-dev qttools5-dev-tools qttools5-dev
    qt6-base-dev qt6-tools-dev qt6-l10n-tools qt6-tools-dev-tools
    zlib1g-dev fonts-dejavu-core fonts-wqy-microhei xvfb xauth xdotool doxygen)
