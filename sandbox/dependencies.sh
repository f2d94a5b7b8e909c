# What the program, its sandbox and its tests need, and how it gets onto this machine.
# Sourced by ./run, ./test and ./check; one place for the list.

# To build and to run: compiler, Qt, the catalogue's maker, the local geocoder's tools, and fonts for
# the languages that the interface speaks.
RUN_PACKAGES=(
    g++ cmake ninja-build qt6-base-dev
    python3 python3-polib curl ca-certificates openssl
    fonts-inter fonts-noto-core fonts-noto-cjk
)
# To use the window without a display, through the accessibility interface.
HEADLESS_PACKAGES=(xvfb xkb-data dbus dbus-bin at-spi2-core python3-gi gir1.2-atspi-2.0)
# To test: the test libraries, both sanitizers' runtimes come with g++.
TEST_PACKAGES=(libgtest-dev libbenchmark-dev gettext util-linux libx11-6 libxtst6)
# To draw the icons, to make the package and to judge it.
TEST_PACKAGES+=(librsvg2-bin desktop-file-utils appstream lintian dpkg-dev file)
# To hold the files that are handed over against their schemas.
TEST_PACKAGES+=(python3-jsonschema)
# A window manager; and a screen of the other kind, without a screen.
TEST_PACKAGES+=(weston qt6-wayland openbox)
# To hear what a screen reader says.
SPOKEN_PACKAGES=(orca)
# The window managers and compositors of ./test desktops, as far as they are not there for ./test.
DESKTOP_PACKAGES=(xfwm4 marco mate-settings-daemon-common mutter kwin-x11 icewm i3-wm sway kwin-wayland)
# To invent hostile bytes: libFuzzer and its sanitizers.
FUZZ_PACKAGES=(clang-19 libclang-rt-19-dev)
# To hold the rules of the house.
CHECK_PACKAGES=(clang-format-19 clang-tidy-19 git libbenchmark-dev)

# What must be callable where there is no apt-get to ask.
RUN_COMMANDS=(c++ cmake ninja curl openssl python3)
HEADLESS_COMMANDS=(Xvfb dbus-daemon)
CHECK_COMMANDS=(clang-format-19 clang-tidy-19 git)

norvaxel_missing_packages() {
    local package
    for package in "$@"; do
        [[ $(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null) == installed ]] ||
            printf '%s\n' "$package"
    done
}

# norvaxel_install PACKAGE...: installs what is missing of them; says what it does.
norvaxel_install() {
    local missing as_root=()
    mapfile -t missing < <(norvaxel_missing_packages "$@")
    ((${#missing[@]})) || return 0
    echo "Installing what is missing: ${missing[*]}"
    if ((EUID != 0)); then
        if ! command -v sudo >/dev/null; then
            echo "This needs root and there is no sudo. As root: apt-get install ${missing[*]}" >&2
            return 1
        fi
        as_root=(sudo)
    fi
    "${as_root[@]}" apt-get -qq update &&
        "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
            apt-get -qq -y --no-install-recommends -o Dpkg::Use-Pty=0 install "${missing[@]}" >/dev/null
}

# norvaxel_require COMMAND...: without apt-get, says what is missing and fails.
norvaxel_require() {
    local command missing=()
    for command in "$@"; do
        command -v "$command" >/dev/null || missing+=("$command")
    done
    ((${#missing[@]})) || return 0
    cat >&2 <<TEXT
These commands are missing: ${missing[*]}
Please install, with your system's own means:
  a C++20 compiler, CMake 3.25 or later, Ninja, curl, OpenSSL's command line, Python 3 with polib,
  Qt 6.4 or later with headers (Core, Gui, Widgets, DBus, Test);
  for use without a display also Xvfb, D-Bus, at-spi2-core and PyGObject with Atspi 2.0;
  for the tests also GoogleTest and Google Benchmark;
  for ./check also git, and clang-format and clang-tidy 19, called with -19 at the end.
TEXT
    return 1
}

# norvaxel_prepare run|headless|test|spoken|desktops|fuzz|check|macos: everything that this needs is
# there afterwards, or it fails.
norvaxel_prepare() {
    local packages=("${RUN_PACKAGES[@]}") commands=("${RUN_COMMANDS[@]}")
    if [[ $1 == check ]]; then
        packages+=("${CHECK_PACKAGES[@]}")
        commands+=("${CHECK_COMMANDS[@]}")
    elif [[ $1 == macos ]]; then
        packages+=(libbenchmark-dev)
        commands+=(npm)
        command -v npm >/dev/null || packages+=(npm)
    elif [[ $1 != run ]]; then
        packages+=("${HEADLESS_PACKAGES[@]}")
        commands+=("${HEADLESS_COMMANDS[@]}")
    fi
    if [[ $1 == test || $1 == spoken || $1 == desktops || $1 == fuzz ]]; then
        packages+=("${TEST_PACKAGES[@]}")
    fi
    if [[ $1 == spoken ]]; then
        packages+=("${SPOKEN_PACKAGES[@]}")
        commands+=(orca openbox)
    fi
    if [[ $1 == fuzz ]]; then
        packages+=("${FUZZ_PACKAGES[@]}")
        commands+=(clang++-19)
    fi
    if [[ $1 == desktops ]]; then
        packages+=("${DESKTOP_PACKAGES[@]}")
    fi
    if command -v apt-get >/dev/null && command -v dpkg-query >/dev/null; then
        norvaxel_install "${packages[@]}"
    else
        norvaxel_require "${commands[@]}"
    fi
}
