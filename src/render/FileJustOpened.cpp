#include "render/FileJustOpened.h"

#include <utility>

namespace Tracelyn {

namespace {

bool g_bFileJustOpened = false;

} // namespace

void SetFileJustOpened(bool opened) {
    g_bFileJustOpened = opened;
}

bool TakeFileJustOpened() {
    return std::exchange(g_bFileJustOpened, false);
}

} // namespace Tracelyn
