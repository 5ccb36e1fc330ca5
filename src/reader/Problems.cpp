#include "reader/Problems.h"

#include "support/Limits.h"
#include "support/ShownText.h"

#include <QLatin1String>

#include <array>
#include <charconv>
#include <utility>

namespace Tracelyn {

namespace {

constexpr std::array kTexts{
    "Unknown error",          "Xml Parse error",         "Invalid root name",    "Invalid node name",
    "Invalid attribute name", "Invalid attribute value", "Invalid display type", "Invalid set size",
    "Missing node",           "Missing attribute",       "Empty group name",     "Empty attribute",
    "Data not found",
};

constexpr size_t kRoomForAlways = 16;

constexpr QLatin1String kThereIsOne("There is 1 more problem");
constexpr QLatin1String kThereAre("There are ");
constexpr QLatin1String kMoreProblems(" more problems");
constexpr size_t kMaxDigits = 20;

} // namespace

QString ReadResult::GetText() const {
    const auto index = static_cast<size_t>(code);
    const QString text = QLatin1String(index < kTexts.size() ? kTexts[index] : kTexts[0]);
    return detail.isEmpty() ? text : text + QStringLiteral(": ") + detail;
}

CProblems::CProblems() {
    m_Results.reserve(support::limits::kMaxProblems + kRoomForAlways);
    m_strFurther.reserve(kThereAre.size() + static_cast<qsizetype>(kMaxDigits) + kMoreProblems.size());
}

void CProblems::Add(ResultCode code, const QString& detail) {
    if (m_Results.size() < support::limits::kMaxProblems)
        AddAlways(code, support::ShownText(detail));
    else
        ++m_nFurther;
}

void CProblems::AddAlways(ResultCode code, const QString& detail) {
    if (m_Results.size() < m_Results.capacity())
        m_Results.push_back({code, detail});
    else
        ++m_nFurther;
}

bool CProblems::IsFull(Cap& cap, size_t count) {
    if (count < cap.most)
        return false;
    if (!cap.isReported)
        AddAlways(ResultCode::UnknownError, QStringLiteral("Only %1 %2 are shown, and there are more")
                                                .arg(cap.most)
                                                .arg(QLatin1String(cap.what)));
    cap.isReported = true;
    return true;
}

void CProblems::Finish() noexcept {
    if (m_nFurther == 0)
        return;
    std::array<char, kMaxDigits> digits;
    const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), m_nFurther).ptr;
    if (m_nFurther == 1) {
        m_strFurther += kThereIsOne;
    } else {
        m_strFurther += kThereAre;
        m_strFurther += QLatin1String(digits.data(), end);
        m_strFurther += kMoreProblems;
    }
    m_nFurther = 0;
    AddAlways(ResultCode::UnknownError, std::exchange(m_strFurther, {}));
}

} // namespace Tracelyn
