#include "app/MeasureDock.h"

#include "app/MeasureModel.h"
#include "measure/StatisticsIndex.h"
#include "render/Graph.h"
#include "render/GraphDrawingContext.h"

#include <QBoxLayout>
#include <QCoreApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPalette>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <QTimerEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Tracelyn {

namespace {

constexpr int kRefreshMilliseconds = 50;
constexpr int kRowMargin = 4;

} // namespace

CMeasureDock::CMeasureDock(QWidget* parent)
    : QDockWidget(tr("Measure"), parent), m_pModel(new CMeasureModel(this)), m_pRange(new QLabel),
      m_pTable(new QTableView), m_pButtons(new QWidget) {
    setObjectName(QStringLiteral("measure"));
    m_pRange->setObjectName(QStringLiteral("measuredRange"));
    // A long text does not make the dock wider than a small screen.
    m_pRange->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_pTable->setModel(m_pModel);
    m_pTable->setAccessibleName(tr("Figures"));
    m_pTable->setFocusPolicy(Qt::NoFocus);
    m_pTable->setSelectionMode(QAbstractItemView::NoSelection);
    m_pTable->setShowGrid(false);
    m_pTable->setWordWrap(false);
    m_pTable->verticalHeader()->hide();
    m_pTable->verticalHeader()->setMinimumSectionSize(1);
    m_pTable->verticalHeader()->setDefaultSectionSize(m_pTable->fontMetrics().height() + kRowMargin);
    m_pTable->horizontalHeader()->setSectionsClickable(false);

    auto* const content = new QWidget;
    auto* const rows = new QVBoxLayout(content);
    auto* const top = new QHBoxLayout;
    rows->setContentsMargins(4, 2, 4, 4);
    top->addWidget(m_pRange, 1);
    top->addWidget(m_pButtons);
    auto* const buttons = new QHBoxLayout(m_pButtons);
    buttons->setContentsMargins(0, 0, 0, 0);
    const auto addButton = [&](const QString& text, auto signal) {
        auto* const button = new QPushButton(text);
        button->setFocusPolicy(Qt::NoFocus);
        connect(button, &QPushButton::clicked, this, signal);
        buttons->addWidget(button);
    };
    addButton(tr("&Copy"), &CMeasureDock::CopyRequested);
    addButton(tr("&Save..."), &CMeasureDock::SaveRequested);
    rows->addLayout(top);
    rows->addWidget(m_pTable, 1);
    setWidget(content);
    m_pButtons->setEnabled(false);
}

CMeasureDock::~CMeasureDock() = default;

bool CMeasureDock::Measure(const CGraph& graph, const support::Progress& progress) {
    Forget();
    auto index = std::make_unique<CStatisticsIndex>(graph.GetData());
    if (!index->Prepare(progress))
        return false;
    m_pGraph = &graph;
    m_pIndex = std::move(index);
    m_pModel->Reset(&graph.GetData());
    m_pButtons->setEnabled(true);
    // Columns that changed their width with the figures would dance: they fit those of the whole recording.
    m_pModel->Measure(*m_pIndex, 0, graph.GetLastIndex());
    m_pTable->resizeColumnsToContents();
    Refresh();
    return true;
}

void CMeasureDock::Forget() {
    m_Timer.stop();
    m_Shown.reset();
    m_pModel->Reset(nullptr);
    m_pIndex.reset();
    m_pRange->clear();
    m_pButtons->setEnabled(false);
}

void CMeasureDock::Follow() {
    if (!m_pIndex || !isVisible())
        return;
    if (m_bDark != m_pGraph->IsDark())
        UseColors();
    if (m_Shown != GetRange() && !m_Timer.isActive())
        m_Timer.start(kRefreshMilliseconds, this);
}

bool CMeasureDock::Compare(const CGraphData* good, int shift, const support::Progress& progress) {
    const bool isCompared = m_pModel->Compare(good, shift, progress);
    m_pTable->resizeColumnsToContents();
    return isCompared;
}

