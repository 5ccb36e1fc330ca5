// The dock that measures, and the good movement behind the opened one, in the real window.
#include "WindowTesting.h"

#include <QClipboard>
#include <QDockWidget>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QStatusBar>
#include <QTableView>

namespace {

struct Measuring : ::testing::Test, SampleUnderTest {
    QDockWidget* Dock() { return Frame().findChild<QDockWidget*>("measure"); }
    QString Range() { return Dock()->findChild<QLabel*>("measuredRange")->text(); }
    QTableView& Table() { return *Dock()->findChild<QTableView*>(); }
    // The figures of the first row with that name in the first column.
    QString Figure(const QString& signal, int column) {
        const QAbstractItemModel& model = *Table().model();
        for (int row = 0; row < model.rowCount(); ++row) {
            if (model.index(row, 0).data() == signal)
                return model.index(row, column).data().toString();
        }
        return "no " + signal;
    }
    int Pixels(const QColor& color) {
        const QImage image = Client()->grab().toImage();
        int count = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                count += image.pixelColor(x, y) == color ? 1 : 0;
        return count;
    }
    void CompareWith(const QString& path) {
        ui.answers.push_back(path);
        Choose(CommandId::CompareWith);
    }
};

} // namespace

TEST_F(Measuring, FollowsBothCursorsAndWithoutAFixedOneTheView) {
    EXPECT_EQ(Dock(), nullptr) << "nothing is there until it is asked for";
    Choose(CommandId::Measure);
    ASSERT_NE(Dock(), nullptr);
    EXPECT_TRUE(Dock()->isVisible());
    const int last = Graph().GetLastIndex();
    EXPECT_EQ(Range(), QString("View: samples 0 to %1, %2 of them").arg(last).arg(last + 1));
    Choose(CommandId::ToggleFixedCursor);
    const int fixed = Cursor();
    Key(Qt::Key_PageDown);
    const QString text =
        QString("Between the cursors: samples %1 to %2, 11 of them").arg(fixed).arg(fixed + 10);
    EXPECT_TRUE(QTest::qWaitFor([&] { return Range() == text; })) << Range().toStdString();
    const CGraphDataSet& signal = *Graph().GetData().FindSet("Y1");
    const auto value = [&](int i) { return QString::number(signal.GetScaledValue(i, kNoReference), 'f', 3); };
    EXPECT_EQ(Figure("Y1", 2), value(fixed));
    EXPECT_EQ(Figure("Y1", 3), value(fixed + 10));
    EXPECT_EQ(Cursor(), fixed + 10) << "the keys are still the picture's";

    auto* const copy = Dock()->findChildren<QPushButton*>().front();
    QTest::mouseClick(copy, Qt::LeftButton);
    EXPECT_TRUE(QGuiApplication::clipboard()->text().contains("\nY1\tmm\t" + value(fixed)))
        << "as it is shown";
    const TestFolder folder;
    const QString path = folder.Path("figures.csv");
    ui.answers.push_back(path);
    QTest::mouseClick(Dock()->findChildren<QPushButton*>().back(), Qt::LeftButton);
    EXPECT_TRUE(TestFolder::Read(path).startsWith("file,group,signal,unit,from,to,count,first,last,"));
    EXPECT_EQ(ui.TakeMessages().size(), 1U);

    Choose(CommandId::FileClose);
    EXPECT_EQ(Table().model()->rowCount(), 0);
}

TEST_F(Measuring, ComparesWithAGoodMovementUntilItIsToldToStop) {
    const QImage before = Client()->grab().toImage();
    const QColor dimmed(0, 102, 0); // two fifths of the green of Y1
    const int without = Pixels(dimmed);
    CompareWith(SAMPLES_DIR "/bend03.paf");
    EXPECT_TRUE(ui.TakeMessages().empty());
    EXPECT_GT(Pixels(dimmed), without + 100);
    Choose(CommandId::Measure);
    EXPECT_NE(Figure("Y1", 16), QString());
    Choose(CommandId::Measure);
    Choose(CommandId::KeepForSet);
    Choose(CommandId::NextFile);
    EXPECT_GT(Pixels(dimmed), without + 100) << "kept for the set";
    Choose(CommandId::PreviousFile);
    Choose(CommandId::StopComparing);
    EXPECT_EQ(Pixels(dimmed), without);
    EXPECT_FALSE(IsEnabled(CommandId::StopComparing));
    CompareWith(SAMPLES_DIR "/bend03.paf");
    Choose(CommandId::NextFile);
    Choose(CommandId::PreviousFile);
    EXPECT_EQ(Client()->grab().toImage(), before) << "not kept";
}

TEST_F(Measuring, SaysWhyItCannotCompare) {
    const TestFolder folder;
    const QString empty = folder.Write("empty.xml", "<Analysis");
    for (const auto& [path, messages, text] :
         {std::tuple<QString, size_t, const char*>{SAMPLES_DIR "/bend01.paf", 1,
                                                   "is the opened recording itself"},
          {empty, 2, "has no signal that the opened recording has"},
          {folder.Path("missing.paf"), 1, "Problem expanding analysis file"},
          {folder.Path("note.txt"), 1, "is no analysis file"}}) {
        CompareWith(path);
        const auto said = ui.TakeMessages();
        EXPECT_EQ(said.size(), messages) << path.toStdString();
        EXPECT_NE(said.back().find(text), std::string::npos) << said.back();
        EXPECT_FALSE(IsEnabled(CommandId::StopComparing));
    }
}

// Two samples for each column at least.
TEST_F(Measuring, TellsHowManySamplesThePictureLeavesOut) {
    auto* const pane = Frame().statusBar()->findChild<QLabel*>("skipping");
    Frame().resize(700, 500);
    Settle();
    const int step = Graph().GetSamplesPerShownOne();
    ASSERT_GT(step, 1);
    EXPECT_NE(PaintedAt(*Frame().statusBar(), QString("1 of %1").arg(step)), -1);
    Choose(CommandId::ShowEveryEvent);
    Settle();
    EXPECT_FALSE(pane->isVisible());
    Choose(CommandId::ShowEveryEvent);
    while (Graph().CanZoomIn() && Graph().GetZoom() < static_cast<float>(step) + 1.0F)
        Choose(CommandId::ZoomIn);
    Settle();
    EXPECT_FALSE(pane->isVisible());
}
