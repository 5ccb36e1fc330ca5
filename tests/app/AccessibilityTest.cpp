// What a screen reader finds in the window, and that no mouse is needed.
#include "WindowTesting.h"

#include <QAccessible>
#include <QClipboard>
#include <QDockWidget>
#include <QGuiApplication>
#include <QScrollBar>
#include <QTableView>

#include <map>

namespace {

// All nodes below one, as the toolkit exposes them.
template <class Visit>
void ForEachNode(QAccessibleInterface& node, Visit visit) {
    visit(node);
    for (int i = 0; i < node.childCount(); ++i) {
        if (QAccessibleInterface* const child = node.child(i))
            ForEachNode(*child, visit);
    }
}

QAccessibleInterface& Node(QObject* object) {
    QAccessibleInterface* const node = QAccessible::queryAccessibleInterface(object);
    if (node == nullptr)
        qFatal("an object has no node");
    return *node;
}

} // namespace

TEST(Accessibility, EverythingThatCanBeUsedHasAName) {
    SampleUnderTest window;
    window.Choose(CommandId::Measure);
    window.Settle();
    std::map<QAccessible::Role, int> found;
    ForEachNode(Node(&window.Frame()), [&](QAccessibleInterface& node) {
        const QAccessible::Role role = node.role();
        if (node.state().invisible)
            return;
        ++found[role];
        for (const auto used :
             {QAccessible::MenuItem, QAccessible::Button, QAccessible::CheckBox, QAccessible::Chart,
              QAccessible::ScrollBar, QAccessible::Table, QAccessible::ToolBar}) {
            // The bars of the table come and go with its size.
            const bool isOfTable =
                qobject_cast<QTableView*>(node.object() ? node.object()->parent() : nullptr);
            if (role == used && !isOfTable && node.rect().isValid()) {
                EXPECT_NE(node.text(QAccessible::Name), "")
                    << role << " " << (node.object() ? node.object()->metaObject()->className() : "");
            }
        }
    });
    EXPECT_EQ(found[QAccessible::Chart], 1);
    EXPECT_GE(found[QAccessible::MenuItem], 4);
    EXPECT_GE(found[QAccessible::Button], 9) << "toolbar and dock";
    EXPECT_EQ(found[QAccessible::Table], 1);
}

TEST(Accessibility, ThePictureTellsTheValuesAtTheCursor) {
    SampleUnderTest window;
    QAccessibleInterface& view = Node(&window.View());
    EXPECT_EQ(view.text(QAccessible::Name), "Recording");
    EXPECT_TRUE(view.state().focused);
    const QString before = view.text(QAccessible::Description);
    const CGraphDataSet& signal = *window.Graph().GetData().FindSet("Y1");
    const auto told = [&] {
        return "Y1 " + QString::number(signal.GetScaledValue(window.Cursor(), kNoReference), 'f', 3) + " mm";
    };
    EXPECT_TRUE(before.contains(told())) << before.toStdString();
    window.Key(Qt::Key_PageDown);
    EXPECT_TRUE(view.text(QAccessible::Description).contains(told()));
    EXPECT_NE(view.text(QAccessible::Description), before);
    window.Choose(CommandId::FileClose);
    EXPECT_EQ(view.text(QAccessible::Description), "Nothing is opened");
}

TEST(Accessibility, TheDockNeedsNoMouse) {
    SampleUnderTest window;
    window.Frame().resize(500, 500);
    window.Choose(CommandId::Measure);
    window.Settle();
    QGuiApplication::clipboard()->clear();
    window.Key(Qt::Key_C, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([] { return QGuiApplication::clipboard()->text().contains("\nY1\t"); }));
    window.ui.answers.push_back(std::nullopt);
    window.Key(Qt::Key_S, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return window.ui.requests.size() == 1; }));
    const auto& table = *window.Frame().findChild<QTableView*>();
    const int cursor = window.Cursor();
    for (const auto& [key, bar, forward] : {std::tuple{Qt::Key_Right, table.horizontalScrollBar(), true},
                                            {Qt::Key_Down, table.verticalScrollBar(), true},
                                            {Qt::Key_Left, table.horizontalScrollBar(), false},
                                            {Qt::Key_Up, table.verticalScrollBar(), false}}) {
        const int before = bar->value();
        window.Key(key, Qt::ControlModifier);
        EXPECT_EQ(bar->value() > before, forward) << key;
        EXPECT_NE(bar->value(), before) << key;
    }
    EXPECT_EQ(window.Cursor(), cursor);
}