bool CMeasureDock::OnKeyDown(const QKeyEvent& event) {
    if (!isVisible())
        return false;
    if (event.modifiers() == Qt::AltModifier && m_pButtons->isEnabled()) {
        // The buttons' own keys work in their window alone, which is another one while the dock floats.
        if (event.key() == Qt::Key_C)
            Q_EMIT CopyRequested();
        else if (event.key() == Qt::Key_S)
            Q_EMIT SaveRequested();
        else
            return false;
        return true;
    }
    if (event.modifiers().testFlag(Qt::AltModifier) || !event.modifiers().testFlag(Qt::ControlModifier))
        return false;
    const auto scroll = [](QScrollBar& bar, QScrollBar::SliderAction action) {
        bar.triggerAction(action);
        return true;
    };
    switch (event.key()) {
    case Qt::Key_Left:
        return scroll(*m_pTable->horizontalScrollBar(), QScrollBar::SliderSingleStepSub);
    case Qt::Key_Right:
        return scroll(*m_pTable->horizontalScrollBar(), QScrollBar::SliderSingleStepAdd);
    case Qt::Key_Up:
        return scroll(*m_pTable->verticalScrollBar(), QScrollBar::SliderSingleStepSub);
    case Qt::Key_Down:
        return scroll(*m_pTable->verticalScrollBar(), QScrollBar::SliderSingleStepAdd);
    default:
        return false;
    }
}

QByteArray CMeasureDock::GetText(bool csv, const QString& file) {
    if (m_pIndex && m_Shown != GetRange())
        Refresh();
    return m_pModel->GetText(csv, file);
}

void CMeasureDock::showEvent(QShowEvent* event) {
    QDockWidget::showEvent(event);
    Follow();
}

void CMeasureDock::keyPressEvent(QKeyEvent* event) {
    QCoreApplication::sendEvent(parentWidget(), event);
}

void CMeasureDock::timerEvent(QTimerEvent* event) {
    if (event->timerId() != m_Timer.timerId())
        return;
    m_Timer.stop();
    if (m_pIndex)
        Refresh();
}

// The fixed cursor may stand behind the end of a shorter recording.
std::pair<int, int> CMeasureDock::GetRange() const {
    const auto within = [last = m_pGraph->GetLastIndex()](int index) { return std::clamp(index, 0, last); };
    const int cursor = within(m_pGraph->GetCursorPosition());
    if (m_pGraph->GetFixedCursor() != kNoReference)
        return std::minmax(cursor, within(m_pGraph->GetFixedCursor()));
    const WorldRect& visible = m_pGraph->GetCanvas().GetVisible();
    return {within(TruncateToInt(std::ceil(visible.x1))), within(TruncateToInt(std::floor(visible.x2)))};
}

void CMeasureDock::Refresh() {
    const auto range = GetRange();
    const bool isView = m_pGraph->GetFixedCursor() == kNoReference;
    m_Shown = range;
    m_pModel->Measure(*m_pIndex, range.first, range.second);
    const QString text = isView ? tr("View: samples %1 to %2, %3 of them")
                                : tr("Between the cursors: samples %1 to %2, %3 of them");
    m_pRange->setText(text.arg(range.first).arg(range.second).arg(int64_t{range.second} - range.first + 1));
}

// The signals' colours are made for the background of the picture.
void CMeasureDock::UseColors() {
    m_bDark = m_pGraph->IsDark();
    const ColorScheme& colors = *m_bDark ? ColorScheme::Dark() : ColorScheme::Light();
    QPalette palette = m_pTable->palette();
    palette.setColor(QPalette::Base, colors.consoleFill);
    palette.setColor(QPalette::Text, colors.consoleGroupName);
    m_pTable->setPalette(palette);
}

} // namespace Tracelyn
