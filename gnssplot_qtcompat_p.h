// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_QTCOMPAT_P_H
#define GNSSPLOT_QTCOMPAT_P_H

// The few places where Qt 5 and Qt 6 need different calls for the same
// result. Everything else in the library is written once for both.

#include <QFont>
#include <QtGlobal>

namespace GnssPlotCompat {

/*! Sets \a weight on Qt 5's font weight scale of 0 to 99 (QFont::Normal was
    50 there). Qt 6 moved QFont::setWeight() to the 1 to 1000 scale of
    OpenType and converts the old values in setLegacyWeight(), which it marks
    deprecated only to steer new code to the new scale; the labels' weight 2
    becomes QFont::Thin (100) there, and both pick the same face. */
inline void setLegacyFontWeight(QFont& font, int weight)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    font.setLegacyWeight(weight);
    QT_WARNING_POP
#else
    font.setWeight(weight);
#endif
}

} // namespace GnssPlotCompat

#endif // GNSSPLOT_QTCOMPAT_P_H
