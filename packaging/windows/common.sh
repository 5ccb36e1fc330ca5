# Shared by the scripts of this folder: where things lie, and the packages that they need.
. "$(dirname "${BASH_SOURCE[0]}")/../../scripts/common.sh"

windows_folder=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
project_folder=$(cd "$windows_folder/../.." && pwd)
# Outlives a checkout: Qt alone takes a quarter of an hour.
cache_folder=${TRACELYN_WINDOWS_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/tracelyn-windows}
dependencies_folder=$cache_folder/installed
windows_build=$project_folder/build/windows
export TRACELYN_WINDOWS_CACHE=$cache_folder
cd "$project_folder"

windows_packages=("${build_packages[@]}" g++-mingw-w64-x86-64-posix libz-mingw-w64-dev qt6-base-dev-tools
    googletest dpkg-dev python3)
wine_packages=(wine wine64 fonts-wine xvfb xdotool imagemagick python3)
setup_packages=(nsis zip)
