#include "WindowTesting.h"
#include "app/Commands.h"
#include "app/Dialogs.h"

#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QTextDocument>

TEST(AboutBox, ShowsVersionPurposeAndHelp) {
    const CAboutDlg dialog;
    const auto label = [&](const char* name) { return dialog.findChild<QLabel*>(name); };
    EXPECT_EQ(dialog.windowTitle(), "About Tracelyn");
    EXPECT_EQ(label("versionText")->text(), "Tracelyn version  V2.3.16");
    EXPECT_EQ(label("purpose")->text(), "Viewer for press-brake movements");
    EXPECT_EQ(label("keyboardCaption")->text(), "Keyboard controls:");
    EXPECT_EQ(label("applicationIcon")->pixmap().deviceIndependentSize(), QSizeF(32, 32));
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
    shown.setHtml(label("keyboardHelp")->text());
    EXPECT_EQ(shown.toPlainText().split('\n', Qt::SkipEmptyParts),
              CAboutDlg::GetKeyboardHelp().split(QRegularExpression("[\t\n]+"), Qt::SkipEmptyParts));
}

TEST(FileErrorBox, AsksWithBothVersionsAndAnswersWithItsCrossedResults) {
    using Case = std::tuple<const char*, const char*, int>;
    for (const auto& [name, caption, result] :
         {Case{"abortButton", "&Abort", 1009}, Case{"ignoreButton", "&Ignore", 5},
          Case{"ignoreAllButton", "Ignore &all", 3}, Case{"", "", 1009}}) {
        CFileErrorDlg modal(nullptr, 7, 12);
        const WhenModal answer([&, button = name, text = caption](QDialog& dialog) {
            EXPECT_TRUE(dialog.findChild<QLabel*>("message")->text().startsWith(
                "The version of Tracelyn (007) with which you created this file is incompatible with this "
                "version (012)."));
            if (auto* const clicked = dialog.findChild<QPushButton*>(button)) {
                EXPECT_EQ(clicked->text(), text);
                QTest::mouseClick(clicked, Qt::LeftButton);
            }
            if (dialog.isVisible())
                QTest::keyClick(&dialog, Qt::Key_Escape);
        });
        EXPECT_EQ(modal.DoModal(), result) << name;
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
