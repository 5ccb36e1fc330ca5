#include "measure/ComparisonTable.h"

#include "measure/Signals.h"
#include "model/GraphDataGroup.h"
#include "model/GraphDataSet.h"

#include <algorithm>
#include <utility>

namespace Tracelyn {

namespace {

QString NameOf(const CommonSignal& signal) {
    return QStringLiteral("'%1' of '%2'").arg(signal.good->GetName(), signal.group->m_strName);
}

} // namespace

CComparisonTable::CComparisonTable(AlignedRecording good, std::vector<Tolerance> tolerances)
    : m_Good(std::move(good)), m_Tolerances(std::move(tolerances)), m_Found(m_Tolerances.size()) {}

ComparisonReport CComparisonTable::LookAt(const AlignedRecording& compared,
                                          const support::Progress& progress) {
    ++m_nCompared;
    ComparisonReport report;
    const std::vector<CommonSignal> signals = MatchSignals(m_Good.data, compared.data);
    double done = 0;
    for (const CommonSignal& signal : signals) {
        if (!support::Report(progress, done++ / static_cast<double>(signals.size())))
            return report;
        if (signal.compared != nullptr && signal.compared->GetUnit() != signal.good->GetUnit())
            report.problems.append(
                QStringLiteral("%1 is in '%2', not in '%3'")
                    .arg(NameOf(signal), signal.compared->GetUnit(), signal.good->GetUnit()));
        else if (signal.compared != nullptr)
            AddLine(signal, compared, report);
        else if (ToleranceOf(signal) != nullptr)
            report.problems.append(NameOf(signal) + QStringLiteral(" is missing"));
    }
    if (!HaveCommonSignal(signals))
        report.problems.append(QStringLiteral("no signal is also in %1").arg(m_Good.name));
    if (!report.lines.empty())
        RemarkAxis(compared, report);
    return report;
}

std::optional<QString> CComparisonTable::FindUselessTolerance() const {
    for (size_t i = 0; i < m_Found.size(); ++i) {
        if (!m_Found[i] && m_nCompared > 0)
            return m_Tolerances[i].signal;
    }
    return std::nullopt;
}

// The last that was given for the signal; null when there is none.
const Tolerance* CComparisonTable::ToleranceOf(const CommonSignal& signal) const {
    const Tolerance* found = nullptr;
    for (const Tolerance& tolerance : m_Tolerances) {
        if (tolerance.signal == signal.good->GetName())
            found = &tolerance;
    }
    return found;
}

void CComparisonTable::AddLine(const CommonSignal& signal, const AlignedRecording& compared,
                               ComparisonReport& report) {
    const Deviation deviation = Compare(*signal.good, *signal.compared, compared.zero - m_Good.zero);
    const Tolerance* const tolerance = ToleranceOf(signal);
    const bool isKept = tolerance == nullptr || deviation.largest <= tolerance->largest;
    report.lines.push_back(
        {compared.name, signal.group->m_strName, signal.good->GetName(), signal.good->GetUnit(),
         deviation.largest, deviation.at < 0 ? Cell(deviation.largest) : Cell(int64_t{deviation.at}),
         deviation.rms, tolerance == nullptr ? Deviation::kNone : tolerance->largest, isKept});
    for (size_t i = 0; i < m_Found.size(); ++i) {
        if (m_Tolerances[i].signal == signal.good->GetName())
            m_Found[i] = true;
    }
    if (deviation.count > 0)
        m_bBroken = m_bBroken || !isKept;
    else if (tolerance != nullptr)
        report.problems.append(NameOf(signal) + QStringLiteral(" has no sample to compare"));
}

// Nobody shall take a part for the whole, or other moments for the same ones.
void CComparisonTable::RemarkAxis(const AlignedRecording& compared, ComparisonReport& report) const {
    const int shift = compared.zero - m_Good.zero;
    const int64_t good = SampleCount(m_Good.data);
    const int64_t own = SampleCount(compared.data);
    const int64_t both = std::max<int64_t>(0, std::min(own, good + shift) - std::max(0, shift));
    if (both < good || both < own)
        report.remarks.append(
            QStringLiteral("%1 of its %2 samples stand beside one of %3, which has %4")
                .arg(QString::number(both), QString::number(own), m_Good.name, QString::number(good)));
    const double ownStep = AxisStep(compared.data);
    const double goodStep = AxisStep(m_Good.data);
    if (ownStep != goodStep)
        report.remarks.append(QStringLiteral("its samples are %1 apart, those of %2 are %3 apart")
                                  .arg(QString::number(ownStep), m_Good.name, QString::number(goodStep)));
}

} // namespace Tracelyn
