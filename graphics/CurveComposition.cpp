// SPDX-License-Identifier: MIT
#include "CurveComposition_p.h"

#include "CurveGraphicsItem_Curve_p.h"

#include "Curve_Coord.h"

#include <QPainter>
#include <QThreadPool>
#include <QtConcurrent>

CurveComposition::CurveComposition(Members members)
    : m_members(std::move(members))
{
}

void CurveComposition::prepare(const PictureTarget& target)
{
    const QVector<CurveGraphicsItem_Curve_XY*> members = m_members();
    // Bring every member's snapshot up to date first: that can move no
    // version, but its passes are what the picture is made of.
    std::vector<CurvePass> passes;
    std::vector<std::pair<const void*, quint64>> state;
    state.reserve(size_t(members.size()));
    for (CurveGraphicsItem_Curve_XY* item : members)
        state.emplace_back(item, item->pictureVersion());
    m_first = members.isEmpty() ? nullptr : members.first();
    if (state == m_built && m_builtMix == m_mix && m_picture.target().matches(target)
        && m_picture.buildCount() > 0) {
        return;
    }
    // The snapshots are taken here, on the GUI thread; finding each curve's
    // columns reads only its snapshot, so the curves share the pool.
    for (CurveGraphicsItem_Curve_XY* item : members)
        item->syncSnapshot();
    if (members.size() > 1 && QThreadPool::globalInstance()->maxThreadCount() > 1) {
        QtConcurrent::blockingMap(members, [&target](CurveGraphicsItem_Curve_XY* item) {
            item->updateColumns(target);
        });
    }
    for (CurveGraphicsItem_Curve_XY* item : members)
        item->appendPasses(target, passes);
    m_picture.build(target, passes, m_mix);
    m_built = std::move(state);
    m_builtMix = m_mix;
}

void CurveComposition::paint(const CurveGraphicsItem_Curve_XY* item, QPainter* painter,
                             const PictureTarget& target, const QPoint& shift)
{
    prepare(target);
    if (item != m_first || m_picture.image().isNull())
        return;
    painter->save();
    // Device pixels one to one: the picture was made at device resolution.
    painter->setWorldTransform(painter->deviceTransform().inverted()
                               * painter->worldTransform());
    painter->drawImage(m_picture.target().bounds.topLeft() + shift, m_picture.image());
    painter->restore();
}

void CurveComposition::release()
{
    m_picture.release();
    m_built.clear();
}
