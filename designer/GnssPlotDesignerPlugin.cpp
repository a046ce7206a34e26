// SPDX-License-Identifier: MIT
#include "GnssPlotDesignerPlugin.h"

#include "CurveGraphicsTableWidget_Epoch.h"
#include "CurveGraphicsView.h"
#include "SkyGraphicsView.h"

GnssPlotWidgetPlugin::GnssPlotWidgetPlugin(const QString& className, const QString& header,
                                           const QString& toolTip, Factory factory,
                                           QObject* parent)
    : QObject(parent)
    , m_className(className)
    , m_header(header)
    , m_toolTip(toolTip)
    , m_factory(std::move(factory))
{
}

QString GnssPlotWidgetPlugin::domXml() const
{
    // A sensible size for a freshly dropped widget; the object name is
    // derived from the class the way Designer does for its own widgets.
    QString objectName = m_className;
    objectName[0] = objectName[0].toLower();
    return QStringLiteral("<ui language=\"c++\">\n"
                          " <widget class=\"%1\" name=\"%2\">\n"
                          "  <property name=\"geometry\">\n"
                          "   <rect><x>0</x><y>0</y><width>480</width><height>320</height></rect>\n"
                          "  </property>\n"
                          " </widget>\n"
                          "</ui>\n")
        .arg(m_className, objectName);
}

GnssPlotDesignerPlugins::GnssPlotDesignerPlugins(QObject* parent)
    : QObject(parent)
{
    m_widgets.append(new GnssPlotWidgetPlugin(
        QStringLiteral("CurveGraphicsView"), QStringLiteral("gnssplot.h"),
        QStringLiteral("Curves over GPST time in metres, with wheel zoom"),
        [](QWidget* parent) { return new CurveGraphicsView(parent); }, this));
    m_widgets.append(new GnssPlotWidgetPlugin(
        QStringLiteral("CurveGraphicsTableWidget_Epoch"), QStringLiteral("gnssplot.h"),
        QStringLiteral("Epoch availability per satellite and band, with erase marks"),
        [](QWidget* parent) { return new CurveGraphicsTableWidget_Epoch(parent); }, this));
    m_widgets.append(new GnssPlotWidgetPlugin(
        QStringLiteral("SkyGraphicsView"), QStringLiteral("gnssplot.h"),
        QStringLiteral("Satellite tracks over the sky in azimuth and elevation"),
        [](QWidget* parent) { return new SkyGraphicsView(parent); }, this));
}
