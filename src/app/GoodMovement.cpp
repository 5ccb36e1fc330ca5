#include "app/GoodMovement.h"

#include "measure/Comparison.h"
#include "measure/Signals.h"
#include "model/GraphData.h"

#include <QFileInfo>

#include <utility>

namespace Tracelyn {

namespace {

std::optional<int> FirstSwitchOn(const CGraphData& data, const QString& name) {
    const CGraphDataSet* const signal = FindOnOffSignal(data, name);
    return signal == nullptr ? std::nullopt : FindSwitchOn(*signal, 0);
}

} // namespace

void CGoodMovement::Set(std::unique_ptr<CRecording> recording, const QString& path) {
    m_pRecording = std::move(recording);
    m_strPath = path;
    m_bKept = false;
    m_Event.reset();
    m_bAtFixedCursor = false;
}

void CGoodMovement::Drop() {
    Set(nullptr, QString());
}

QString CGoodMovement::GetName() const {
    return QFileInfo(m_strPath).fileName();
}

QStringList CGoodMovement::GetEvents(const CGraphData& opened) const {
    QStringList names;
    if (!m_pRecording)
        return names;
    for (const CommonSignal& signal : MatchSignals(*GetData(), opened)) {
        const QString& name = signal.good->GetName();
        if (signal.compared != nullptr && signal.good->IsBinary() && !names.contains(name) &&
            FirstSwitchOn(*GetData(), name) && FirstSwitchOn(opened, name))
            names.append(name);
    }
    return names;
}

std::optional<int> CGoodMovement::GetShift(const CGraphData& opened, int fixedCursor) const {
    if (!m_Event)
        return 0;
    const std::optional<int> good = FirstSwitchOn(*GetData(), *m_Event);
    const std::optional<int> own = m_bAtFixedCursor && fixedCursor != kNoReference
                                       ? std::optional(fixedCursor)
                                       : FirstSwitchOn(opened, *m_Event);
    return good && own ? std::optional(*own - *good) : std::nullopt;
}

} // namespace Tracelyn
