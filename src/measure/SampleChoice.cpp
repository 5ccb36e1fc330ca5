#include "measure/SampleChoice.h"

#include "measure/Signals.h"

#include <algorithm>

namespace Tracelyn {

namespace {

// The on/off signal of that name; null, with the reason, when there is none.
const CGraphDataSet* FindSwitch(const CGraphData& data, const QString& name, QString& reason) {
    const CGraphDataSet* const signal = FindOnOffSignal(data, name);
    if (signal == nullptr)
        reason = QStringLiteral("there is no on/off signal '%1'").arg(name);
    return signal;
}

} // namespace

std::optional<ChosenSamples> FindChosen(const CGraphData& data, const SampleChoice& choice, QString& reason) {
    const int last = SampleCount(data) - 1;
    const int from = choice.from.value_or(0);
    const int to = choice.to.value_or(last);
    if (last < 0) {
        reason = QStringLiteral("there are no samples");
        return std::nullopt;
    }
    if (from > last || to > last) {
        reason =
            QStringLiteral("there is no sample %1, the last one is %2").arg(std::max(from, to)).arg(last);
        return std::nullopt;
    }
    if (!choice.whileSignal)
        return ChosenSamples{from, to};
    const CGraphDataSet* const signal = FindSwitch(data, *choice.whileSignal, reason);
    if (signal == nullptr)
        return std::nullopt;
    const std::optional<int> on = FindSwitchOn(*signal, from);
    if (!on || *on > to) {
        reason = QStringLiteral("'%1' is never on between the samples %2 and %3")
                     .arg(*choice.whileSignal, QString::number(from), QString::number(to));
        return std::nullopt;
    }
    const std::optional<int> off = FindSwitchOff(*signal, *on);
    return ChosenSamples{*on, off && *off <= to ? *off - 1 : to};
}

std::optional<int> FindZero(const CGraphData& data, const std::optional<QString>& alignSignal,
                            QString& reason) {
    if (!alignSignal)
        return 0;
    const CGraphDataSet* const signal = FindSwitch(data, *alignSignal, reason);
    const std::optional<int> zero = signal == nullptr ? std::nullopt : FindSwitchOn(*signal, 0);
    if (signal != nullptr && !zero)
        reason = QStringLiteral("'%1' is never on").arg(*alignSignal);
    return zero;
}

} // namespace Tracelyn
