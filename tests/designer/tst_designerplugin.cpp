// SPDX-License-Identifier: MIT
#include <QPluginLoader>
#include <QtTest>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>

#ifndef GNSSPLOT_DESIGNER_PLUGIN
#define GNSSPLOT_DESIGNER_PLUGIN ""
#endif

// Loads the Designer plugin as Designer does and creates every widget
// through it.
class tst_DesignerPlugin : public QObject
{
    Q_OBJECT
private slots:
    void createsEveryWidget();
};

void tst_DesignerPlugin::createsEveryWidget()
{
    QPluginLoader loader(QStringLiteral(GNSSPLOT_DESIGNER_PLUGIN));
    QObject* instance = loader.instance();
    QVERIFY2(instance, qPrintable(loader.errorString()));
    auto* collection = qobject_cast<QDesignerCustomWidgetCollectionInterface*>(instance);
    QVERIFY(collection);

    QStringList names;
    QWidget parent;
    for (QDesignerCustomWidgetInterface* widget : collection->customWidgets()) {
        names << widget->name();
        QCOMPARE(widget->includeFile(), QStringLiteral("gnssplot.h"));
        QVERIFY(widget->domXml().contains(QStringLiteral("class=\"%1\"").arg(widget->name())));
        QWidget* created = widget->createWidget(&parent);
        QVERIFY(created);
        QCOMPARE(QString::fromLatin1(created->metaObject()->className()), widget->name());
        QCOMPARE(created->parentWidget(), &parent);
        // Designer's property editor lists what the meta-object declares:
        // the opt-in switches show there, off.
        QStringList switches;
        if (widget->name() != QStringLiteral("SkyGraphicsView"))
            switches << QStringLiteral("timeNavigationEnabled");
        if (widget->name() == QStringLiteral("CurveGraphicsView")) {
            switches << QStringLiteral("roundTimeTicks") << QStringLiteral("hoverReadOutEnabled")
                     << QStringLiteral("hoverToolTip")
                     << QStringLiteral("orderIndependentMix")
                     << QStringLiteral("pickedSampleMarker");
        }
        if (widget->name() == QStringLiteral("SkyGraphicsView")) {
            switches << QStringLiteral("hoverReadOutEnabled") << QStringLiteral("hoverToolTip")
                     << QStringLiteral("tracksColoredByValue") << QStringLiteral("skyMapShown");
        }
        for (const QString& name : switches) {
            const QMetaObject* meta = created->metaObject();
            const int index = meta->indexOfProperty(name.toLatin1().constData());
            QVERIFY2(index >= 0, qPrintable(name));
            QVERIFY(meta->property(index).isWritable());
            QVERIFY(meta->property(index).isDesignable());
            QCOMPARE(created->property(name.toLatin1().constData()), QVariant(false));
        }
        // The unit of the curve plot's values, empty for metres.
        if (widget->name() == QStringLiteral("CurveGraphicsView")) {
            const QMetaObject* meta = created->metaObject();
            const int index = meta->indexOfProperty("valueUnit");
            QVERIFY(index >= 0 && meta->property(index).isDesignable());
            QVERIFY(meta->property(index).isWritable());
            QCOMPARE(created->property("valueUnit"), QVariant(QString()));
        }
    }
    QCOMPARE(names, (QStringList{QStringLiteral("CurveGraphicsView"),
                                 QStringLiteral("CurveGraphicsTableWidget_Epoch"),
                                 QStringLiteral("SkyGraphicsView")}));
}

QTEST_MAIN(tst_DesignerPlugin)
#include "tst_designerplugin.moc"
