#include "reader/SignalFileReader.h"

#include <QStringView>

#include <algorithm>
#include <array>

namespace Tracelyn {

int LevelGrantedBy(const QString& code) {
    static constexpr std::array<QStringView, 3> kCodes{u"60418", u"83206", u"47195"}; // of level 1, 2, 3
    const auto* found = std::ranges::find(kCodes, QStringView(code));
    return found == kCodes.end() ? 0 : static_cast<int>(found - kCodes.begin()) + 1;
}

} // namespace Tracelyn
