// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_H
#define GNSSPLOT_H

/*!
    \file gnssplot.h
    The one include a host needs: every exported class of the library.
*/

#include "gnssplot_global.h"

// Data model
#include "AxisData.h"
#include "Curve_Coord.h"
#include "Curve_Coord_XY.h"
#include "Curve_DataSet.h"
#include "Curve_DataSet_XY.h"
#include "TimeWindow.h"

// Curve registry
#include "CurveScene.h"
#include "EventMark.h"

// Graphics presentation
#include "CurveGraphicsScene.h"
#include "CurveGraphicsView.h"

// Epoch availability table
#include "stEpochDataSet.h"
#include "CurveGraphicsTableWidget_Epoch.h"

// Sky plot
#include "SkyGraphicsView.h"

#endif // GNSSPLOT_H
