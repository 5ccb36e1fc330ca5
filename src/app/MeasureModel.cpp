#include "app/MeasureModel.h"

#include "measure/StatisticsIndex.h"
#include "measure/StatisticsTable.h"
#include "model/GraphData.h"
#include "render/GraphDrawingContext.h"

#include <QFont>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>

namespace Tracelyn {

namespace {

enum Column {
    Signal,
    UnitName,
    First,
    Last,
    Difference,
    Min,
    MinAt,
    Max,
    MaxAt,
    Mean,
    StandardDeviation,
    Slope,
    SwitchedOn,
    SwitchedOff,
    TimeOn,
    Share,
    Largest,
    LargestAt,
    Rms,
    Count
};

constexpr std::array<const char*, Count> kTitles{
    QT_TRANSLATE_NOOP("Tracelyn::CMeasureModel", "Signal"),
    QT_TRANSLATE_NOOP("Tracelyn::CMeasureModel", "Unit"),
    QT_TRANSLATE_NOOP("Tracelyn::CMeasureModel", "First"),
    QT_TRANSLATE_NOOP("Tracelyn::CMeasureModel", "Last"),
    QT_TRANSLATE_NOOP("Tracelyn::CMeasureModel", "Difference"),
    QT_TRANSLATE_NOOP("Tracelyn::CMeasureModel", "Smallest"),
    QT_TRANSLATE_NOOP("Tracelyn::CMeasureModel", "Smallest at"),
    QT_TRANSLATE_NOOP("Tracelyn::CMeasureModel", "Largest"),
    QT_TRANSLATE_NOOP("Tracelyn::CMeasureModel", "Largest at"),
    QT_TRANSLATE_NOOP("Tracelyn::CMeasureModel", "Mean"),
    QT_TRANSLATE_NOOP("Tracelyn::CMeasureModel", "Std. deviation"),
    QT_TRANSLATE_NOOP("Tracelyn::CMeasureModel", "Slope"),
    QT_TRANSLATE_NOOP("Tracelyn::CMeasureModel", "Switched on"),
    QT_TRANSLATE_NOOP("Tracelyn::CMeasureModel", "Switched off"),
    QT_TRANSLATE_NOOP("Tracelyn::CMeasureModel", "Samples on"),
    QT_TRANSLATE_NOOP("Tracelyn::CMeasureModel", "Share on"),
    QT_TRANSLATE_NOOP("Tracelyn::CMeasureModel", "Whole: furthest from good"),
    QT_TRANSLATE_NOOP("Tracelyn::CMeasureModel", "Furthest at"),
    QT_TRANSLATE_NOOP("Tracelyn::CMeasureModel", "Whole: RMS from good"),
};

constexpr int kMostDecimals = 10;

QString Rounded(double value, int decimals) {
    return std::isfinite(value) ? QString::number(value, 'f', decimals) : QString();
}

QString SampleText(int sample) {
    return sample < 0 ? QString() : QString::number(sample);
}

QString SwitchingText(const Switching& switching, int column) {
    switch (column) {
    case SwitchedOn:
        return QString::number(switching.switchedOn);
    case SwitchedOff:
        return QString::number(switching.switchedOff);
    case TimeOn:
        return QString::number(switching.timeOn);
    default:
        return QStringLiteral("%1 %").arg(Rounded(switching.share * 100, 2));
    }
}

} // namespace

void CMeasureModel::Reset(const CGraphData* data) {
    beginResetModel();
    m_pData = data;
    m_bCompares = false;
    m_Rows.clear();
    if (data != nullptr) {
        for (const ShownSignal& signal : ShownSignals(*data)) {
            if (m_Rows.empty() || m_Rows.back().signal.group != signal.group)
                m_Rows.push_back({.signal = {signal.group, nullptr}, .figures = {}, .deviation = {}});
            m_Rows.push_back({.signal = signal, .figures = {}, .deviation = {}});
        }
    }
    endResetModel();
}

void CMeasureModel::Measure(const CStatisticsIndex& index, int from, int to) {
    for (Row& row : m_Rows) {
        if (row.signal.set != nullptr)
            row.figures = index.Measure(*row.signal.set, from, to);
    }
    if (!m_Rows.empty())
        Q_EMIT dataChanged(createIndex(0, First), createIndex(rowCount() - 1, Share));
}

bool CMeasureModel::Compare(const CGraphData* good, int shift, const support::Progress& progress) {
    bool isStopped = false;
    std::map<const CGraphDataSet*, Deviation> deviations;
    if (good != nullptr && m_pData != nullptr) {
        const std::vector<CommonSignal> signals = MatchSignals(*good, *m_pData);
        double compared = 0;
        for (const CommonSignal& signal : signals) {
            if (!support::Report(progress, compared++ / static_cast<double>(signals.size()))) {
                isStopped = true;
                good = nullptr;
                deviations.clear();
                break;
            }
            if (signal.compared != nullptr && signal.compared->GetUnit() == signal.good->GetUnit())
                deviations[signal.compared] = Tracelyn::Compare(*signal.good, *signal.compared, shift);
        }
    }
    beginResetModel();
    m_bCompares = good != nullptr;
    for (Row& row : m_Rows) {
        const auto found = deviations.find(row.signal.set);
        row.deviation = found == deviations.end() ? std::nullopt : std::optional(found->second);
    }
    endResetModel();
    return !isStopped;
}

QByteArray CMeasureModel::GetText(bool csv, const QString& file) const {
    if (csv) {
        std::vector<TableLine> lines;
        for (const Row& row : m_Rows) {
            if (row.signal.set != nullptr)
                lines.push_back(StatisticsLine(file, row.signal, row.figures));
        }
        return TableText(kStatisticsColumns, lines, TableFormat::Csv);
    }
    QByteArray text;
    const auto append = [&](auto cellOf) {
        QStringList cells;
        for (int column = 0; column < columnCount(); ++column)
            cells.append(cellOf(column).replace(u'\t', u' ').replace(u'\n', u' '));
        text += cells.join(u'\t').toUtf8() + '\n';
    };
    append([](int column) { return tr(kTitles[static_cast<size_t>(column)]); });
    for (const Row& row : m_Rows)
        append([&](int column) { return GetCell(row, column); });
    return text;
}

int CMeasureModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_Rows.size());
}

int CMeasureModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_bCompares ? Column::Count : Column::Largest;
}

QString CMeasureModel::GetCell(const Row& row, int column) const {
    const CGraphDataSet* const set = row.signal.set;
    if (set == nullptr)
        return column == Signal ? row.signal.group->m_strName : QString();
    const Statistics& figures = row.figures;
    const int decimals = set->GetPrecision() < 0 ? 6 : std::min(set->GetPrecision(), kMostDecimals);
    switch (column) {
    case Signal:
        return set->GetName();
    case UnitName:
        return set->GetUnit();
    case First:
        return Rounded(figures.first, decimals);
    case Last:
        return Rounded(figures.last, decimals);
    case Difference:
        return Rounded(figures.difference, decimals);
    case Min:
        return Rounded(figures.min, decimals);
    case MinAt:
        return SampleText(figures.minAt);
    case Max:
        return Rounded(figures.max, decimals);
    case MaxAt:
        return SampleText(figures.maxAt);
    case Mean:
        return Rounded(figures.mean, decimals + 2);
    case StandardDeviation:
        return Rounded(figures.deviation, decimals + 2);
    case Slope:
        return std::isfinite(figures.slope) ? QString::number(figures.slope, 'g', 6) : QString();
    case Largest:
        return row.deviation ? Rounded(row.deviation->largest, decimals) : QString();
    case LargestAt:
        return row.deviation ? SampleText(row.deviation->at) : QString();
    case Rms:
        return row.deviation ? Rounded(row.deviation->rms, decimals + 2) : QString();
    default:
        return figures.switching ? SwitchingText(*figures.switching, column) : QString();
    }
}

QVariant CMeasureModel::data(const QModelIndex& index, int role) const {
    const Row& row = m_Rows[static_cast<size_t>(index.row())];
    const bool isGroup = row.signal.set == nullptr;
    switch (role) {
    case Qt::DisplayRole:
        return GetCell(row, index.column());
    case Qt::ForegroundRole:
        return isGroup ? QVariant() : QVariant(ToQColor(row.signal.set->GetColor()));
    case Qt::TextAlignmentRole:
        return index.column() <= UnitName ? int(Qt::AlignLeft | Qt::AlignVCenter)
                                          : int(Qt::AlignRight | Qt::AlignVCenter);
    case Qt::FontRole: {
        QFont font;
        font.setBold(isGroup);
        return font;
    }
    default:
        return {};
    }
}

QVariant CMeasureModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return tr(kTitles[static_cast<size_t>(section)]);
}

} // namespace Tracelyn
