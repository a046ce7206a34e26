// SPDX-License-Identifier: MIT
#include "TableSequence.h"

#include "ByteReader.h"

#include "CurveGraphicsTableWidget_Epoch.h"
#include "EpochLabel_p.h"

#include <QApplication>
#include <QCheckBox>
#include <QContextMenuEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>
#include <QTimer>

#include <limits>

namespace {

using Pair = QPair<qint64, qint64>;

const qint64 kEpochs[] = {0, 1000, -5, 86400000, std::numeric_limits<qint64>::min(),
                          std::numeric_limits<qint64>::max(), 7};

qint64 epoch(ByteReader& in)
{
    return in.flag() ? kEpochs[in.pick(7)] : qint64(in.u32() % 2000) - 500;
}

QList<Pair> pairs(ByteReader& in)
{
    QList<Pair> list;
    for (int i = in.pick(5); i > 0; --i)
        list.append({epoch(in), epoch(in)});
    return list;
}

QString satellite(ByteReader& in)
{
    return QStringLiteral("G%1").arg(in.pick(6) + 1, 2, 10, QLatin1Char('0'));
}

void sendMouse(QWidget* target, QEvent::Type type, const QPoint& pos)
{
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, pos, target->mapToGlobal(pos), button,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton,
                      Qt::NoModifier);
    QApplication::sendEvent(target, &event);
}

} // namespace

TableSequence::TableSequence()
    : m_table(new CurveGraphicsTableWidget_Epoch(nullptr))
{
    QObject::connect(m_table.get(), &CurveGraphicsTableWidget_Epoch::sgStateliteSelection,
                     [this] { ++m_selectionSignals; });
    QObject::connect(m_table.get(), &CurveGraphicsTableWidget_Epoch::sgEraseMarksChanged,
                     [this] { ++m_markSignals; });
    m_table->resize(420, 260);
    m_table->show();
}

TableSequence::~TableSequence() = default;

QString TableSequence::check(const QString& what) const
{
    const int actions = m_table->eraseMarkActionNum();
    for (int row = 1; row < m_table->rowCount(); ++row) {
        const auto* label = qobject_cast<const EpochLabel*>(m_table->cellWidget(row, 1));
        if (!label)
            return what + QStringLiteral(": row %1 without a label").arg(row);
        const qint64 start = label->getStartTime();
        const qint64 end = label->getEndTime();
        const auto& marks = label->getEraseMarks();
        for (auto it = marks.cbegin(); it != marks.cend(); ++it) {
            if (it.key() < 0 || it.key() >= actions)
                return what + QStringLiteral(": mark key %1 of %2").arg(it.key()).arg(actions);
            // A dragged mark always lies inside the range; given ones need not.
            const Pair m = it.value();
            if (it.key() >= m_preloadedActions
                && (m.first < start || m.second <= 0
                    || __int128(m.first) + m.second > __int128(end)))
                return what + QStringLiteral(": mark (%1, %2) outside %3..%4")
                                  .arg(m.first).arg(m.second).arg(start).arg(end);
        }
    }
    return {};
}

