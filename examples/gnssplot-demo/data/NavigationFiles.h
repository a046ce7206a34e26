// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_NAVIGATIONFILES_H
#define GNSSDEMO_NAVIGATIONFILES_H

#include <QString>
#include <QStringList>

namespace gnssdemo {

/*! What a RINEX file name tells: station, day and kind of data. */
struct RinexFileName
{
    QString station;  //!< the four-character station name, upper case
    int year = 0;
    int dayOfYear = 0;
    bool navigation = false; //!< a navigation file (else observations)
};

/*! Reads \a fileName (without folder) as a RINEX 3 long name
    ("NYA100NOR_S_20241240000_01D_30S_MO.crx.gz", "..._01D_GN.rnx") or a
    short name ("ssssdddf.yyo", ".yyd", and ".yyn", ".yyg", ".yyl", ".yyc",
    ".yyp", ".yyq", ".yyh" for navigation), each maybe with ".gz" or ".Z".
    Returns false, \a out unchanged, for any other name. */
bool parseRinexFileName(const QString& fileName, RinexFileName* out);

/*! The navigation files in the folder of the observation file
    \a observationPath that name the same station and day, in name order;
    empty when the observation file's name is not a RINEX name. */
QStringList companionNavigationFiles(const QString& observationPath);

} // namespace gnssdemo

#endif // GNSSDEMO_NAVIGATIONFILES_H
