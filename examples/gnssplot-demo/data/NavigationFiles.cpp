// SPDX-License-Identifier: MIT
#include "NavigationFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

namespace gnssdemo {

bool parseRinexFileName(const QString& fileName, RinexFileName* out)
{
    static const QRegularExpression longName(
        QStringLiteral("^(\\w{4})\\w{5}_\\w_(\\d{4})(\\d{3})\\d{4}_\\w{3}(?:_\\w{3})?"
                       "_[A-Z]([ON])\\.(?:rnx|crx)(?:\\.gz|\\.z)?$"),
        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression shortName(
        QStringLiteral("^(\\w{4})(\\d{3})\\w\\.(\\d{2})([odnglcpqh])(?:\\.gz|\\.z)?$"),
        QRegularExpression::CaseInsensitiveOption);
    RinexFileName name;
    QRegularExpressionMatch m = longName.match(fileName);
    if (m.hasMatch()) {
        name.station = m.captured(1).toUpper();
        name.year = m.captured(2).toInt();
        name.dayOfYear = m.captured(3).toInt();
        name.navigation = m.captured(4).toUpper() == QLatin1String("N");
    } else {
        m = shortName.match(fileName);
        if (!m.hasMatch())
            return false;
        name.station = m.captured(1).toUpper();
        name.dayOfYear = m.captured(2).toInt();
        const int yy = m.captured(3).toInt();
        name.year = yy < 80 ? 2000 + yy : 1900 + yy;
        const QString kind = m.captured(4).toLower();
        name.navigation = kind != QLatin1String("o") && kind != QLatin1String("d");
    }
    if (name.dayOfYear < 1 || name.dayOfYear > 366)
        return false;
    *out = name;
    return true;
}

QStringList companionNavigationFiles(const QString& observationPath)
{
    const QFileInfo info(observationPath);
    RinexFileName obs;
    if (!parseRinexFileName(info.fileName(), &obs) || obs.navigation)
        return QStringList();
    QStringList found;
    const QDir folder = info.absoluteDir();
    const QStringList entries = folder.entryList(QDir::Files | QDir::Readable, QDir::Name);
    for (const QString& entry : entries) {
        RinexFileName candidate;
        if (parseRinexFileName(entry, &candidate) && candidate.navigation
            && candidate.station == obs.station && candidate.year == obs.year
            && candidate.dayOfYear == obs.dayOfYear)
            found << folder.filePath(entry);
    }
    return found;
}

} // namespace gnssdemo
