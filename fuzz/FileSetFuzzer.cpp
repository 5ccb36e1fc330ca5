// The measurement set: a path taken apart and its neighbours found, compared with the rules told plainly.
#include "FuzzInput.h"
#include "Scratch.h"
#include "app/FileSetDescriptor.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <set>
#include <vector>

using namespace Tracelyn;

namespace {

struct Parts {
    QString base;
    QString digits; // none when the name has no number
    QString extension;
};

Parts PartsOf(const QString& name) {
    static const QRegularExpression pattern(
        QStringLiteral("\\A(?<base>.*?)(?<digits>[0-9]{0,2})(?<extension>\\.[^.]*)?\\z"),
        QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = pattern.match(name.toLower());
    return {match.captured(QStringLiteral("base")), match.captured(QStringLiteral("digits")),
            match.captured(QStringLiteral("extension"))};
}

// Input lines become file names: no separators, no line feeds, not too long for a file system.
QStringList FileNames(std::string_view input) {
    QStringList names;
    for (const QString& line :
         QString::fromUtf8(input.data(), static_cast<qsizetype>(input.size())).split(u'\n')) {
        const QString name = QString(line).remove(u'/').remove(QChar::Null).left(60);
        const bool isOther = name.isEmpty() || name == u"." || name == u"..";
        if (!isOther && QString::fromUtf8(name.toUtf8()) == name)
            names += name;
        if (names.size() == 8)
            break;
    }
    return names;
}

std::vector<unsigned> NumbersOfSet(const Parts& chosen, const QStringList& existing) {
    std::set<QString> different;
    for (const QString& name : existing)
        different.insert(name.toLower());
    std::vector<unsigned> numbers;
    for (const QString& name : different) {
        const bool belongs = name.startsWith(chosen.base) && name.endsWith(chosen.extension) &&
                             name.size() >= chosen.base.size() + chosen.extension.size();
        if (belongs && !PartsOf(name).digits.isEmpty())
            numbers.push_back(PartsOf(name).digits.toUInt());
    }
    std::ranges::sort(numbers);
    return numbers;
}

void CheckStepping(CFileSetDescriptor& set, const std::vector<unsigned>& numbers) {
    for (size_t step = 0; step < 2 * numbers.size() + 2; ++step) {
        const uint32_t before =
            set.GetNumberText().isEmpty() ? CFileSetDescriptor::kNoNumber : set.GetNumberText().toUInt();
        const auto at = std::ranges::find(numbers, before);
        const bool forward = step <= numbers.size();
        uint32_t expected = before;
        if (forward && at != numbers.end() && at + 1 != numbers.end())
            expected = at[1];
        if (!forward && at != numbers.end() && at != numbers.begin())
            expected = at[-1];
        Require((forward ? set.StepToNext() : set.StepToPrevious()) == expected, "a step to the neighbour");
        Require(set.IsFirst() == (numbers.empty() || expected == numbers.front()), "the first is known");
        Require(set.IsLast() == (numbers.empty() || expected == numbers.back()), "the last is known");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const QString folder = ScratchFolder();
    const QStringList names = FileNames(TextOf(data, size));
    if (names.isEmpty())
        return 0;
    QStringList existing;
    for (const QString& name : names.mid(1)) {
        WriteFile(folder + name, {});
        if (!existing.contains(name))
            existing += name;
    }

    CFileSetDescriptor set;
    Require(set.SetFile(folder + names.first()), "a path is always taken");
    const Parts chosen = PartsOf(names.first());
    Require(set.GetBaseName() == chosen.base, "the base name");
    Require(set.GetExtension() == chosen.extension, "the extension");
    Require(set.GetNumberText() ==
                (chosen.digits.isEmpty() ? QString() : chosen.digits.rightJustified(2, u'0')),
            "the number");
    const std::vector<unsigned> numbers = NumbersOfSet(chosen, existing);
    Require(set.GetCount() == static_cast<int>(numbers.size()), "all numbers of the set are found");
    const QFileInfo path(set.GetFullPath());
    Require(path.absolutePath() + u'/' == folder, "the file stays in its folder");
    // A single digit is looked up as two, and .xml files without their number.
    const bool isLookedUpAsNamed = chosen.digits.size() != 1 && chosen.extension != u".xml";
    if (isLookedUpAsNamed && existing.contains(names.first()))
        Require(path.isFile(), "an existing file is found again");
    CheckStepping(set, numbers);

    for (const QString& name : existing)
        Require(QFile::remove(folder + name), "a scratch file can be removed");
    return 0;
}
