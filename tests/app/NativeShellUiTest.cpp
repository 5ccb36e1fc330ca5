#include "app/ShellUi.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <functional>

using namespace Tracelyn;

namespace {

// Calls `act` once with the modal window that opens next.
class WhenModal {
public:
    explicit WhenModal(const std::function<void(QWidget&)>& act) {
        QObject::connect(&m_Poll, &QTimer::timeout, [this, act] {
            if (QWidget* const window = QApplication::activeModalWidget()) {
                m_Poll.stop();
                act(*window);
            }
        });
        m_Poll.start(10);
    }

private:
    QTimer m_Poll;
};

} // namespace

TEST(SaveDialog, CompletesTheNameByTheChosenType) {
    struct Case {
        const char* offered;
        int typeSteps;
        const char* result;
    };
    const QTemporaryDir folder;
    for (const auto& [offered, typeSteps, result] : {Case{"bend01", 0, "bend01.paf"},
                                                     {"bend01", 1, "bend01.csv"},
                                                     {"bend01", 2, "bend01.paf"},
                                                     {"run.v2-05", 0, "run.v2-05.paf"},
                                                     {"copy.xml", 0, "copy.xml"},
                                                     {"table.csv", 0, "table.csv"}}) {
        const WhenModal answer([steps = typeSteps](QWidget& dialog) {
            for (int i = 0; i < steps; ++i)
                QTest::keyClick(dialog.findChild<QComboBox*>(QStringLiteral("fileTypeCombo")), Qt::Key_Down);
            QTest::keyClick(dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit")), Qt::Key_Return);
        });
        CNativeShellUi ui;
        const auto path = ui.AskSaveFile(
            {.title = QStringLiteral("Save..."),
             .filters = {{"paf Files", {"*.paf"}}, {"csv Files", {"*.csv"}}, {"All Files", {"*"}}},
             .defaultExtension = QStringLiteral("paf"),
             .fileName = QString::fromLatin1(offered),
             .directory = folder.path()});
        ASSERT_TRUE(path.has_value()) << offered;
        EXPECT_EQ(path->toStdString(),
                  QDir::toNativeSeparators(folder.filePath(QString::fromLatin1(result))).toStdString());
    }
}

TEST(MessageBox, SkipsOnlyWhenTheUserSaysSo) {
    const auto skips = [](const std::function<void(QWidget&)>& act) {
        const WhenModal answer(act);
        return CNativeShellUi().ShowMessageOrSkip(MessageIcon::Stop, QStringLiteral("ERROR"),
                                                  QStringLiteral("<b>"));
    };
    EXPECT_FALSE(skips([](QWidget& box) { QTest::keyClick(&box, Qt::Key_Return); }));
    EXPECT_FALSE(skips([](QWidget& box) { QTest::keyClick(&box, Qt::Key_Escape); }));
    EXPECT_TRUE(skips([](QWidget& box) {
        for (QAbstractButton* const button : box.findChildren<QAbstractButton*>()) {
            if (button->text() == QLatin1String("Skip the rest")) {
                QTest::mouseClick(button, Qt::LeftButton);
                return;
            }
        }
        box.close();
    }));
}
