// SPDX-License-Identifier: MIT
#include "SkyPane.h"

#include <gnssplot.h>

#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

#include <cmath>

namespace gnssdemo {

/*! A transparent layer over the sky plot's viewport that rings one
    satellite; it never takes the mouse. */
class SkyMarker : public QWidget
{
public:
    SkyMarker(SkyGraphicsView* sky)
        : QWidget(sky->viewport())
        , m_sky(sky)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setAttribute(Qt::WA_NoSystemBackground);
        sky->viewport()->installEventFilter(this);
        setGeometry(sky->viewport()->rect());
    }

    void mark(const QString& name, double azimuth, double elevation)
    {
        m_name = name;
        m_azimuth = azimuth;
        m_elevation = elevation;
        setVisible(!name.isEmpty() && std::isfinite(azimuth) && std::isfinite(elevation));
        update();
    }
    QString name() const { return isVisibleTo(parentWidget()) ? m_name : QString(); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (watched == m_sky->viewport() && event->type() == QEvent::Resize)
            setGeometry(m_sky->viewport()->rect());
        return false;
    }

    void paintEvent(QPaintEvent*) override
    {
        const QPointF at = m_sky->skyToViewport(m_azimuth, m_elevation);
        if (at.isNull())
            return;
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(QColor(20, 20, 20), 2.0));
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(at, 7.0, 7.0);
        QFont bold = font();
        bold.setBold(true);
        painter.setFont(bold);
        const QRectF text(at.x() + 9.0, at.y() - 20.0, 60.0, 16.0);
        painter.fillRect(text.adjusted(-1, 0, 0, 0).intersected(QRectF(rect())),
                         QColor(255, 255, 255, 200));
        painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter, m_name);
    }

private:
    SkyGraphicsView* m_sky;
    QString m_name;
    double m_azimuth = 0.0;
    double m_elevation = 0.0;
};

SkyPane::SkyPane(QWidget* parent)
    : QWidget(parent)
    , m_sky(new SkyGraphicsView)
    , m_value(new QComboBox)
    , m_map(new QComboBox)
    , m_note(new QLabel)
{
    m_sky->setMinimumSize(160, 160);
    m_sky->setFrameShape(QFrame::NoFrame);
    m_marker = new SkyMarker(m_sky);
    m_marker->hide();

    // In the order of SkyValue.
    m_value->addItem(tr("Colour: system"));
    m_value->addItem(tr("Colour: signal strength, band 1"));
    m_value->addItem(tr("Colour: signal strength, band 2"));
    m_value->addItem(tr("Colour: |MP1|"));
    m_value->addItem(tr("Colour: |MP2|"));
    m_value->setCurrentIndex(int(SkyValue::SignalStrengthA));
    m_value->setToolTip(tr("What colours the tracks and fills the sky map"));
    m_value->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_value->setMinimumContentsLength(12);
    // None, then in the order of SkyMapStatistic.
    m_map->addItem(tr("No sky map"));
    m_map->addItem(tr("Sky map: mean"));
    m_map->addItem(tr("Sky map: RMS"));
    m_map->addItem(tr("Sky map: maximum"));
    m_map->setToolTip(tr("Fills each 5 degree cell of the sky with a figure of the values "
                         "in it"));
    m_map->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_map->setMinimumContentsLength(8);

    m_note->setWordWrap(true);
    m_note->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_note->setStyleSheet(QStringLiteral("color: #5a4500; padding: 2px 4px;"));
    m_note->hide();

    auto* choices = new QHBoxLayout;
    choices->setContentsMargins(4, 2, 4, 0);
    choices->addWidget(m_value, 3);
    choices->addWidget(m_map, 2);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addLayout(choices);
    layout->addWidget(m_sky, 1);
    layout->addWidget(m_note);

    connect(m_value, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            [this](int index) { emit valueChosen(SkyValue(index)); });
    connect(m_map, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this](int index) {
        m_sky->setSkyMapShown(index > 0);
        if (index > 0)
            m_sky->setSkyMapStatistic(SkyGraphicsView::SkyMapStatistic(index - 1));
    });
}

SkyValue SkyPane::skyValue() const
{
    return SkyValue(m_value->currentIndex());
}

void SkyPane::setSkyValue(SkyValue value)
{
    m_value->setCurrentIndex(int(value));
}

void SkyPane::setSkyMap(int statistic)
{
    m_map->setCurrentIndex(statistic < 0 || statistic > 2 ? 0 : statistic + 1);
}

int SkyPane::skyMap() const
{
    return m_map->currentIndex() - 1;
}

void SkyPane::setNote(const QString& text)
{
    m_note->setText(text);
    m_note->setVisible(!text.isEmpty());
}

QString SkyPane::note() const
{
    return m_note->text();
}

void SkyPane::markSatellite(const QString& name, double azimuth, double elevation)
{
    m_marker->mark(name, azimuth, elevation);
}

QString SkyPane::markedSatellite() const
{
    return m_marker->name();
}

} // namespace gnssdemo
