#include "app/Accessibility.h"

#include "app/ChildView.h"
#include "render/Console.h"

#include <QAccessibleWidget>

namespace Tracelyn {

namespace {

class CAccessibleView : public QAccessibleWidget {
public:
    explicit CAccessibleView(CChildView* view)
        : QAccessibleWidget(view, QAccessible::Chart, CChildView::tr("Recording")), m_View(*view) {}

    QString text(QAccessible::Text text) const override {
        if (text != QAccessible::Description && text != QAccessible::Value)
            return QAccessibleWidget::text(text);
        const CGraph& graph = m_View.GetGraph();
        if (m_View.IsLoading() || !m_View.IsDataLoaded())
            return CChildView::tr("Nothing is opened");
        const CursorPair cursors{graph.GetCursorPosition(), graph.GetFixedCursor()};
        return ValueTable(graph.GetData(), cursors)
            .trimmed()
            .replace(u'\t', u' ')
            .replace(u'\n', QLatin1String(", "));
    }

private:
    const CChildView& m_View;
};

QAccessibleInterface* MakeInterface(const QString& /*className*/, QObject* object) {
    auto* const view = qobject_cast<CChildView*>(object);
    return view != nullptr ? new CAccessibleView(view) : nullptr; // the toolkit owns it
}

} // namespace

void DescribeViews() {
    QAccessible::installFactory(MakeInterface);
}

void TellValuesChanged(CChildView& view) {
    if (!QAccessible::isActive())
        return;
    QAccessibleEvent event(&view, QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&event);
}

} // namespace Tracelyn
