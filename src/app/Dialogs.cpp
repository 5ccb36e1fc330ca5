#include "app/Dialogs.h"

#include "app/Artwork.h"

#include <QFontMetrics>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QStringList>
#include <QVBoxLayout>

#include <algorithm>

namespace Tracelyn {

namespace {

// The size in pixels of a size in dialog units, which grow with the widget's font: a unit is a quarter of its
// average character's width and an eighth of its height.
QSize DialogUnits(const QWidget& widget, int width, int height) {
    const QFontMetrics metrics(widget.font());
    return {width * metrics.averageCharWidth() / 4, height * metrics.height() / 8};
}

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

QString VersionText(int version) {
    return QString::asprintf("%.3d", version);
}

} // namespace

CAboutDlg::CAboutDlg(QWidget* owner) : QDialog(owner) {
    setWindowTitle(tr("About Tracelyn"));

    constexpr int kIconSize = 32;
    auto* icon = new QLabel;
    icon->setObjectName(QStringLiteral("applicationIcon"));
    icon->setPixmap(LoadIcon(QStringLiteral("app")).pixmap(QSize(kIconSize, kIconSize), devicePixelRatioF()));

    auto* version = MakeLabel(QStringLiteral("versionText"), GetVersionText());
    auto* purpose = MakeLabel(QStringLiteral("purpose"), tr("Viewer for press-brake movements"));
    auto* caption = MakeLabel(QStringLiteral("keyboardCaption"), tr("Keyboard controls:"));
    const int columnGap = DialogUnits(*this, 12, 0).width();
    auto* help =
        MakeLabel(QStringLiteral("keyboardHelp"), TableFromTabs(GetKeyboardHelp(), columnGap), Qt::RichText);

    auto* ok = new QPushButton(tr("OK"));
    ok->setObjectName(QStringLiteral("okButton"));
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);

    auto* head = new QGridLayout;
    head->addWidget(icon, 0, 0, 2, 1);
    head->addWidget(version, 0, 1);
    head->addWidget(purpose, 1, 1);
    head->setColumnStretch(1, 1);
    head->setHorizontalSpacing(columnGap);
    head->addWidget(ok, 0, 2, 2, 1, Qt::AlignTop);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(head);
    layout->addSpacing(DialogUnits(*this, 0, 6).height());
    layout->addWidget(caption);
    layout->addWidget(help, 1, Qt::AlignTop);
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

CFileErrorDlg::CFileErrorDlg(QWidget* parent, int fileVersion, int programVersion)
    : QDialog(parent),
      m_strMessage(
          tr("The version of Tracelyn (%1) with which you created this file is incompatible with this "
             "version "
             "(%2).\n\nDo you want to ignore this message and try to view the file anyway, or do you want to "
             "abort reading the file?\n\nClicking 'Ignore all' will try to load this file and any other file "
             "that might result in this message until you restart the application.")
              .arg(VersionText(fileVersion), VersionText(programVersion))) {
    setWindowTitle(tr("Error while reading file!"));

    auto* message = new QLabel(m_strMessage);
    message->setObjectName(QStringLiteral("message"));
    message->setTextFormat(Qt::PlainText);
    message->setWordWrap(true);
    message->setAlignment(Qt::AlignLeft | Qt::AlignTop);

    const auto makeButton = [this](const QString& objectName, const QString& text, Result result) {
        auto* button = new QPushButton(text);
        button->setObjectName(objectName);
        connect(button, &QPushButton::clicked, this, [this, result] { done(result); });
        return button;
    };
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(makeButton(QStringLiteral("abortButton"), tr("&Abort"), Abort));
    buttons->addStretch();
    buttons->addWidget(makeButton(QStringLiteral("ignoreButton"), tr("&Ignore"), Ignore));
    buttons->addStretch();
    buttons->addWidget(makeButton(QStringLiteral("ignoreAllButton"), tr("Ignore &all"), IgnoreAll));

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(message, 1);
    layout->addLayout(buttons);
    const QSize wanted = DialogUnits(*this, 263, 119).expandedTo(layout->minimumSize());
    setFixedSize(wanted.width(), std::max(wanted.height(), layout->heightForWidth(wanted.width())));
}

int CFileErrorDlg::DoModal() {
    const int result = exec();
    return result == Rejected ? Abort : result;
}

} // namespace Tracelyn
