# SPDX-FileCopyrightText: 2026 The ZepGUI developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Sourced by the commands at the root: says what comes next, stops with the reason, installs what is missing.

packages=(
    # building
    g++ cmake ninja-build ccache
    qt6-base-dev qt6-declarative-dev qt6-declarative-dev-tools qt6-serialport-dev libgl-dev
    libqt6opengl6-dev libbenchmark-dev
    # running
    libqt6svg6
    qml6-module-qtqml qml6-module-qtqml-models qml6-module-qtqml-workerscript qml6-module-qtquick
    qml6-module-qtquick-controls qml6-module-qtquick-dialogs qml6-module-qtquick-layouts
    qml6-module-qtquick-templates qml6-module-qtquick-window qml6-module-qt-labs-folderlistmodel
    qml6-module-qt-labs-platform qml6-module-qt-labs-settings qml6-module-qtquick-shapes qml6-module-qtcore
    # checking
    clang-format-14 clang-tidy-14 cppcheck clazy gcovr qml6-module-qttest
    xvfb xdotool imagemagick dbus at-spi2-core python3 python3-gi gir1.2-atspi-2.0 python3-xlib
)
# For ./package alone: making and judging a package, and a bare system to install it in.
package_packages=(dpkg-dev lintian desktop-file-utils appstream debootstrap)

step() { printf '\n==> %s\n' "$*"; }
stop() { printf '\nStopped: %s\n' "$*" >&2; exit 1; }

as_root() {
    if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

# install_missing [PACKAGE...]: the packages above, and those named.
install_missing() {
    command -v apt-get >/dev/null || stop "apt-get was not found: install the packages named in scripts/setup.sh by hand"
    local missing=() package
    for package in "${packages[@]}" "$@"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
    done
    command -v npm >/dev/null || missing+=(nodejs npm)
    [ ${#missing[@]} -eq 0 ] && return
    step "Installing ${#missing[@]} packages: ${missing[*]}"
    as_root apt-get update -qq || stop "apt-get update failed"
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null ||
        stop "apt-get could not install the packages"
}

# build PRESET [TARGET...]: configures (the fonts come then) and builds.
build() {
    local preset=$1
    shift
    step "Configuring and building the preset $preset"
    cmake --preset "$preset" >"/tmp/zepgui-configure.$$" 2>&1 || { cat "/tmp/zepgui-configure.$$"; stop "cmake could not configure the preset $preset"; }
    rm -f "/tmp/zepgui-configure.$$"
    cmake --build --preset "$preset" ${1:+--target "$@"} || stop "the preset $preset does not build"
}
