// SPDX-License-Identifier: MIT
#include "EventMarkPalette_p.h"

#include "EventMark.h"

QColor EventMarkPalette::defaultColor(int kind)
{
    // Opaque and saturated, so that a tick stands out of a crowd of
    // translucent curves and of the pale bars alike.
    switch (kind) {
    case EEventMarkKind_CycleSlip:
        return QColor(220, 20, 20);
    case EEventMarkKind_LossOfLock:
        return QColor(245, 140, 0);
    case EEventMarkKind_Gap:
        return QColor(60, 60, 60);
    default:
        return QColor(150, 40, 190);
    }
}

QColor EventMarkPalette::color(int kind) const
{
    const auto it = m_chosen.constFind(kind);
    return it == m_chosen.cend() ? defaultColor(kind) : it.value();
}

bool EventMarkPalette::setColor(int kind, const QColor& color)
{
    const QColor before = this->color(kind);
    if (color.isValid())
        m_chosen.insert(kind, color);
    else
        m_chosen.remove(kind);
    return this->color(kind) != before;
}
