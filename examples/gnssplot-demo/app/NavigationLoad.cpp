// SPDX-License-Identifier: MIT
#include "NavigationLoad.h"

#include "DemoDocument.h"
#include "DemoTexts.h"
#include "NavigationFiles.h"
#include "NavigationReader.h"

#include <QFileInfo>

#include <memory>

namespace gnssdemo {

NavigationLoadResult attachNavigation(DemoDocument& doc, const QString& observationPath,
                                      const QStringList& givenFiles)
{
    NavigationLoadResult result;
    QStringList candidates = givenFiles;
    if (!observationPath.isEmpty())
        candidates += companionNavigationFiles(observationPath);
    QStringList seen;
    auto navigation = std::make_unique<NavigationData>();
    for (const QString& path : candidates) {
        const QFileInfo info(path);
        const QString key = info.exists() ? info.canonicalFilePath() : info.absoluteFilePath();
        if (seen.contains(key))
            continue;
        seen << key;
        QString error;
        if (!NavigationReader::readFile(path, navigation.get(), &error)) {
            result.problems << error;
            continue;
        }
        result.files << path;
        const NavigationFileReport& report = navigation->reports().back();
        if (report.damaged > 0 || report.cutShort)
            result.problems << report.summary();
    }
    if (result.files.isEmpty())
        return result;
    if (!doc.source().station().hasPosition)
        result.problems << DemoTexts::noPosition();
    doc.setNavigation(std::move(navigation));
    return result;
}

} // namespace gnssdemo
