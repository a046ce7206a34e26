#ifndef GNSSPLOT_GLOBAL_H
#define GNSSPLOT_GLOBAL_H

#include <QtCore/qglobal.h>

/*!
    \file gnssplot_global.h
    The export macro of the gnssplot library. Every public class carries
    GNSSPLOT_EXPORT so that its methods and its meta-object are visible to
    hosts that subclass it or connect to its signals.
*/
#if defined(GNSSPLOT_STATIC)
#  define GNSSPLOT_EXPORT
#elif defined(GNSSPLOT_BUILD_LIBRARY)
#  define GNSSPLOT_EXPORT Q_DECL_EXPORT
#else
#  define GNSSPLOT_EXPORT Q_DECL_IMPORT
#endif

#endif // GNSSPLOT_GLOBAL_H
