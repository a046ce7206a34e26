// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_NAVIGATIONLOAD_H
#define GNSSDEMO_NAVIGATIONLOAD_H

#include <QString>
#include <QStringList>

namespace gnssdemo {

class DemoDocument;

/*! What attaching navigation to a document did. */
struct NavigationLoadResult
{
    QStringList files;    //!< the files read, in the order read
    QStringList problems; //!< one sentence per problem, for the user
};

/*!
    Reads the navigation files \a givenFiles and those beside the
    observation file \a observationPath that name the same station and day
    (companionNavigationFiles()), each once, and hands what they hold to
    \a doc, which computes the sky tracks. Files that cannot be read, damaged
    records and a missing approximate position are reported in problems;
    \a doc gets no navigation when no file could be read.
*/
NavigationLoadResult attachNavigation(DemoDocument& doc, const QString& observationPath,
                                      const QStringList& givenFiles);

} // namespace gnssdemo

#endif // GNSSDEMO_NAVIGATIONLOAD_H
