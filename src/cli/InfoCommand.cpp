#include "cli/Commands.h"

#include "model/GraphData.h"
#include "model/GraphDataVariants.h"
#include "support/Interrupt.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

namespace Tracelyn {

namespace {

QString KindOf(const CGraphDataSet& set) {
    if (dynamic_cast<const CGraphDataIndexSet*>(&set) != nullptr)
        return QStringLiteral("index");
    if (dynamic_cast<const CGraphDataFixedSet*>(&set) != nullptr)
        return QStringLiteral("fixed");
    return set.IsBinary() ? QStringLiteral("binary") : QStringLiteral("typed");
}

QString ColorText(ColorRef color) {
    return QStringLiteral("0x") +
           QStringLiteral("%1").arg(color & 0xFFFFFFU, 6, 16, QLatin1Char('0')).toUpper();
}

QJsonValue NumberOrNull(float value) {
    return std::isfinite(value) ? QJsonValue(double{value}) : QJsonValue(QJsonValue::Null);
}

QJsonObject SetJson(const CGraphDataSet& set, int samples) {
    const QString kind = KindOf(set);
    // The axis stores nothing, but has a value at every sample.
    const int range = kind == QLatin1String("index") ? samples : set.GetCount();
    float min = NAN;
    float max = NAN;
    if (range > 0)
        set.GetMinMax(0, range, min, max);
    return {
        {QStringLiteral("name"), set.GetName()},
        {QStringLiteral("kind"), kind},
        {QStringLiteral("unit"), set.GetUnit()},
        {QStringLiteral("unitOffset"), NumberOrNull(set.GetUnitOffset())},
        {QStringLiteral("unitFactor"), NumberOrNull(set.GetUnitFactor())},
        {QStringLiteral("precision"), set.GetPrecision()},
        {QStringLiteral("color"), ColorText(set.GetColor())},
        {QStringLiteral("displayType"), static_cast<int>(set.GetDisplayType())},
        {QStringLiteral("ignoreForVerticalAutoScaling"), set.IsIgnoredForVerticalAutoScaling()},
        {QStringLiteral("count"), set.GetCount()},
        {QStringLiteral("min"), NumberOrNull(min)},
        {QStringLiteral("max"), NumberOrNull(max)},
    };
}

QJsonObject GroupJson(const CGraphDataGroup& group, int samples) {
    QJsonArray sets;
    for (const CGraphDataSet* set : group.m_Sets)
        sets.append(SetJson(*set, samples));
    return {
        {QStringLiteral("name"), group.m_strName},
        {QStringLiteral("displayType"), static_cast<int>(group.m_nDisplayType)},
        {QStringLiteral("sizeRatio"), group.m_nSizeRatio},
        {QStringLiteral("expanded"), group.m_bExpanded},
        {QStringLiteral("separateSets"), group.m_bSeparateSets},
        {QStringLiteral("inverted"), group.m_bInverted},
        {QStringLiteral("sets"), sets},
    };
}

QByteArray InfoJson(const CRecording& recording) {
    const CGraphData& data = recording.GetData();
    const int samples = data.GetMaxCount();
    QJsonArray groups;
    for (const auto& group : data.GetGroups())
        groups.append(GroupJson(*group, samples));
    QJsonArray results;
    for (const ReadResult& result : recording.GetProblems()) {
        results.append(QJsonObject{{QStringLiteral("code"), static_cast<int>(result.code)},
                                   {QStringLiteral("text"), result.GetText()}});
    }
    return QJsonDocument(QJsonObject{{QStringLiteral("name"), recording.GetName()},
                                     {QStringLiteral("samples"), samples},
                                     {QStringLiteral("groups"), groups},
                                     {QStringLiteral("results"), results}})
        .toJson();
}

} // namespace

ExitCode RunInfo(const Options& options) {
    CRecording recording;
    if (!LoadInput(options, recording, recording.GetData()))
        return ExitCode::Failed;
    const QByteArray json = InfoJson(recording);
    if (support::IsInterrupted() || !PrintOutput(json))
        return ExitCode::Failed;
    return ReportProblems(recording);
}

} // namespace Tracelyn
