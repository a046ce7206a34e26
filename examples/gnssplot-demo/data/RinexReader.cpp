// SPDX-License-Identifier: MIT
// The reader's front: the header, then the body from the file's lines (or
// from the records a compact file's lines stand for), then the signal
// selection per satellite.
#include "RinexReader.h"

#include "CrinexDecoder_p.h"
#include "RinexBody_p.h"
#include "RinexSignals_p.h"

#include <QFileInfo>

#include <algorithm>
#include <new>

namespace gnssdemo {

std::unique_ptr<MemoryObservationSource> RinexReader::readText(const QByteArray& text,
                                                               const QString& name,
                                                               QString* error)
{
    using namespace rinex;
    try {
        LineCursor lines(text.constData(), text.constData() + text.size());
        RinexHeader header;
        readHeader(lines, &header);
        std::unique_ptr<CrinexDecoder> decoder;
        if (header.compactVersion != 0)
            decoder = std::make_unique<CrinexDecoder>(lines, header);
        RinexBody body(decoder ? static_cast<LineSource&>(*decoder) : lines, header);
        body.read();

        std::vector<SatelliteObservations> sats;
        sats.reserve(body.sats.size());
        for (SatStore& s : body.sats)
            sats.push_back(selectSignals(s, header, body.epochs));
        body.sats.clear();
        const qint64 interval = sourceIntervalMs(header, body.epochs);
        const QString description = QStringLiteral("RINEX %1 observations %2")
                                        .arg(header.version, 0, 'f', 2).arg(name);
        auto source = std::make_unique<MemoryObservationSource>(
            description, std::move(body.epochs), interval > 0 ? interval : 1000,
            std::move(sats));
        StationInfo station;
        station.markerName = QString::fromLatin1(header.markerName);
        station.hasPosition = header.approxPosition[0] != 0 || header.approxPosition[1] != 0
                              || header.approxPosition[2] != 0;
        std::copy(header.approxPosition, header.approxPosition + 3, station.position);
        source->setStation(station);
        source->setReadStop(body.stop);
        return source;
    } catch (const ParseError& e) {
        if (error)
            *error = QStringLiteral("line %1: %2").arg(e.line).arg(e.message);
    } catch (const std::bad_alloc&) {
        if (error)
            *error = QStringLiteral("out of memory");
    }
    return nullptr;
}

std::unique_ptr<MemoryObservationSource> RinexReader::readFile(const QString& path,
                                                               QString* error)
{
    QByteArray text;
    QString message;
    bool streamCut = false;
    if (!readMaybeGzipped(path, &text, &message, &streamCut)) {
        if (error)
            *error = message;
        return nullptr;
    }
    const QString name = QFileInfo(path).fileName();
    auto source = readText(text, name, &message);
    if (!source) {
        if (error)
            *error = QStringLiteral("%1: %2").arg(name, message);
        return nullptr;
    }
    ReadStop stop = source->readStop();
    stop.file = name;
    if (streamCut) {
        stop.compressedCut = true;
        // Cut right after a whole epoch, the text itself looks complete:
        // the stream ended where the next line would have begun.
        if (!stop.isCut())
            stop.line = qint64(text.count('\n')) + 1;
    }
    source->setReadStop(stop);
    return source;
}

} // namespace gnssdemo