QString TableSequence::step(ByteReader& in)
{
    QWidget* viewport = m_table->viewport();
    const int actionsBefore = m_table->eraseMarkActionNum();
    const int marksBefore = m_markSignals;
    const int selectionBefore = m_selectionSignals;
    QString what;
    switch (in.pick(9)) {
    case 0: {
        what = QStringLiteral("setResources");
        QMap<QString, QList<stEpochDataSet>> data;
        QMap<QString, bool> enabled;
        QList<QString> unchecked;
        QMap<QString, QList<Pair>> marks;
        for (int i = in.pick(7); i > 0; --i) {
            QList<stEpochDataSet> bands;
            for (int b = in.pick(6); b > 0; --b)
                bands.append(stEpochDataSet{pairs(in)});
            data.insert(satellite(in), bands);
        }
        for (int i = in.pick(4); i > 0; --i)
            enabled.insert(satellite(in), in.flag());
        for (int i = in.pick(3); i > 0; --i)
            unchecked.append(satellite(in));
        for (int i = in.pick(3); i > 0; --i)
            marks.insert(satellite(in), pairs(in));
        m_table->setResources(epoch(in), epoch(in), data, enabled, unchecked, marks);
        m_preloadedActions = 0;
        for (auto it = marks.cbegin(); it != marks.cend(); ++it)
            m_preloadedActions += data.contains(it.key()) ? it.value().size() : 0;
        if (m_table->eraseMarkActionNum() != m_preloadedActions)
            return what + QStringLiteral(": action count");
        if (m_table->rowCount() != data.size() + 1)
            return what + QStringLiteral(": rows");
        if (m_markSignals != marksBefore || m_selectionSignals != selectionBefore)
            return what + QStringLiteral(": emitted");
        // Rows of the previous resources go on the next event-loop pass.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return check(what);
    }
    case 1: {
        what = QStringLiteral("drag");
        const QPoint from(in.pick(256) * 2 - 40, in.pick(256));
        const QPoint to(in.pick(256) * 2 - 40, in.pick(256));
        sendMouse(viewport, QEvent::MouseButtonPress, from);
        sendMouse(viewport, QEvent::MouseMove, (from + to) / 2);
        sendMouse(viewport, QEvent::MouseMove, to);
        sendMouse(viewport, QEvent::MouseButtonRelease, to);
        const int made = m_table->eraseMarkActionNum() - actionsBefore;
        if (made < 0 || made > 1 || m_markSignals - marksBefore != made)
            return what + QStringLiteral(": %1 actions, %2 signals")
                              .arg(made).arg(m_markSignals - marksBefore);
        break;
    }
    case 2:
        what = QStringLiteral("undoEraseMarkAction");
        m_table->undoEraseMarkAction();
        if (m_table->eraseMarkActionNum() != qMax(0, actionsBefore - 1)
            || m_markSignals - marksBefore != (actionsBefore > 0 ? 1 : 0))
            return what;
        m_preloadedActions = qMin(m_preloadedActions, m_table->eraseMarkActionNum());
        break;
    case 3:
        what = QStringLiteral("clearEraseMarkActions");
        m_table->clearEraseMarkActions();
        if (m_table->eraseMarkActionNum() != 0
            || m_markSignals - marksBefore != (actionsBefore > 0 ? 1 : 0))
            return what;
        m_preloadedActions = 0;
        break;
    case 4: { // a right click; the menu, if one opens, is triggered or dismissed
        what = QStringLiteral("context menu");
        const bool trigger = in.flag();
        const QPoint pos(in.pick(210) * 2, in.pick(256));
        QTimer::singleShot(0, [trigger] {
            if (auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
                if (trigger && !menu->actions().isEmpty())
                    menu->actions().first()->trigger();
                menu->close();
            }
        });
        QContextMenuEvent event(QContextMenuEvent::Mouse, pos, viewport->mapToGlobal(pos));
        QApplication::sendEvent(viewport, &event);
        QCoreApplication::processEvents();
        if (m_table->eraseMarkActionNum() != actionsBefore || m_markSignals - marksBefore > 1)
            return what;
        break;
    }
    case 5: { // a click on the title or on one row's check box
        const int row = in.pick(m_table->rowCount());
        auto* box = qobject_cast<QCheckBox*>(m_table->cellWidget(row, 0));
        what = QStringLiteral("check box %1").arg(row);
        if (!box)
            return what + QStringLiteral(": missing");
        box->click();
        if (m_selectionSignals - selectionBefore != 1)
            return what + QStringLiteral(": %1 signals").arg(m_selectionSignals - selectionBefore);
        break;
    }
    case 6: {
        what = QStringLiteral("PaintAllLabelsToDevice");
        QMap<QString, QList<stEpochDataSet>> data;
        QMap<QString, QPixmap*> pixmaps;
        QPixmap a(in.pick(300), in.pick(40));
        QPixmap b;
        for (int i = in.pick(4); i > 0; --i)
            data.insert(satellite(in), {stEpochDataSet{pairs(in)}, stEpochDataSet{pairs(in)}});
        pixmaps.insert(satellite(in), &a);
        pixmaps.insert(satellite(in), in.flag() ? &b : nullptr);
        CurveGraphicsTableWidget_Epoch::PaintAllLabelsToDevice(epoch(in), epoch(in), data, {},
                                                               pixmaps);
        break;
    }
    case 7: {
        what = QStringLiteral("render");
        QImage image(m_table->size(), QImage::Format_ARGB32);
        QPainter painter(&image);
        m_table->render(&painter);
        break;
    }
    default:
        what = QStringLiteral("clearAll");
        m_table->clearAll();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_preloadedActions = 0;
        if (m_table->rowCount() != 1 || m_table->eraseMarkActionNum() != 0
            || m_markSignals != marksBefore)
            return what;
        break;
    }
    return check(what);
}
