// SPDX-License-Identifier: MIT
// A paint device that keeps the texts drawn on it, each with the rectangle
// it covers in device pixels, and draws nothing: a test reads what a widget
// writes where, in any language, without looking at pixels.
#ifndef GNSSDEMO_TEXTRECORDER_H
#define GNSSDEMO_TEXTRECORDER_H

#include <QFontMetricsF>
#include <QList>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <QRectF>
#include <QString>

#include <memory>

class TextRecorder : public QPaintDevice
{
public:
    struct Text
    {
        QString text;
        QRectF rect;
    };

    explicit TextRecorder(const QSize& size)
        : m_size(size)
        , m_engine(std::make_unique<Engine>(this))
    {
    }
    ~TextRecorder() override = default;

    QPaintEngine* paintEngine() const override { return m_engine.get(); }
    const QList<Text>& texts() const { return m_texts; }
    void clear() { m_texts.clear(); }

protected:
    int metric(PaintDeviceMetric metric) const override
    {
        switch (metric) {
        case PdmWidth: return m_size.width();
        case PdmHeight: return m_size.height();
        case PdmWidthMM: return m_size.width() * 254 / 960;
        case PdmHeightMM: return m_size.height() * 254 / 960;
        case PdmNumColors: return 0x7fffffff;
        case PdmDepth: return 32;
        case PdmDpiX:
        case PdmDpiY:
        case PdmPhysicalDpiX:
        case PdmPhysicalDpiY: return 96;
        case PdmDevicePixelRatio: return 1;
        case PdmDevicePixelRatioScaled: return int(QPaintDevice::devicePixelRatioFScale());
        default: return 0;
        }
    }

private:
    class Engine : public QPaintEngine
    {
    public:
        explicit Engine(TextRecorder* device)
            : QPaintEngine(QPaintEngine::AllFeatures)
            , m_device(device)
        {
        }
        bool begin(QPaintDevice*) override { return true; }
        bool end() override { return true; }
        void updateState(const QPaintEngineState&) override {}
        void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}
        void drawImage(const QRectF&, const QImage&, const QRectF&,
                       Qt::ImageConversionFlags) override
        {
        }
        void drawPolygon(const QPointF*, int, PolygonDrawMode) override {}
        void drawPath(const QPainterPath&) override {}
        void drawTextItem(const QPointF& p, const QTextItem& item) override
        {
            const QFontMetricsF metrics(item.font());
            const QRectF local(p.x(), p.y() - metrics.ascent(),
                               metrics.horizontalAdvance(item.text()), metrics.height());
            m_device->m_texts.append(
                {item.text(), painter()->combinedTransform().mapRect(local)});
        }
        Type type() const override { return QPaintEngine::User; }

    private:
        TextRecorder* m_device;
    };

    QSize m_size;
    std::unique_ptr<Engine> m_engine;
    QList<Text> m_texts;
};

#endif // GNSSDEMO_TEXTRECORDER_H
