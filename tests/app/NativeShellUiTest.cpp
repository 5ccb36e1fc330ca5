#include "WindowTesting.h"
#include "app/ShellUi.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QTreeView>

namespace {

FileRequest RequestIn(const TestFolder& folder) {
    return {.title = {},
            .filters = {{"All Files", {"*"}}},
            .defaultExtension = {},
            .fileName = {},
            .directory = folder.Folder()};
}

} // namespace

TEST(SaveDialog, CompletesTheNameByTheChosenType) {
    const TestFolder folder;
    using Case = std::tuple<const char*, int, const char*>; // offered, steps among the types, result
    for (const auto& [offered, steps, result] :
         {Case{"bend01", 0, "bend01.paf"}, Case{"bend01", 1, "bend01.csv"}, Case{"bend01", 2, "bend01.paf"},
          Case{"run.v2-05", 0, "run.v2-05.paf"}, Case{"copy.xml", 0, "copy.xml"}, Case{"X.PAF", 0, "X.PAF"},
          Case{"table.csv", 0, "table.csv"}}) {
        const WhenModal answer([times = steps](QWidget& dialog) {
            for (int i = 0; i < times; ++i)
                QTest::keyClick(dialog.findChild<QComboBox*>("fileTypeCombo"), Qt::Key_Down);
            QTest::keyClick(dialog.findChild<QLineEdit*>("fileNameEdit"), Qt::Key_Return);
        });
        const auto path = CNativeShellUi().AskSaveFile(
            {.title = "Save...",
             .filters = {{"paf Files", {"*.paf"}}, {"csv Files", {"*.csv"}}, {"All Files", {"*"}}},
             .defaultExtension = "paf",
             .fileName = offered,
             .directory = folder.Folder()});
        EXPECT_EQ(path.value_or("cancelled"), QDir::toNativeSeparators(folder.Path(result)));
    }
}

TEST(SaveDialog, CompletesTheNameOfAPictureByItsOwnTypes) {
    const TestFolder folder;
    for (const auto& [offered, result] :
         {std::pair{"bend01", "bend01.png"}, {"a.SVG", "a.SVG"}, {"a.paf", "a.paf.png"}}) {
        const WhenModal answer([](QWidget& dialog) {
            QTest::keyClick(dialog.findChild<QLineEdit*>("fileNameEdit"), Qt::Key_Return);
        });
        FileRequest request = RequestIn(folder);
        request.filters = {{"PNG Files", {"*.png"}}, {"SVG Files", {"*.svg"}}};
        request.fileName = offered;
        request.knownExtensions = {"png", "svg"};
        EXPECT_EQ(CNativeShellUi().AskSaveFile(request).value_or("cancelled"),
                  QDir::toNativeSeparators(folder.Path(result)));
    }
}

TEST(SaveDialog, StaysOpenWhileTheFolderIsMissing) {
    const TestFolder folder;
    bool isTold = false;
    bool isOpen = false;
    const WhenModal answer([&](QDialog& dialog) {
        auto& name = *dialog.findChild<QLineEdit*>("fileNameEdit");
        const WhenModal close([&](QDialog& box) {
            isTold = PaintedAt(box, "Path does not exist.") != -1;
            box.close();
        });
        QTest::keyClicks(&name, "missing/a.csv");
        QTest::keyClick(&name, Qt::Key_Return);
        isOpen = dialog.isVisible();
        name.setText(folder.Path("a.csv"));
        QTest::keyClick(&name, Qt::Key_Return);
    });
    const auto path = CNativeShellUi().AskSaveFile(RequestIn(folder));
    EXPECT_TRUE(isTold);
    EXPECT_TRUE(isOpen);
    EXPECT_EQ(path.value_or("cancelled"), QDir::toNativeSeparators(folder.Path("a.csv")));
}

TEST(OpenDialog, ShowsSizeAndDateInFull) {
    const TestFolder folder;
    folder.Write("a name that would like to have all the room for itself, and a little more.xml",
                 QByteArray(123456, ' '));
    const WhenModal answer([](QDialog& dialog) {
        auto& list = *dialog.findChild<QTreeView*>();
        EXPECT_TRUE(QTest::qWaitFor([&] { return list.model()->rowCount(list.rootIndex()) == 1; }));
        for (const int column : {1, 3}) {
            const QString text = list.model()->index(0, column, list.rootIndex()).data().toString();
            EXPECT_TRUE(QTest::qWaitFor([&] { return PaintedAt(list, text) != -1; }, 1000))
                << qPrintable(text);
        }
        dialog.reject();
    });
    CNativeShellUi().AskOpenFile(RequestIn(folder));
}

TEST(MessageBox, SkipsOnlyWhenTheUserSaysSo) {
    const auto skips = [](const std::function<void(QDialog&)>& act) {
        const WhenModal answer(act);
        return CNativeShellUi().ShowMessageOrSkip(MessageIcon::Stop, "ERROR", "<b>");
    };
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape})
        EXPECT_FALSE(skips([key](QDialog& box) { QTest::keyClick(&box, key); }));
    EXPECT_TRUE(skips([](QDialog& box) {
        for (QAbstractButton* const button : box.findChildren<QAbstractButton*>()) {
            if (button->text() == "Skip the rest")
                return QTest::mouseClick(button, Qt::LeftButton);
        }
        box.close();
    }));
}
