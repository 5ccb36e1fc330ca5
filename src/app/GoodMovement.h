// The good movement that the window compares recordings with.
#pragma once

#include "tracelyn/Recording.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace Tracelyn {

class CGraphData;

// Holds the second recording, and knows beside which samples of the opened one its samples stand. At first
// both begin together.
class CGoodMovement {
public:
    bool IsThere() const { return m_pRecording != nullptr; }
    // Takes the place of the one before; the alignment begins anew, and it is not kept.
    void Set(std::unique_ptr<CRecording> recording, const QString& path);
    // Frees the recording.
    void Drop();

    // Null when there is none.
    const CGraphData* GetData() const { return m_pRecording ? &m_pRecording->GetData() : nullptr; }
    const QString& GetPath() const { return m_strPath; }
    // Without the folder.
    QString GetName() const;

    // Whether it stays when another file of the measurement set is opened.
    bool IsKept() const { return m_bKept; }
    void SetKept(bool kept) { m_bKept = kept; }

    // The on/off signals that both recordings have and that switch on in both.
    QStringList GetEvents(const CGraphData& opened) const;
    // Whose first switch-on is the common zero; without one the first samples are.
    const std::optional<QString>& GetEvent() const { return m_Event; }
    void SetEvent(const std::optional<QString>& name) { m_Event = name; }
    // Whether the event stands at the fixed cursor instead of at the event of the opened recording.
    bool IsAtFixedCursor() const { return m_bAtFixedCursor; }
    void SetAtFixedCursor(bool at) { m_bAtFixedCursor = at; }

    // Sample i of the good movement stands beside sample i + shift of the opened one. Nothing when the event
    // is missing in one of them. The fixed cursor may be kNoReference.
    std::optional<int> GetShift(const CGraphData& opened, int fixedCursor) const;

private:
    std::unique_ptr<CRecording> m_pRecording;
    QString m_strPath;
    bool m_bKept = false;
    std::optional<QString> m_Event;
    bool m_bAtFixedCursor = false;
};

} // namespace Tracelyn
