// SPDX-License-Identifier: MIT
// The curve view's hover read-out and what it names: the nearest sample
// under the cursor, its tool tip, the value unit, the event kinds' names and
// colours, and the picked-sample ring.
#include "CurveGraphicsView.h"
#include "CurveGraphicsView_p.h"

#include "CurveGraphicsScene_p.h"
#include "TimeLabeller_p.h"

#include <QToolTip>

namespace {

QString defaultKindName(int kind)
{
    switch (kind) {
    case EEventMarkKind_CycleSlip:
        return CurveGraphicsView::tr("cycle slip");
    case EEventMarkKind_LossOfLock:
        return CurveGraphicsView::tr("loss of lock");
    case EEventMarkKind_Gap:
        return CurveGraphicsView::tr("gap");
    default:
        return CurveGraphicsView::tr("event %1").arg(kind);
    }
}

} // namespace

// --- Hover read-out ---------------------------------------------------------

void CurveGraphicsView::setHoverReadOutEnabled(bool bEnabled)
{
    if (bEnabled == m_data->m_hover.bEnabled)
        return;
    m_data->m_hover.bEnabled = bEnabled;
    if (bEnabled)
        viewport()->setMouseTracking(true);
    else
        clearHover();
}

bool CurveGraphicsView::isHoverReadOutEnabled() const
{
    return m_data->m_hover.bEnabled;
}

void CurveGraphicsView::setHoverToolTip(bool bShow)
{
    if (!bShow && m_data->m_hover.bToolTip && m_data->m_hover.bReported)
        QToolTip::hideText();
    m_data->m_hover.bToolTip = bShow;
}

bool CurveGraphicsView::hasHoverToolTip() const
{
    return m_data->m_hover.bToolTip;
}

bool CurveGraphicsView::hoverSampleAt(const QPoint& viewportPos, HoverSample& sample)
{
    bool bInvertible = false;
    const QTransform toScene = viewportTransform().inverted(&bInvertible);
    CurveGraphicsSceneAccess::Nearest nearest;
    if (!bInvertible
        || !CurveGraphicsSceneAccess::nearestSample(
            m_data->m_scene, toScene.map(QPointF(viewportPos)), kHoverRadius, &nearest)) {
        return false;
    }
    sample.curveName = nearest.curveName;
    sample.yIndex = nearest.sample.yIndex;
    sample.sampleIndex = nearest.sample.index;
    sample.timeMs = nearest.sample.x;
    sample.value = nearest.sample.y;
    return true;
}

void CurveGraphicsView::updateHover(const QPoint& viewportPos)
{
    HoverSample sample;
    if (!hoverSampleAt(viewportPos, sample)) {
        clearHover();
        return;
    }
    const HoverSample& last = m_data->m_hover.last;
    if (m_data->m_hover.bReported && last.curveName == sample.curveName
        && last.yIndex == sample.yIndex
        && last.sampleIndex == sample.sampleIndex) {
        return;
    }
    m_data->m_hover.last = sample;
    m_data->m_hover.bReported = true;
    const QList<int> kinds =
        CurveGraphicsSceneAccess::eventKindsAt(m_data->m_scene, sample.curveName,
                                               sample.sampleIndex);
    CurveGraphicsSceneAccess::setPicked(m_data->m_scene, sample.curveName, sample.yIndex,
                                        sample.sampleIndex);
    if (m_data->m_hover.bToolTip) {
        const QString time = TimeLabeller::toolTipTime(sample.timeMs);
        const QString unit = getValueUnit();
        // In metres the tool tip stays the one text it always was.
        QString text = unit.isEmpty()
                           ? tr("Curve %1, F %2\nTime %3 GPST\nValue %4 m")
                                 .arg(sample.curveName)
                                 .arg(sample.yIndex + 1)
                                 .arg(time)
                                 .arg(sample.value, 0, 'f', 3)
                           : tr("Curve %1, F %2\nTime %3 GPST")
                                     .arg(sample.curveName)
                                     .arg(sample.yIndex + 1)
                                     .arg(time)
                                 + QLatin1Char('\n')
                                 + tr("Value %1 %2")
                                       .arg(QString::number(sample.value, 'f', 3), unit);
        if (!kinds.isEmpty()) {
            QStringList names;
            for (const int kind : kinds)
                names.append(getEventKindName(kind));
            text += QLatin1Char('\n') + tr("Event %1").arg(names.join(QStringLiteral(", ")));
        }
        QToolTip::showText(viewport()->mapToGlobal(viewportPos), text, viewport());
    }
    emit sgHover(sample.curveName, sample.yIndex, sample.timeMs, sample.value);
    if (!kinds.isEmpty()) {
        emit sgHoverEventMarks(sample.curveName, sample.yIndex, sample.timeMs, sample.value,
                               kinds);
    }
}

void CurveGraphicsView::clearHover()
{
    if (!m_data->m_hover.bReported)
        return;
    m_data->m_hover.bReported = false;
    CurveGraphicsSceneAccess::clearPicked(m_data->m_scene);
    if (m_data->m_hover.bToolTip)
        QToolTip::hideText();
    emit sgHoverNone();
}

// --- Units, event marks and the picked sample --------------------------------

void CurveGraphicsView::setValueUnit(const QString& unit)
{
    CurveGraphicsSceneAccess::setValueUnit(m_data->m_scene, unit);
}

QString CurveGraphicsView::getValueUnit() const
{
    return CurveGraphicsSceneAccess::valueUnit(m_data->m_scene);
}

void CurveGraphicsView::setEventKindColor(int kind, const QColor& color)
{
    CurveGraphicsSceneAccess::setEventKindColor(m_data->m_scene, kind, color);
}

QColor CurveGraphicsView::getEventKindColor(int kind) const
{
    return CurveGraphicsSceneAccess::eventKindColor(m_data->m_scene, kind);
}

void CurveGraphicsView::setEventKindName(int kind, const QString& name)
{
    if (name.isEmpty())
        m_data->m_kindNames.remove(kind);
    else
        m_data->m_kindNames.insert(kind, name);
}

QString CurveGraphicsView::getEventKindName(int kind) const
{
    const auto it = m_data->m_kindNames.constFind(kind);
    return it == m_data->m_kindNames.cend() ? defaultKindName(kind) : it.value();
}

void CurveGraphicsView::setPickedSampleMarkerShown(bool bShown)
{
    if (bShown == isPickedSampleMarkerShown())
        return;
    CurveGraphicsSceneAccess::setPickedMarker(m_data->m_scene, bShown);
    // A sample already named gets its ring at once.
    if (bShown && m_data->m_hover.bReported) {
        const HoverSample& last = m_data->m_hover.last;
        CurveGraphicsSceneAccess::setPicked(m_data->m_scene, last.curveName, last.yIndex,
                                            last.sampleIndex);
    }
}

bool CurveGraphicsView::isPickedSampleMarkerShown() const
{
    return CurveGraphicsSceneAccess::isPickedMarker(m_data->m_scene);
}

void CurveGraphicsView::leaveEvent(QEvent* event)
{
    QGraphicsView::leaveEvent(event);
    clearHover();
}
