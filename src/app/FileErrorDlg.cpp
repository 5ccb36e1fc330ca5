#include "app/FileErrorDlg.h"

#include "app/DialogUnits.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace Tracelyn {

namespace {

QString VersionText(int version) {
    return QString::asprintf("%.3d", version);
}

} // namespace

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
