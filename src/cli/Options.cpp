#include "cli/OptionTable.h"

#include "reader/SignalFileReader.h"
#include "support/Limits.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <initializer_list>
#include <optional>
#include <span>
#include <utility>

namespace Tracelyn {

namespace {

std::optional<int> ToInt(const QString& text) {
    bool ok = false;
    const int value = text.toInt(&ok);
    return ok ? std::optional(value) : std::nullopt;
}

std::optional<int> ToPosition(const QString& text) {
    const auto value = ToInt(text);
    return value && *value >= 0 ? value : std::nullopt;
}

std::optional<float> ToFloat(const QString& text) {
    bool ok = false;
    const float value = text.toFloat(&ok);
    return ok && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

std::optional<QSize> ToSize(const QString& text) {
    const QStringList sides = text.split(QLatin1Char('x'));
    if (sides.size() != 2)
        return std::nullopt;
    const auto width = ToInt(sides[0]);
    const auto height = ToInt(sides[1]);
    const auto isAllowed = [](std::optional<int> side) {
        return side && *side >= 1 && *side <= support::limits::kMaxPictureSidePixels;
    };
    return isAllowed(width) && isAllowed(height) ? std::optional(QSize(*width, *height)) : std::nullopt;
}

// The value that stands beside the word; nothing for any other word.
template <class T>
std::optional<T> ValueOf(const QString& word, std::initializer_list<std::pair<const char*, T>> values) {
    for (const auto& [name, value] : values) {
        if (word == QLatin1String(name))
            return value;
    }
    return std::nullopt;
}

// NAME=VALUE; a "=" in the name is its own.
std::optional<Tolerance> ToTolerance(const QString& text) {
    const qsizetype at = text.lastIndexOf(u'=');
    bool ok = false;
    const double largest = text.mid(at + 1).toDouble(&ok);
    const bool isAllowed = at >= 0 && ok && std::isfinite(largest) && largest >= 0;
    return isAllowed ? std::optional(Tolerance{text.left(at), largest}) : std::nullopt;
}

// Stores a converted value. False when the conversion has none, since the text makes no sense.
template <class T, class Value>
bool Store(T& target, const std::optional<Value>& value) {
    if (value)
        target = *value;
    return value.has_value();
}

constexpr std::array kCode{
    OptionEntry{"code", "C", true,
                [](const QString& text, Options& options) {
                    const int level = LevelGrantedBy(text);
                    options.accessLevel = std::max(options.accessLevel, level);
                    if (level == 0)
                        options.uselessCodes.append(text);
                    return true;
                }},
};

constexpr OptionEntry kAlign{"align", "sample|NAME", false, [](const QString& text, Options& options) {
                                 if (text != QLatin1String("sample"))
                                     options.alignSignal = text;
                                 return true;
                             }};

constexpr std::array kRenderOptions{
    kCode[0],
    OptionEntry{"size", "WxH", false,
                [](const QString& text, Options& options) { return Store(options.view.size, ToSize(text)); }},
    OptionEntry{"scheme", "dark|light", false,
                [](const QString& text, Options& options) {
                    return Store(options.view.dark, ValueOf<bool>(text, {{"dark", true}, {"light", false}}));
                }},
    OptionEntry{
        "cursor", "N", false,
        [](const QString& text, Options& options) { return Store(options.view.cursor, ToInt(text)); }},
    OptionEntry{
        "fixed", "N", false,
        [](const QString& text, Options& options) { return Store(options.view.fixedCursor, ToInt(text)); }},
    OptionEntry{
        "zoom", "F", false,
        [](const QString& text, Options& options) { return Store(options.view.zoom, ToFloat(text)); }},
    OptionEntry{
        "scroll", "N", false,
        [](const QString& text, Options& options) { return Store(options.view.scroll, ToPosition(text)); }},
    OptionEntry{"console", "left|right|none", false,
                [](const QString& text, Options& options) {
                    return Store(options.view.console,
                                 ValueOf<ConsolePlace>(text, {{"left", ConsolePlace::Left},
                                                              {"right", ConsolePlace::Right},
                                                              {"none", ConsolePlace::None}}));
                }},
    OptionEntry{"toggle", "GROUP", true,
                [](const QString& text, Options& options) {
                    options.view.toggledGroups.append(text);
                    return true;
                }},
    OptionEntry{"events", nullptr, false,
                [](const QString& /*text*/, Options& options) {
                    options.view.everyEvent = true;
                    return true;
                }},
    OptionEntry{"compare", "GOOD", false,
                [](const QString& text, Options& options) {
                    options.behind = text;
                    return true;
                }},
    kAlign,
};

constexpr std::array kRenderFolderOptions{
    OptionEntry{"out", "FOLDER", false,
                [](const QString& text, Options& options) {
                    options.folder = text;
                    return !text.isEmpty();
                }},
    OptionEntry{"format", "png|svg|pdf", false,
                [](const QString& text, Options& options) {
                    return Store(options.pictureFormat,
                                 ValueOf<PictureFormat>(text, {{"png", PictureFormat::Png},
                                                               {"svg", PictureFormat::Svg},
                                                               {"pdf", PictureFormat::Pdf}}));
                }},
};

constexpr OptionEntry kFormat{"format", "table|csv|json", false, [](const QString& text, Options& options) {
                                  return Store(options.format,
                                               ValueOf<TableFormat>(text, {{"table", TableFormat::Table},
                                                                           {"csv", TableFormat::Csv},
                                                                           {"json", TableFormat::Json}}));
                              }};

constexpr std::array kStatsOptions{
    kCode[0],
    OptionEntry{
        "from", "N", false,
        [](const QString& text, Options& options) { return Store(options.samples.from, ToPosition(text)); }},
    OptionEntry{
        "to", "N", false,
        [](const QString& text, Options& options) { return Store(options.samples.to, ToPosition(text)); }},
    OptionEntry{"while", "NAME", false,
                [](const QString& text, Options& options) {
                    options.samples.whileSignal = text;
                    return true;
                }},
    kFormat,
};

constexpr std::array kCompareOptions{
    kCode[0],
    kAlign,
    OptionEntry{"tolerance", "NAME=VALUE", true,
                [](const QString& text, Options& options) {
                    const auto tolerance = ToTolerance(text);
                    if (tolerance)
                        options.tolerances.push_back(*tolerance);
                    return tolerance.has_value();
                }},
    kFormat,
};

constexpr std::array kInfoFiles{"FILE"};
constexpr std::array kCsvFiles{"FILE", "OUT.csv"};
constexpr std::array kRenderFiles{"FILE", "OUT.png|svg|pdf"};
constexpr std::array kPackFiles{"IN.xml", "OUT.paf"};
constexpr std::array kExpandFiles{"IN.paf", "OUT.xml"};
constexpr std::array kStatsFiles{"FILE..."};
constexpr std::array kCompareFiles{"GOOD", "FILE..."};

constexpr std::array kCommands{
    CommandEntry{"info", Command::Info, kCode, kInfoFiles},
    CommandEntry{"csv", Command::Csv, kCode, kCsvFiles},
    CommandEntry{"render", Command::Render, kRenderOptions, kRenderFiles, kRenderFolderOptions},
    CommandEntry{"stats", Command::Stats, kStatsOptions, kStatsFiles},
    CommandEntry{"compare", Command::Compare, kCompareOptions, kCompareFiles},
    CommandEntry{"pack", Command::Pack, {}, kPackFiles},
    CommandEntry{"expand", Command::Expand, {}, kExpandFiles},
};

} // namespace

std::span<const CommandEntry> AllCommands() {
    return kCommands;
}

} // namespace Tracelyn
