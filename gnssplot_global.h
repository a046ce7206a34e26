// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_GLOBAL_H
#define GNSSPLOT_GLOBAL_H

#include <QtCore/qglobal.h>

/*!
    \file gnssplot_global.h
    The export macro of the gnssplot library.
*/

/*!
    \def GNSSPLOT_EXPORT
    Marks a public class of the library. Its methods and its meta-object are
    exported from the shared library, so hosts can subclass the class and
    connect to its signals. Define GNSSPLOT_STATIC when linking a static build.
*/
#if defined(GNSSPLOT_STATIC)
#  define GNSSPLOT_EXPORT
#elif defined(GNSSPLOT_BUILD_LIBRARY)
#  define GNSSPLOT_EXPORT Q_DECL_EXPORT
#else
#  define GNSSPLOT_EXPORT Q_DECL_IMPORT
#endif

#endif // GNSSPLOT_GLOBAL_H
