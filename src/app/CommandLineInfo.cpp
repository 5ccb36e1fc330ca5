#include "app/CommandLineInfo.h"

#include "reader/AccessLevel.h"

#include <algorithm>

namespace Tracelyn {

namespace {

bool IsSwitchCharacter(QChar c) {
#ifdef Q_OS_WIN
    return c == u'-' || c == u'/';
#else
    return c == u'-';
#endif
}

} // namespace

void CTracelynCommandLineInfo::ParseCommandLine(const QStringList& arguments) {
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments.at(i);
        const bool flag = !argument.isEmpty() && IsSwitchCharacter(argument.front());
        ParseParam(flag ? argument.mid(1) : argument, flag, i + 1 == arguments.size());
    }
}

void CTracelynCommandLineInfo::ParseParam(const QString& param, bool /*flag*/, bool /*last*/) {
    m_nAccessLevel = std::max(m_nAccessLevel, LevelGrantedBy(param));
    m_strFileName = param.startsWith(QLatin1String(".paf")) ? QString() : param;
}

} // namespace Tracelyn
