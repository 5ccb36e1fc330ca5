#include "app/Commands.h"
#include "app/Dialogs.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>
#include <QTextDocument>
#include <QTimer>

#include <functional>
#include <initializer_list>
#include <stdexcept>
#include <utility>
#include <vector>

using namespace Tracelyn;

namespace {

template <class T>
T& Child(const QWidget& dialog, const char* name) {
    auto* child = dialog.findChild<T*>(QLatin1String(name));
    if (child == nullptr)
        throw std::runtime_error(name);
    return *child;
}

std::function<void(QDialog&)> Click(const char* button) {
    return
        [button](QDialog& dialog) { QTest::mouseClick(&Child<QPushButton>(dialog, button), Qt::LeftButton); };
}

std::function<void(QDialog&)> Press(Qt::Key key) {
    return [key](QDialog& dialog) { QTest::keyClick(&dialog, key); };
}

} // namespace

TEST(AboutBox, ShowsVersionPurposeAndHelp) {
    const CAboutDlg dialog;
    EXPECT_EQ(dialog.windowTitle(), "About Tracelyn");
    EXPECT_EQ(Child<QLabel>(dialog, "versionText").text(), "Tracelyn version  V2.3.16");
    EXPECT_EQ(Child<QLabel>(dialog, "purpose").text(), "Viewer for press-brake movements");
    EXPECT_EQ(Child<QLabel>(dialog, "keyboardCaption").text(), "Keyboard controls:");
    EXPECT_EQ(Child<QLabel>(dialog, "applicationIcon").pixmap().deviceIndependentSize(), QSizeF(32, 32));
    EXPECT_EQ(CAboutDlg::GetKeyboardHelp(), "Left\t\t= cursor left\t\tShift-Left/End\t\t= fast left\n"
                                            "Right\t\t= cursor right\t\tShift-Right/PgDn\t= fast right\n"
                                            "Up\t\t= zoom in\t\tShift-PgUp\t\t= select prev. group\n"
                                            "Down\t\t= zoom out\t\tShift-PgDn\t\t= select next group\n"
                                            "Home\t\t= zoom all\t\tTab/PgUp\t\t= move console\n"
                                            "F1\t\t= show this window\n"
                                            "F2/F3\t\t= previous/next file\n"
                                            "Space\t\t= expand/collapse selected group\n"
                                            "1..4\t\t= expand/collapse group\n"
                                            "Enter\t\t= toggle fixed cursor\n");

    QTextDocument shown;
    shown.setHtml(Child<QLabel>(dialog, "keyboardHelp").text());
    const QStringList fields = shown.toPlainText().split('\n', Qt::SkipEmptyParts);
    EXPECT_EQ(fields, CAboutDlg::GetKeyboardHelp().split(QRegularExpression("[\t\n]+"), Qt::SkipEmptyParts));
}

TEST(FileErrorBox, AsksWithBothVersionsInThreeDigits) {
    const CFileErrorDlg dialog(nullptr, 7, 12);
    EXPECT_EQ(dialog.windowTitle(), "Error while reading file!");
    EXPECT_EQ(
        Child<QLabel>(dialog, "message").text(),
        "The version of Tracelyn (007) with which you created this file is incompatible with this version "
        "(012).\n\nDo you want to ignore this message and try to view the file anyway, or do you want to "
        "abort "
        "reading the file?\n\nClicking 'Ignore all' will try to load this file and any other file that might "
        "result in this message until you restart the application.");
    for (const auto& [name, caption] : std::initializer_list<std::pair<const char*, const char*>>{
             {"abortButton", "&Abort"}, {"ignoreButton", "&Ignore"}, {"ignoreAllButton", "Ignore &all"}})
        EXPECT_EQ(Child<QPushButton>(dialog, name).text(), caption);
}

TEST(FileErrorBox, AnswersWithItsCrossedResults) {
    for (const auto& [act, result] : std::initializer_list<std::pair<std::function<void(QDialog&)>, int>>{
             {Click("abortButton"), 1009},
             {Click("ignoreButton"), 5},
             {Click("ignoreAllButton"), 3},
             {Press(Qt::Key_Escape), 1009},
             {[](QDialog& dialog) { dialog.close(); }, 1009},
             {[](QDialog& dialog) { dialog.hide(); }, 1009}}) {
        CFileErrorDlg modal(nullptr, 1, 2);
        QTimer::singleShot(0, &modal, [&modal, &action = act] {
            action(modal);
            if (modal.isVisible())
                modal.done(-1); // so that a lost answer fails instead of waiting for ever
        });
        EXPECT_EQ(modal.DoModal(), result);
    }
}

TEST(Artwork, HasAPictureForEveryPixelRatio) {
    constexpr auto format = QImage::Format_ARGB32_Premultiplied;
    for (const char* name :
         {"app", "open", "previous", "next", "fixed-cursor", "zoom-in", "zoom-out", "zoom-reset"}) {
        const QIcon icon = LoadIcon(name);
        for (const double ratio : {1.0, 1.5, 2.0, 3.0}) {
            const QPixmap pixmap = icon.pixmap(QSize(16, 16), ratio);
            EXPECT_EQ(pixmap.size(), QSize(16, 16) * ratio) << name << " at " << ratio;
            // Drawn for this size, not scaled to it.
            const QImage drawn(QStringLiteral(":/icons/%1-%2.png").arg(name).arg(16 * ratio));
            EXPECT_TRUE(pixmap.toImage().convertToFormat(format) == drawn.convertToFormat(format))
                << name << " at " << ratio;
        }
    }
    EXPECT_TRUE(LoadIcon("app").availableSizes().contains(QSize(256, 256)));
    EXPECT_TRUE(LoadIcon("no such picture").isNull());
}
