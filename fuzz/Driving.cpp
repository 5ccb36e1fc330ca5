#include "Driving.h"

#include "FuzzInput.h"
#include "RenderTesting.h"

#include <array>

namespace Tracelyn {

namespace {

void Step(CGraph& graph, RecordingWindow& window, unsigned action, unsigned amount) {
    const int cursor = graph.GetCursorPosition();
    const auto count = static_cast<int>(amount);
    const PixelRect client = window.GetClientRect();
    const int x = client.GetWidth() * count / 128;
    const int y = client.GetHeight() * (count * 37 % 128) / 128;
    switch (action) {
    case 0:
        return graph.SetCursorPosition(window, cursor - 1);
    case 1:
        return graph.SetCursorPosition(window, cursor + count - 20);
    case 2:
        return graph.SetFixedCursor(window, cursor + count - 70);
    case 3:
        return graph.Zoom(window, graph.GetZoom() * 1.25F);
    case 4:
        return graph.Zoom(window, static_cast<float>(count) / 3.0F);
    case 5:
        return graph.OnHScroll(window, static_cast<ScrollCode>(amount % 10), amount * amount);
    case 6:
        return graph.SelectNextGroup(window);
    case 7:
        return graph.SelectPreviousGroup(window);
    case 8:
        graph.SelectGroup(window, count - 50);
        return;
    case 9:
        return graph.ToggleSelectedGroup(window);
    case 10:
        return graph.ToggleConsoleSide(window);
    case 11:
        return graph.ToggleBackground(window);
    case 12:
        return graph.OnClick(window, kLeftButton, x, y);
    case 13:
        return graph.ToggleGroupAt(window, kLeftButton, x, y);
    case 14:
        graph.RememberGroupStates();
        return graph.RestoreGroupStates();
    case 15:
        return graph.ShowEveryEvent(window, !graph.IsEveryEventShown());
    case 16:
        return graph.ShowBehind(window, count < 30 ? nullptr : &graph.GetData(), count * count - 5000);
    default:
        return window.Invalidate({x / 2, y / 2, x + 1, y + 1}, Contents::Draw);
    }
}

} // namespace

void Drive(CGraph& graph, Settings& settings) {
    static constexpr std::array kSizes{QSize(320, 240), QSize(500, 100), QSize(1, 1), QSize(7, 600),
                                       QSize(1000, 3)};
    static constexpr std::array kScales{1.0, 1.0, 1.5, 2.0};
    constexpr unsigned kActions = 18;
    const QSize size = kSizes[settings.Below(kSizes.size())];
    const double scale = kScales[settings.Below(kScales.size())];
    RecordingWindow window(graph, size, scale);
    graph.SetResetPending();
    window.PaintAll();
    for (unsigned left = settings.Below(6); left > 0; --left) {
        const unsigned action = settings.Below(kActions);
        Step(graph, window, action, settings.Byte() % 128);
        window.PaintInvalid();
    }
    RecordingWindow whole(graph, size, scale);
    whole.PaintAll();
    Require(window.GetImage() == whole.GetImage(), "partial repaints leave what a whole one gives");
}

} // namespace Tracelyn
