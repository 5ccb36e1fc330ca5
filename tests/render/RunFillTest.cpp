// Whatever is made of the runs, their pixels and no others are filled.
#include "render/RunFill.h"
#include "Testing.h"
#include "render/ColumnFill.h"

#include <QImage>
#include <QPaintEngine>
#include <QPainter>

#include <array>

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

// Begins the same filling twice, from runs in one vector as a painter has them, which it uses again at once.
static void BeginTwice(CColumnFill& fill, const PixelGrid& grid, std::span<const RunLayer> layers,
                       support::CBackgroundTasks& tasks) {
    std::vector<PixelRect> runs;
    for (int i = 0; i < 2; ++i) {
        runs.clear();
        for (const RunLayer& layer : layers)
            runs.insert(runs.end(), layer.runs.begin(), layer.runs.end());
        std::vector<RunLayer> own;
        size_t begin = 0;
        for (const RunLayer& layer : layers) {
            own.push_back({layer.color, std::span(runs).subspan(begin, layer.runs.size())});
            begin += layer.runs.size();
        }
        fill.Begin(grid, own, runs, tasks);
        runs.assign(begin, {0, 0, 1000, 300});
    }
}

TEST(RunFill, FillsEachPixelOfTheRunsAndNoOther) {
    std::mt19937 random(7);
    const auto below = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    for (const size_t count : {0U, 1U, 31U, 100U, 512U}) {
        for (const int tallest : {3, 40, 2500}) {
            std::vector<PixelRect> runs;
            int x = below(100);
            while (runs.size() < count) {
                const int y = below(kSize.height() - tallest) - 20;
                const bool isColumn = below(10) != 0;
                runs.push_back(
                    {x, y, x + (isColumn ? 1 : below(9)), y + (isColumn ? 1 + below(tallest) : 1)});
                x += below(10) == 0 ? below(40) - 20 : 1;
            }
            const QImage expected = Picture([&](QPainter& painter) {
                for (const PixelRect& run : runs)
                    painter.fillRect(run.ToQRect(), Qt::green);
            });
            const QImage filled = Picture([&](QPainter& painter) { CRunFill().Fill(painter, runs); });
            EXPECT_EQ(filled, expected) << count << " runs up to " << tallest;
        }
    }
}

// Layers over each other, of columns with gaps and of rows, at every scale and behind every clip.
TEST(PixelGrid, IsFilledWhereRunsAreAndNowhereElse) {
    std::mt19937 random(7);
    const auto below = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    int reached = 0;
    for (int round = 0; round < 40; ++round) {
        std::vector<std::vector<PixelRect>> runs(round % 10 == 9 ? 70 : 5);
        std::vector<RunLayer> layers;
        for (auto& each : runs) {
            for (int x = -3; x < 1130; x += below(12) == 0 ? -2 : 1) {
                const bool isColumn = below(10) != 0;
                const int y = below(400) - 20;
                each.push_back({x, y, x + (isColumn ? 1 : below(60)), y + (isColumn ? 1 + below(300) : 1)});
            }
            layers.push_back({qRgb(below(256), below(256), below(256)), each});
        }
        const double scale = std::array{1.0, 2.0, 3.0, 1.5}[size_t(round % 4)];
        QRegion clip(below(40), below(40), 150 + below(1100), 100 + below(300));
        for (int i = below(4); i > 0; --i)
            clip -= QRect(below(900), below(300), below(100), below(100));
        enum class By { Painter, Runs, Columns };
        const auto picture = [&](By way) {
            QImage image(QSize(1131, 397) * scale, QImage::Format_RGB32);
            image.fill(Qt::darkBlue);
            image.setDevicePixelRatio(scale);
            if (round % 3 == 0)
                image.paintEngine()->setSystemClip(QRect(20, 30, 1090, 300));
            QPainter painter(&image);
            painter.translate(round % 5, 0);
            painter.setClipRegion(clip);
            if (const auto grid = way != By::Painter ? PixelsOf(painter) : std::nullopt) {
                CColumnFill fill;
                support::CBackgroundTasks tasks;
                if (way == By::Columns)
                    BeginTwice(fill, *grid, layers, tasks);
                for (size_t i = 0; way == By::Runs && i < layers.size(); ++i)
                    FillRuns(*grid, layers[i]);
                fill.Finish(tasks);
                ++reached;
                return image.copy();
            }
            for (const RunLayer& layer : layers) {
                for (const PixelRect& run : layer.runs)
                    painter.fillRect(run.ToQRect(), QColor(layer.color));
            }
            painter.end();
            return image.copy();
        };
        const QImage expected = picture(By::Painter);
        EXPECT_EQ(picture(By::Runs), expected) << "round " << round << ", scale " << scale;
        EXPECT_EQ(picture(By::Columns), expected) << "round " << round << ", scale " << scale;
    }
    EXPECT_GT(reached, 30) << "the quick ways were compared";
}
