# Shared by ./run, ./test, ./bench.sh and .ci/run: short messages, and the packages that a task needs.

say() { printf '== %s\n' "$*"; }

build_packages=(cmake g++ ninja-build pkg-config qt6-base-dev qt6-svg-dev libgl1-mesa-dev libxml2-dev zlib1g-dev
    libgtest-dev fonts-dejavu-core python3-dev pybind11-dev)
# For the Python module: the tests write the files of its manual, and measure many recordings on Dask.
test_packages=(python3 python3-numpy python3-pandas python3-tables python3-openpyxl python3-dask python3-distributed)
# What ./bench.sh measures with and against.
bench_packages=(python3 libbenchmark-dev libxml2-utils gzip python3-numpy python3-pandas)

# Installs what is missing of the named Debian packages, or says which they are and stops.
need_packages() {
    local missing=() package
    for package in "$@"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q '^install ok installed$' || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    local root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null || ! sudo -n true 2>/dev/null && ! [ -t 0 ]; then
            say "These packages are missing and only root can install them:"
            echo "   apt-get install ${missing[*]}"
            exit 1
        fi
        root=(sudo)
    fi
    say "installing ${missing[*]}"
    export DEBIAN_FRONTEND=noninteractive
    "${root[@]}" apt-get install -y -qq "${missing[@]}" >/dev/null 2>&1 && return 0
    "${root[@]}" apt-get update -qq
    "${root[@]}" apt-get install -y -qq "${missing[@]}" >/dev/null
}

# Configures (once) and builds targets of a preset: build PRESET [TARGET]...
build() {
    local preset=$1
    shift
    if [ ! -f "build/$preset/build.ninja" ]; then
        say "configuring ($preset)"
        cmake --preset "$preset" >/dev/null
    fi
    say "building ($preset)"
    cmake --build --preset "$preset" ${1:+--target "$@"} -- --quiet | { grep -v "^ninja: no work to do" || true; }
}
