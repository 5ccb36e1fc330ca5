#include "WindowTesting.h"
#include "app/StatusBar.h"

#include <QProgressBar>
#include <QStatusBar>

TEST(LoadProgress, IsPaintedAtOnceWhenALoadTakesLongAndGoesWithIt) {
    WindowUnderTest window;
    QStatusBar& bar = *window.Frame().statusBar();
    const auto find = [&] { return bar.findChild<QProgressBar*>("loadProgress"); };
    {
        CLoadProgress shortLoad(bar, std::chrono::hours(1));
        shortLoad.Show(0.5);
        EXPECT_EQ(find(), nullptr);

        CLoadProgress longLoad(bar, std::chrono::milliseconds(0));
        longLoad.Show(0.25);
        ASSERT_NE(find(), nullptr);
        EXPECT_TRUE(find()->isVisible() && bar.rect().contains(find()->geometry()));
        EXPECT_EQ(find()->value(), 250);
        const PaintCounter counter(find());
        while (find()->value() == 250)
            longLoad.Show(0.5);
        EXPECT_GE(counter.paints, 1);
    }
    EXPECT_EQ(find(), nullptr);
}
