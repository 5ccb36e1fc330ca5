#include "cli/Commands.h"
#include "cli/SeveralFiles.h"
#include "measure/Comparison.h"
#include "measure/Signals.h"
#include "model/GraphData.h"
#include "support/Interrupt.h"
#include "support/OutputFile.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <iterator>

namespace Tracelyn {

namespace {

constexpr std::array kColumns{"file", "group", "signal", "unit", "largest", "at", "rms", "tolerance", "kept"};

// Compares recordings with the good one, each on its thread.
class CComparison {
public:
    CComparison(const Options& options, const CGraphData& good, int zero)
        : m_Options(options), m_Good(good), m_nZero(zero), m_Found(options.tolerances.size()) {}

    void LookAt(const CGraphData& data, const QString& file, FileReport& report) {
        const std::optional<int> zero = ZeroOf(data, m_Options, file, report);
        if (!zero)
            return;
        ++m_nCompared;
        const std::vector<CommonSignal> signals = MatchSignals(m_Good, data);
        for (const CommonSignal& signal : signals) {
            if (support::IsInterrupted())
                return;
            if (signal.compared != nullptr && signal.compared->GetUnit() != signal.good->GetUnit())
                report.AddProblem(
                    file, QStringLiteral("%1 is in '%2', not in '%3'")
                              .arg(NameOf(signal), signal.compared->GetUnit(), signal.good->GetUnit()));
            else if (signal.compared != nullptr)
                AddLine(signal, *zero - m_nZero, file, report);
            else if (ToleranceOf(signal) != nullptr)
                report.AddProblem(file, NameOf(signal) + QStringLiteral(" is missing"));
        }
        if (std::ranges::all_of(signals,
                                [](const CommonSignal& signal) { return signal.compared == nullptr; }))
            report.AddProblem(file, QStringLiteral("no signal is also in %1").arg(m_Options.input));
        if (!report.lines.empty())
            RemarkAxis(data, *zero - m_nZero, file, report);
    }

    bool IsBroken() const { return m_bBroken; }

    // A name with a tolerance that is no signal of the good recording and a compared one. Nothing when there
    // is none, or when no recording was compared.
    std::optional<QString> FindUselessTolerance() const {
        for (size_t i = 0; i < m_Found.size(); ++i) {
            if (!m_Found[i] && m_nCompared > 0)
                return m_Options.tolerances[i].signal;
        }
        return std::nullopt;
    }

private:
    static QString NameOf(const CommonSignal& signal) {
        return QStringLiteral("'%1' of '%2'").arg(signal.good->GetName(), signal.group->m_strName);
    }

    // The last that was given for the signal; null when there is none.
    const Tolerance* ToleranceOf(const CommonSignal& signal) const {
        const Tolerance* found = nullptr;
        for (const Tolerance& tolerance : m_Options.tolerances) {
            if (tolerance.signal == signal.good->GetName())
                found = &tolerance;
        }
        return found;
    }

    void AddLine(const CommonSignal& signal, int shift, const QString& file, FileReport& report) {
        const Deviation deviation = Compare(*signal.good, *signal.compared, shift);
        const Tolerance* const tolerance = ToleranceOf(signal);
        const bool isKept = tolerance == nullptr || deviation.largest <= tolerance->largest;
        report.lines.push_back({file, signal.group->m_strName, signal.good->GetName(), signal.good->GetUnit(),
                                deviation.largest,
                                deviation.at < 0 ? Cell(deviation.largest) : Cell(int64_t{deviation.at}),
                                deviation.rms, tolerance == nullptr ? NAN : tolerance->largest, isKept});
        for (size_t i = 0; i < m_Found.size(); ++i) {
            if (m_Options.tolerances[i].signal == signal.good->GetName())
                m_Found[i] = true;
        }
        if (deviation.count > 0)
            m_bBroken = m_bBroken || !isKept;
        else if (tolerance != nullptr)
            report.AddProblem(file, NameOf(signal) + QStringLiteral(" has no sample to compare"));
    }

    // Nobody shall take a part for the whole, or other moments for the same ones.
    void RemarkAxis(const CGraphData& data, int shift, const QString& file, FileReport& report) const {
        const int64_t good = SampleCount(m_Good);
        const int64_t own = SampleCount(data);
        const int64_t both = std::max<int64_t>(0, std::min(own, good + shift) - std::max(0, shift));
        if (both < good || both < own)
            report.remarks.append(
                QStringLiteral("%1: %2 of its %3 samples stand beside one of %4, which has %5")
                    .arg(file, QString::number(both), QString::number(own), m_Options.input,
                         QString::number(good)));
        if (AxisStep(data) != AxisStep(m_Good))
            report.remarks.append(QStringLiteral("%1: its samples are %2 apart, those of %3 are %4 apart")
                                      .arg(file, QString::number(AxisStep(data)), m_Options.input,
                                           QString::number(AxisStep(m_Good))));
    }

    const Options& m_Options;
    const CGraphData& m_Good;
    int m_nZero;
    std::vector<std::atomic<bool>> m_Found; // for each tolerance, whether it was asked for
    std::atomic<int> m_nCompared = 0;
    std::atomic<bool> m_bBroken = false;
};

} // namespace

ExitCode RunCompare(const Options& options) {
    const QStringList files = FilesNamedBy(options.inputs.mid(1));
    for (const QString& file : files) {
        if (support::IsSameFile(options.input, file))
            return WrongUsage(QStringLiteral("'%1' is the good recording itself").arg(file));
    }
    std::vector<FileReport> reports(1);
    std::optional<CJointProgress> progress(std::in_place, 1 + files.size());
    CRecording good;
    ReadRecording(good, good.GetData(), options.input, options.accessLevel, progress->Of(0), reports.front());
    const std::optional<int> zero = reports.front().isRead
                                        ? ZeroOf(good.GetData(), options, options.input, reports.front())
                                        : std::nullopt;
    CComparison comparison(options, good.GetData(), zero.value_or(0));
    if (zero) {
        const auto look = [&comparison](const CGraphData& data, const QString& file, FileReport& report) {
            comparison.LookAt(data, file, report);
        };
        auto others = LookAtFiles(files, options.accessLevel, look, *progress, 1);
        std::ranges::move(others, std::back_inserter(reports));
    }
    progress.reset();
    if (support::IsInterrupted())
        return ExitCode::Failed;
    if (const auto useless = comparison.FindUselessTolerance())
        return WrongUsage(QStringLiteral("--tolerance: no signal '%1' is in %2 and in a file to compare")
                              .arg(*useless, options.input));
    if (!PrintReports(reports, kColumns, options.format))
        return ExitCode::Failed;
    if (comparison.IsBroken())
        return ExitCode::ToleranceBroken;
    return HasProblems(reports) ? ExitCode::ReadWithProblems : ExitCode::Success;
}

} // namespace Tracelyn
