// What the window shows after partial repaints, and how little it paints for them.
#include "WindowTesting.h"

#include <gtest/gtest.h>

#include <QPaintEvent>

#include <cmath>

using namespace Tracelyn;

namespace {

// Collects the regions that a widget paints.
class PaintCounter : public QObject {
public:
    explicit PaintCounter(QWidget* widget) { widget->installEventFilter(this); }

    int64_t Area() const {
        int64_t area = 0;
        for (const QRegion& region : regions) {
            for (const QRect& rect : region)
                area += int64_t{rect.width()} * rect.height();
        }
        return area;
    }

    std::vector<QRegion> regions;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint)
            regions.push_back(static_cast<QPaintEvent*>(event)->region());
        return QObject::eventFilter(watched, event);
    }
};

struct Started : WindowUnderTest {
    Started() : WindowUnderTest({QStringLiteral("47195"), QStringLiteral(SAMPLES_DIR "/bend04.paf")}) {}

    // The picture after everything was painted anew.
    QImage FullScreen() {
        Client()->update();
        return Screen();
    }
};

} // namespace

TEST(WindowRepaint, LeavesNoTracesBehindTheCursors) {
    Started window;
    for (int round = 0; round < 3; ++round) {
        for (const auto& [key, modifiers, times] :
             std::initializer_list<std::tuple<Qt::Key, Qt::KeyboardModifier, int>>{
                 {Qt::Key_Right, Qt::NoModifier, 7},
                 {Qt::Key_Right, Qt::ShiftModifier, 5},
                 {Qt::Key_Return, Qt::NoModifier, 1},
                 {Qt::Key_Left, Qt::NoModifier, 9},
                 {Qt::Key_Left, Qt::ShiftModifier, 11},
                 {Qt::Key_PageDown, Qt::ShiftModifier, 1},
                 {Qt::Key_Return, Qt::NoModifier, 1},
                 {Qt::Key_Right, Qt::NoModifier, 2}}) {
            for (int i = 0; i < times; ++i)
                window.Key(key, modifiers);
            const QImage shown = window.Screen();
            ASSERT_EQ(shown, window.FullScreen()) << "round " << round << ", key " << key;
        }
        for (int i = 0; i < 5; ++i)
            window.Key(Qt::Key_Up);
    }
}

TEST(WindowRepaint, OfACursorStepIsTwoStripsAndTheValueCells) {
    Started window;
    window.Screen();
    std::vector<SCREENRECT> cells;
    window.Graph().GetCanvas().CollectScreenRects(kValueRect, cells);
    int64_t allowed = 2 * window.Client()->height();
    for (const SCREENRECT& cell : cells)
        allowed += int64_t{cell.right - cell.left} * (cell.bottom - cell.top);
    const double scale = window.Client()->devicePixelRatioF();
    if (scale != std::floor(scale))
        allowed *= 4;

    const PaintCounter counter(window.Client());
    window.Key(Qt::Key_Right);
    ASSERT_FALSE(counter.regions.empty());
    EXPECT_LE(counter.Area(), allowed);
    EXPECT_LT(counter.Area(), int64_t{window.Client()->width()} * window.Client()->height() / 4);
}
