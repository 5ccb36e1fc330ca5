// What the command line asks for: the file to open and the access level that its codes grant.
#pragma once

#include <QString>
#include <QStringList>

namespace Tracelyn {

class CTracelynCommandLineInfo {
public:
    // Hands each argument (the program's name is not one of them) to ParseParam in order, without a leading
    // switch character: "-", and where paths do not begin with it also "/".
    void ParseCommandLine(const QStringList& arguments);

    // An access code raises the level. Every argument becomes the file name, a code included, unless it
    // begins with
    // ".paf", which empties it: the last argument decides. Whether it was a switch or the last one makes no
    // difference.
    void ParseParam(const QString& param, bool flag, bool last);

    // 0 (no code) to 3, the highest that any code granted.
    int GetAccessLevel() const { return m_nAccessLevel; }
    const QString& GetFileName() const { return m_strFileName; }

private:
    int m_nAccessLevel = 0;
    QString m_strFileName;
};

} // namespace Tracelyn
