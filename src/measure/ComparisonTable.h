// The comparison of recordings with a good one as lines of a table, with tolerances.
#pragma once

#include "measure/Comparison.h"
#include "measure/Table.h"
#include "support/Progress.h"

#include <QString>
#include <QStringList>

#include <array>
#include <atomic>
#include <optional>
#include <span>
#include <vector>

namespace Tracelyn {

// How far the signals of a name may be from the good ones, in scaled units; 0 or more, finite.
struct Tolerance {
    QString signal;
    double largest;
};

// A recording, and the sample of it that is laid on that of another.
struct AlignedRecording {
    const CGraphData& data;
    int zero;
    QString name; // in tables and texts
};

inline constexpr std::array kComparisonColumns{"file", "group", "signal",    "unit", "largest",
                                               "at",   "rms",   "tolerance", "kept"};

// What one comparison found. The texts do not begin with the name of the compared recording.
struct ComparisonReport {
    std::vector<TableLine> lines; // with a cell for each of those columns
    QStringList problems;
    QStringList remarks; // on what was compared and what was not, but no problems
};

// Compares recordings with the good one, each on a thread of its own.
class CComparisonTable {
public:
    // Of several tolerances for a name the last one counts.
    CComparisonTable(AlignedRecording good, std::vector<Tolerance> tolerances);

    // Asked to stop, it leaves signals out.
    ComparisonReport LookAt(const AlignedRecording& compared, const support::Progress& progress = {});

    // Whether any signal was farther from the good one than allowed.
    bool IsBroken() const { return m_bBroken; }
    // A name with a tolerance that is no signal of the good recording and a compared one. Nothing when there
    // is none, or when no recording was compared.
    std::optional<QString> FindUselessTolerance() const;

private:
    const Tolerance* ToleranceOf(const CommonSignal& signal) const;
    void AddLine(const CommonSignal& signal, const AlignedRecording& compared, ComparisonReport& report);
    void RemarkAxis(const AlignedRecording& compared, ComparisonReport& report) const;

    AlignedRecording m_Good;
    std::vector<Tolerance> m_Tolerances;
    std::vector<std::atomic<bool>> m_Found; // for each tolerance, whether its signal was compared
    std::atomic<int> m_nCompared = 0;
    std::atomic<bool> m_bBroken = false;
};

} // namespace Tracelyn
