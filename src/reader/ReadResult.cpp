#include "reader/ReadResult.h"

#include <array>
#include <cstddef>

namespace Tracelyn {

namespace {

constexpr std::array kTexts{
    "Unknown error",          "Xml Parse error",         "Invalid root name",    "Invalid node name",
    "Invalid attribute name", "Invalid attribute value", "Invalid display type", "Invalid set size",
    "Missing node",           "Missing attribute",       "Empty group name",     "Empty attribute",
    "Data not found",
};

} // namespace

QString ReadResult::GetText() const {
    const auto index = static_cast<size_t>(code);
    const QString text = QLatin1String(index < kTexts.size() ? kTexts[index] : kTexts[0]);
    return detail.isEmpty() ? text : text + QStringLiteral(": ") + detail;
}

} // namespace Tracelyn
