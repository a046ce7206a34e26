// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_TESTS_REFERENCEMODEL_H
#define GNSSPLOT_TESTS_REFERENCEMODEL_H

// Deliberately plain re-statements of what the axis buffer and the curve
// registry promise. The randomized sequences run every call against both and
// compare results, signals and ownership.

#include <QColor>
#include <QMap>
#include <QString>
#include <QStringList>

#include <cmath>
#include <limits>
#include <set>
#include <vector>

struct RefAxis
{
    struct Buffer
    {
        bool has = false;
        std::vector<double> samples;
        qint64 begin = -1;
        qint64 end = -1;
        std::set<qint64> breaks;
    };
    Buffer published;
    bool inSetting = false;
    Buffer setting;

    static bool inRange(const Buffer& b, qint64 first, qint64 last)
    {
        return b.has && first >= 0 && last >= first && last < qint64(b.samples.size());
    }

    void begin() { setting = Buffer(); inSetting = true; }

    // Returns the expected result; "oom" tells whether the refusal carries
    // the out-of-memory message.
    bool alloc(qint64 num, bool& oom)
    {
        oom = false;
        if (!inSetting || setting.has || num < 1)
            return false;
        if (num > 4096) { // the harness only ever gets small blocks or impossible ones
            oom = true;
            return false;
        }
        setting.has = true;
        setting.samples.assign(size_t(num), 0.0);
        setting.begin = 0;
        setting.end = num - 1;
        setting.breaks.clear();
        return true;
    }

    // The index of the in-setting sample that getInSettingData(index) reaches,
    // or -1 for null.
    qint64 settingSlot(qint64 index) const
    {
        if (!inSetting || !setting.has || index < 0 || index > setting.end - setting.begin)
            return -1;
        return setting.begin + index;
    }

    bool setSettingArea(qint64 first, qint64 last)
    {
        if (!inSetting || !inRange(setting, first, last))
            return false;
        setting.begin = first;
        setting.end = last;
        return true;
    }

    bool setSettingBreaks(const std::set<qint64>& breaks)
    {
        if (!inSetting || !setting.has)
            return false;
        for (qint64 b : breaks) {
            if (b < 0 || b >= qint64(setting.samples.size()))
                return false;
        }
        setting.breaks = breaks;
        setting.breaks.erase(qint64(setting.samples.size()) - 1);
        return true;
    }

    void endSet(bool apply, QStringList& signalLog)
    {
        if (!inSetting)
            return;
        inSetting = false;
        if (apply) {
            const bool area = published.begin != setting.begin || published.end != setting.end;
            const bool data = published.has || setting.has;
            published = setting;
            if (area)
                signalLog << QStringLiteral("area");
            if (data)
                signalLog << QStringLiteral("data");
        }
        setting = Buffer();
    }

    bool setArea(qint64 first, qint64 last, QStringList& signalLog)
    {
        if (!inRange(published, first, last))
            return false;
        published.begin = first;
        published.end = last;
        signalLog << QStringLiteral("area");
        return true;
    }

    void clearArea(QStringList& signalLog)
    {
        const qint64 n = qint64(published.samples.size());
        if (!published.has || (published.begin == 0 && published.end == n - 1))
            return;
        published.begin = 0;
        published.end = n - 1;
        signalLog << QStringLiteral("area");
    }

    qint64 areaCount() const { return published.has ? published.end - published.begin + 1 : 0; }

    bool limits(double& lo, double& hi) const
    {
        if (!published.has)
            return false;
        lo = std::numeric_limits<double>::max();
        hi = -lo;
        bool found = false;
        for (qint64 i = published.begin; i <= published.end; ++i) {
            const double v = published.samples[size_t(i)];
            if (std::isnan(v))
                continue;
            lo = std::min(lo, v);
            hi = std::max(hi, v);
            found = true;
        }
        return found;
    }

    std::set<qint64> relativeBreaks() const
    {
        std::set<qint64> out;
        if (!published.has)
            return out;
        for (qint64 b : published.breaks) {
            const qint64 r = b - published.begin;
            if (r >= 0 && r < published.end - published.begin)
                out.insert(r);
        }
        return out;
    }
};

struct RefCurve
{
    int dataSetSlot = -1;
    QColor color;
    int cap = 0;
    bool visible = false;
    bool owned = false;
    bool hasItem = false; // the graphics scene made an item for it
};

struct RefRegistry
{
    QMap<QString, RefCurve> curves;
    int coordSlot = -1; // -1: none
    bool coordOwned = true;

    bool holds(int dataSetSlot) const
    {
        for (const RefCurve& c : curves) {
            if (c.dataSetSlot == dataSetSlot)
                return true;
        }
        return false;
    }
};

#endif // GNSSPLOT_TESTS_REFERENCEMODEL_H
