# Sourced by the scripts of the root: installs what is missing and builds into build/.

# need_packages NAME... : installs the Debian packages of these names that are missing.
need_packages() {
    local missing=() name
    if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
        local tool
        for tool in cmake ninja c++ qmake; do
            command -v "$tool" >/dev/null && continue
            echo "This system has no apt-get. Please install what these Debian packages hold:" >&2
            echo "  $*" >&2
            echo "(CMake 3.21, Ninja, a C++17 compiler, Qt 5.15 and libdeflate)" >&2
            return 1
        done
        return 0
    fi
    for name in "$@"; do
        dpkg-query -W -f='${Status}' "$name" 2>/dev/null | grep -q 'ok installed' \
            || missing+=("$name")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    echo "Installing: ${missing[*]}"
    local root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "Please install as root: apt-get install ${missing[*]}" >&2
            return 1
        fi
        root=(sudo)
    fi
    "${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update -qq
    "${root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# build_preset PRESET [TARGET...] : configures and builds.
build_preset() {
    local preset=$1
    shift
    local targets=()
    [ $# -gt 0 ] && targets=(--target "$@")
    cmake --preset "$preset" >/dev/null
    cmake --build --preset "$preset" "${targets[@]}"
}

build_packages=(g++ cmake ninja-build ccache pkg-config qtbase5-dev libdeflate-dev
    fonts-dejavu-core)
