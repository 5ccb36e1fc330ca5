// The table of the figures of all signals, as the dock shows it.
#pragma once

#include "measure/Comparison.h"
#include "measure/Signals.h"
#include "measure/Statistics.h"
#include "support/Progress.h"

#include <QAbstractTableModel>

#include <optional>
#include <vector>

namespace Tracelyn {

class CGraphData;
class CStatisticsIndex;

// A row for each shown signal, under a row with the name of its group. The columns of the deviation from a
// second recording are there while there is one. Borrows the signals until the next Reset.
class CMeasureModel : public QAbstractTableModel {
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    // Begins anew with the signals of the model; with none when it is null.
    void Reset(const CGraphData* data);
    // Measures all signals between two samples, both included.
    void Measure(const CStatisticsIndex& index, int from, int to);
    // Compares all signals with those of the second recording; null ends that, and so does a progress that
    // asks to stop. False then.
    bool Compare(const CGraphData* good, int shift, const support::Progress& progress);

    // The table as text: for a spreadsheet with tabs, or all figures in full as CSV. `file` names the
    // recording in the CSV.
    QByteArray GetText(bool csv, const QString& file) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    // The name of a group, or a signal of it.
    struct Row {
        ShownSignal signal; // its set is null for a group
        Statistics figures;
        std::optional<Deviation> deviation;
    };

    QString GetCell(const Row& row, int column) const;

    const CGraphData* m_pData = nullptr;
    bool m_bCompares = false;
    std::vector<Row> m_Rows;
};

} // namespace Tracelyn
