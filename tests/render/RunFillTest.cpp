// Whatever CRunFill makes of the runs, their pixels and no others are filled.
#include "render/RunFill.h"
#include "Testing.h"

#include <QImage>
#include <QPainter>

namespace {

constexpr QSize kSize(700, 2600);

template <class Fill>
QImage Picture(Fill fill) {
    QImage image(kSize, QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    painter.setPen(Qt::red);
    painter.setBrush(Qt::green);
    fill(painter);
    return image;
}

} // namespace

TEST(RunFill, FillsEachPixelOfTheRunsAndNoOther) {
    std::mt19937 random(7);
    const auto below = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    for (const size_t count : {0U, 1U, 31U, 100U, 512U}) {
        for (const int tallest : {3, 40, 2500}) {
            std::vector<QRect> runs;
            int x = below(100);
            while (runs.size() < count) {
                const int y = below(kSize.height() - tallest) - 20;
                const bool isColumn = below(10) != 0;
                runs.emplace_back(x, y, isColumn ? 1 : below(9), isColumn ? 1 + below(tallest) : 1);
                x += below(10) == 0 ? below(40) - 20 : 1;
            }
            const QImage expected = Picture([&](QPainter& painter) {
                for (const QRect& run : runs)
                    painter.fillRect(run, Qt::green);
            });
            const QImage filled = Picture([&](QPainter& painter) { CRunFill().Fill(painter, runs); });
            EXPECT_EQ(filled, expected) << count << " runs up to " << tallest;
        }
    }
}
