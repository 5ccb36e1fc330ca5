#!/usr/bin/env bash
# packaging/windows/dependencies.sh: builds what the Windows programs are linked with (Qt, libxml2, googletest and
# benchmark) as static libraries, from Debian's own sources, and installs them below the cache folder. Builds only
# what has not been built before in the same way.
set -euo pipefail
. "$(dirname "$(readlink -f "$0")")/common.sh"

need_packages "${windows_packages[@]}"

stamps=$dependencies_folder/stamps
work=$cache_folder/work
toolchain=(-G Ninja "-DCMAKE_TOOLCHAIN_FILE=$windows_folder/toolchain.cmake"
    "-DTRACELYN_WINDOWS_DEPS=$dependencies_folder" -DBUILD_SHARED_LIBS=OFF
    # Qt writes the name into every program; the libraries are installed below the cache folder.
    -DCMAKE_INSTALL_PREFIX=/tracelyn)

hardening=-fstack-protector-strong

# Debian's source of a package, unpacked in the current folder, through a configuration of our own, so that the
# machine's stays as it is. apt checks what it downloads.
fetch_source() {
    mkdir -p apt/lists/partial apt/cache/archives/partial apt/parts
    local file
    for file in /etc/apt/sources.list /etc/apt/sources.list.d/debian.sources; do
        [ -f "$file" ] || continue
        sed -e 's/^Types: *deb *$/Types: deb-src/' -e 's/^deb /deb-src /' "$file" >"apt/parts/$(basename "$file")"
    done
    [ ! -f apt/parts/sources.list ] || mv apt/parts/sources.list apt/parts/debian.list
    local apt=(apt-get -qq -o Dir::Etc::sourcelist=/dev/null -o "Dir::Etc::sourceparts=$PWD/apt/parts"
        -o "Dir::State::lists=$PWD/apt/lists" -o "Dir::Cache=$PWD/apt/cache" -o APT::Sandbox::User=root)
    "${apt[@]}" update
    "${apt[@]}" source --download-only "$1"
    dpkg-source --no-check -x ./*.dsc source
}

# The version of the source that an installed package was made from.
source_version() {
    # shellcheck disable=SC2016 # dpkg-query's own variable
    dpkg-query -W -f '${source:Version}' "$1"
}

# The tools of the build machine's Qt are part of the build: both have to be of one version. The build machine's
# folders stay out of the programs.
build_qt() {
    fetch_source "qt6-base=$(source_version qt6-base-dev-tools)"
    # Every file dialog would write the folders that it has seen to the registry.
    sed -i 's/QT_CONFIG(settings)/0/' source/src/widgets/dialogs/qfiledialog.cpp
    local flags="$hardening -ffile-prefix-map=$PWD/source="
    cmake -S source -B build "${toolchain[@]}" -DCMAKE_BUILD_TYPE=MinSizeRel \
        "-DCMAKE_CXX_FLAGS=$flags" "-DCMAKE_C_FLAGS=$flags" \
        -DQT_BUILD_TESTS=OFF -DQT_BUILD_EXAMPLES=OFF -DQT_BUILD_TOOLS_WHEN_CROSSCOMPILING=OFF \
        -DFEATURE_testlib=ON -DFEATURE_sql=OFF -DFEATURE_network=OFF -DFEATURE_dbus=OFF -DFEATURE_opengl=OFF \
        -DINPUT_opengl=no -DFEATURE_printsupport=OFF -DFEATURE_concurrent=OFF -DFEATURE_xml=OFF \
        -DFEATURE_icu=OFF -DFEATURE_glib=OFF -DFEATURE_system_zlib=ON -DFEATURE_system_pcre2=OFF \
        -DFEATURE_system_png=OFF -DFEATURE_system_freetype=OFF -DFEATURE_system_harfbuzz=OFF \
        -DFEATURE_tabletevent=OFF -DFEATURE_direct2d=OFF -DFEATURE_directwrite3=OFF
}

build_libxml2() {
    fetch_source "libxml2=$(source_version libxml2-dev)"
    cmake -S source -B build "${toolchain[@]}" -DCMAKE_BUILD_TYPE=Release \
        "-DCMAKE_C_FLAGS=$hardening -ffile-prefix-map=$PWD/source=" -DLIBXML2_WITH_ICONV=OFF -DLIBXML2_WITH_LZMA=OFF \
        -DLIBXML2_WITH_PYTHON=OFF -DLIBXML2_WITH_ZLIB=OFF -DLIBXML2_WITH_TESTS=OFF -DLIBXML2_WITH_PROGRAMS=OFF \
        -DLIBXML2_WITH_HTTP=OFF -DLIBXML2_WITH_FTP=OFF
}

build_googletest() {
    cmake -S /usr/src/googletest -B build "${toolchain[@]}" -DCMAKE_BUILD_TYPE=Release -DBUILD_GMOCK=OFF
}

build_benchmark() {
    fetch_source benchmark
    cmake -S source -B build "${toolchain[@]}" -DCMAKE_BUILD_TYPE=Release -DBENCHMARK_ENABLE_TESTING=OFF \
        -DBENCHMARK_INSTALL_DOCS=OFF -DBENCHMARK_ENABLE_WERROR=OFF -DGIT_VERSION=0.0.0
}

# What decides whether a library is built again: how it is built, and the versions.
stamp_of() {
    declare -f fetch_source "build_$1"
    echo "$hardening" "${toolchain[@]/$windows_folder/}"
    cat "$windows_folder/toolchain.cmake"
    dpkg-query -W -f '${Package} ${Version}\n' g++-mingw-w64-x86-64-posix libz-mingw-w64-dev
    case $1 in
    qt) source_version qt6-base-dev-tools ;;
    libxml2) source_version libxml2-dev ;;
    googletest) source_version googletest ;;
    esac
}

provide() {
    local stamp
    stamp=$(stamp_of "$1" | sha256sum)
    [ "$(cat "$stamps/$1" 2>/dev/null)" != "$stamp" ] || return 0
    say "building $1 for Windows${2:-}"
    rm -rf "$work" "${stamps:?}/$1"
    mkdir -p "$work" "$stamps"
    cd "$work"
    {
        "build_$1"
        cmake --build build
        cmake --install build --prefix "$dependencies_folder"
    } >log 2>&1
    cd /
    rm -rf "$work"
    echo "$stamp" >"$stamps/$1"
}

# Other checkouts share the folder.
mkdir -p "$cache_folder"
exec 9>"$cache_folder/lock"
flock 9
# A step that fails shows the end of its log.
trap '[ $? -eq 0 ] || tail -n 30 "$work/log"' EXIT
provide libxml2
provide googletest
provide benchmark
provide qt " (a quarter of an hour)"
