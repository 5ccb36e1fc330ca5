// The panes of the status bar: message, file label and the keyboard's lock keys.
#pragma once

#include <QObject>

class QLabel;
class QStatusBar;

namespace Tracelyn {

class CStatusPanes : public QObject {
    Q_OBJECT

public:
    // Adds the panes to the bar, which owns them and this object.
    explicit CStatusPanes(QStatusBar& bar);

    void SetFileLabel(const QString& text);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void UpdateLockKeys();

    QLabel* m_pFileLabel;
    QLabel* m_pCaps;
    QLabel* m_pNum;
};

} // namespace Tracelyn
