#include "WindowTesting.h"
#include "app/Artwork.h"
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
    QTextDocument shown;
    shown.setHtml(label("keyboardHelp")->text());
    EXPECT_EQ(shown.toPlainText().split('\n', Qt::SkipEmptyParts),
              CAboutDlg::GetKeyboardHelp().split(QRegularExpression("[\t\n]+"), Qt::SkipEmptyParts));
}

TEST(FileErrorBox, AsksWithBothVersionsAndAnswersWithItsCrossedResult) {
    CFileErrorDlg modal(nullptr, 7, 12);
    const WhenModal answer([](QDialog& dialog) {
        EXPECT_TRUE(dialog.findChild<QLabel*>("message")->text().startsWith(
            "The version of Tracelyn (007) with which you created this file is incompatible with this "
            "version (012)."));
        QTest::mouseClick(dialog.findChild<QPushButton*>("ignoreAllButton"), Qt::LeftButton);
        dialog.close();
    });
    EXPECT_EQ(modal.DoModal(), 3);
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
