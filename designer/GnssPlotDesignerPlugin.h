// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_DESIGNERPLUGIN_H
#define GNSSPLOT_DESIGNERPLUGIN_H

#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

#include <QObject>

#include <functional>

// One widget of the library as Qt Designer sees it.
class GnssPlotWidgetPlugin : public QObject, public QDesignerCustomWidgetInterface
{
    Q_OBJECT
    Q_INTERFACES(QDesignerCustomWidgetInterface)
public:
    using Factory = std::function<QWidget*(QWidget*)>;

    GnssPlotWidgetPlugin(const QString& className, const QString& header, const QString& toolTip,
                         Factory factory, QObject* parent);

    QString name() const override { return m_className; }
    QString group() const override { return QStringLiteral("GNSS Plot"); }
    QString toolTip() const override { return m_toolTip; }
    QString whatsThis() const override { return m_toolTip; }
    QString includeFile() const override { return m_header; }
    QIcon icon() const override { return QIcon(); }
    bool isContainer() const override { return false; }
    QWidget* createWidget(QWidget* parent) override { return m_factory(parent); }
    bool isInitialized() const override { return m_initialized; }
    void initialize(QDesignerFormEditorInterface*) override { m_initialized = true; }
    QString domXml() const override;

private:
    QString m_className;
    QString m_header;
    QString m_toolTip;
    Factory m_factory;
    bool m_initialized = false;
};

// The collection Designer loads: the curve view, the epoch table and the sky
// plot.
class GnssPlotDesignerPlugins : public QObject, public QDesignerCustomWidgetCollectionInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QDesignerCustomWidgetCollectionInterface")
    Q_INTERFACES(QDesignerCustomWidgetCollectionInterface)
public:
    explicit GnssPlotDesignerPlugins(QObject* parent = nullptr);
    QList<QDesignerCustomWidgetInterface*> customWidgets() const override { return m_widgets; }

private:
    QList<QDesignerCustomWidgetInterface*> m_widgets;
};

#endif // GNSSPLOT_DESIGNERPLUGIN_H
