#include "app/AboutDlg.h"

#include "app/DialogUnits.h"
#include "app/Icons.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QStringList>
#include <QVBoxLayout>

#include <algorithm>

namespace Tracelyn {

namespace {

// Rows of columns as a table, since a label's own tab stops do not line up in a proportional font. The last
// column of a shorter row reaches to the right edge.
QString TableFromTabs(const QString& text, int columnGap) {
    static const QRegularExpression kTabs(QStringLiteral("\t+"));
    QList<QStringList> rows;
    qsizetype columns = 0;
    for (const QString& line : text.split(u'\n', Qt::SkipEmptyParts)) {
        rows.append(line.split(kTabs));
        columns = std::max(columns, rows.last().size());
    }

    QString table = QStringLiteral("<table cellspacing=\"0\" cellpadding=\"0\">");
    for (const QStringList& row : rows) {
        table += QLatin1String("<tr>");
        for (qsizetype i = 0; i < row.size(); ++i) {
            const qsizetype span = i + 1 == row.size() ? columns - i : 1;
            table +=
                QStringLiteral("<td colspan=\"%1\" style=\"white-space: pre; padding-right: %2px\">%3</td>")
                    .arg(span)
                    .arg(i + span < columns ? columnGap : 0)
                    .arg(row.at(i).toHtmlEscaped());
        }
        table += QLatin1String("</tr>");
    }
    return table + QLatin1String("</table>");
}

QLabel* MakeLabel(const QString& objectName, const QString& text, Qt::TextFormat format = Qt::PlainText) {
    auto* label = new QLabel(text);
    label->setObjectName(objectName);
    label->setTextFormat(format);
    return label;
}

} // namespace

CAboutDlg::CAboutDlg(QWidget* owner) : QDialog(owner) {
    setWindowTitle(tr("About Tracelyn"));

    constexpr int kIconSize = 32;
    auto* icon = new QLabel;
    icon->setObjectName(QStringLiteral("applicationIcon"));
    icon->setPixmap(LoadIcon(QStringLiteral("app")).pixmap(QSize(kIconSize, kIconSize), devicePixelRatioF()));

    m_pVersionText = MakeLabel(QStringLiteral("versionText"), GetVersionText());
    auto* purpose = MakeLabel(QStringLiteral("purpose"), tr("Viewer for press-brake movements"));
    auto* caption = MakeLabel(QStringLiteral("keyboardCaption"), tr("Keyboard controls:"));
    const int columnGap = DialogUnits(*this, 12, 0).width();
    m_pKeyboardHelp =
        MakeLabel(QStringLiteral("keyboardHelp"), TableFromTabs(GetKeyboardHelp(), columnGap), Qt::RichText);

    auto* ok = new QPushButton(tr("OK"));
    ok->setObjectName(QStringLiteral("okButton"));
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);

    auto* head = new QGridLayout;
    head->addWidget(icon, 0, 0, 2, 1);
    head->addWidget(m_pVersionText, 0, 1);
    head->addWidget(purpose, 1, 1);
    head->setColumnStretch(1, 1);
    head->setHorizontalSpacing(columnGap);
    head->addWidget(ok, 0, 2, 2, 1, Qt::AlignTop);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(head);
    layout->addSpacing(DialogUnits(*this, 0, 6).height());
    layout->addWidget(caption);
    layout->addWidget(m_pKeyboardHelp, 1, Qt::AlignTop);
    setFixedSize(DialogUnits(*this, 318, 151).expandedTo(layout->sizeHint()));
}

QString CAboutDlg::GetVersionText() {
    return tr("Tracelyn version  V%1").arg(QStringLiteral(TRACELYN_VERSION));
}

QString CAboutDlg::GetKeyboardHelp() {
    return tr("Left\t\t= cursor left\t\tShift-Left/End\t\t= fast left\n") +
           tr("Right\t\t= cursor right\t\tShift-Right/PgDn\t= fast right\n") +
           tr("Up\t\t= zoom in\t\tShift-PgUp\t\t= select prev. group\n") +
           tr("Down\t\t= zoom out\t\tShift-PgDn\t\t= select next group\n") +
           tr("Home\t\t= zoom all\t\tTab/PgUp\t\t= move console\n") + tr("F1\t\t= show this window\n") +
           tr("F2/F3\t\t= previous/next file\n") + tr("Space\t\t= expand/collapse selected group\n") +
           tr("1..4\t\t= expand/collapse group\n") + tr("Enter\t\t= toggle fixed cursor\n");
}

} // namespace Tracelyn
