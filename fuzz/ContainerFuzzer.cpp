// Expansion of a container: from bytes to files, and to nothing outside the target folder.
#include "FuzzInput.h"
#include "Scratch.h"
#include "reader/AnalysisFile.h"
#include "reader/container/zip.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>

using namespace Tracelyn;

namespace {

const QString kEntry = AnalysisEntryName();

QByteArray Read(const QString& path) {
    QFile file(path);
    Require(file.open(QIODevice::ReadOnly), "a written file can be read");
    return file.readAll();
}

QStringList EntriesOf(const QString& folder) {
    return QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System,
                                  QDir::Name);
}

// target/ lies in a folder with two neighbours that no expansion may touch.
struct Place {
    QString parent = ScratchFolder() + QStringLiteral("parent/");
    QString target = parent + QStringLiteral("target/");
    QString neighbour = parent + QStringLiteral("neighbour");
    QString namesake = parent + kEntry;
    QString archive = ScratchFolder() + QStringLiteral("input.paf");
    QString copy = ScratchFolder() + QStringLiteral("copy.paf");

    Place() {
        Require(QDir().mkpath(target), "the target can be made");
        WriteFile(neighbour, "guard");
        WriteFile(namesake, "guard");
    }

    void CheckSurroundings() const {
        Require(EntriesOf(parent) ==
                    QStringList({QStringLiteral("neighbour"), QStringLiteral("target"), kEntry}),
                "nothing appears or disappears beside the target");
        Require(Read(neighbour) == "guard" && Read(namesake) == "guard", "files beside the target stay");
        Require(EntriesOf(ScratchFolder()).size() <= 3, "nothing appears above the target");
    }
};

void Empty(const QString& folder) {
    for (const QString& name : EntriesOf(folder)) {
        const QString path = folder + name;
        if (!QFile::remove(path))
            Require(QDir(path).removeRecursively(), "what was expanded can be removed");
    }
}

bool HasFiles(const QString& folder) {
    return QDirIterator(folder, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories)
        .hasNext();
}

// What was expanded packs into a container that expands to the same.
void CheckRoundTrip(const Place& place) {
    const QByteArray contents = Read(place.target + kEntry);
    CZip zip(place.copy);
    zip.SetBaseFolder(place.target);
    zip.AddFile(QString(), kEntry, false, true);
    Require(zip.Pack(), "an expanded file packs");
    QFile::remove(place.target + kEntry);
    Require(CZip(place.copy).Expand(place.target, kEntry), "a packed file expands");
    Require(Read(place.target + kEntry) == contents, "a packed file expands to the same");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const Place place;
    Settings settings(TextOf(data, size));
    const bool all = settings.Below(2) == 1;
    WriteFile(place.archive, TextOf(data, size));
    const bool expanded = CZip(place.archive).Expand(place.target, all ? QString() : kEntry);
    place.CheckSurroundings();
    Require(expanded || !HasFiles(place.target), "a failed expansion leaves no file");
    if (!all) {
        const QStringList names = EntriesOf(place.target);
        Require(names.isEmpty() || (expanded && names == QStringList(kEntry)),
                "only the wanted entry appears");
        if (!names.isEmpty())
            CheckRoundTrip(place);
    }
    Empty(place.target);
    return 0;
}
