// SPDX-License-Identifier: MIT
#ifndef GNSSDEMO_RINEXREADER_H
#define GNSSDEMO_RINEXREADER_H

#include "ObservationData.h"

#include <QByteArray>
#include <QString>

#include <memory>

namespace gnssdemo {

/*!
    Reads RINEX observation files, versions 2.xx and 3.xx (and 4.xx, whose
    observation records are those of 3.05), plain or in the compact
    (Hatanaka) form 1.0 or 3.0, each plain, gzip-compressed or Unix-compressed
    (.Z), into a MemoryObservationSource. The observations of a compact file
    equal those of its plain form; errors in it name its own lines.

    Pseudoranges (C, and P in version 2), carrier phases (L) with their
    loss-of-lock indicators and signal strengths (S) are kept. For each
    satellite and band the code and phase types with the most values are
    chosen (ties go to the preferred signal, then to header order); the phase
    and signal-strength types with the same tracking attribute as the chosen
    code win over others. The signal-strength digit after a value is not
    read: a file without S types has no signal strength.

    A file that ends early (a download cut short, a truncated gzip stream)
    keeps its complete epochs: the epoch it ends in, and the one holding an
    unterminated last line, are left out, and the source's readStop() says
    where and why. Damage before the end refuses the file as before.

    Epoch flags: 0 and 1 carry observations (a flag 1 power failure marks a
    cycle slip on every satellite of that epoch); 2 to 5 are followed by
    special records that are skipped; 6 lists cycle-slip records, which mark
    a slip for their satellites. Epoch times in BeiDou time or GLONASS time
    are converted to GPST.

    GLONASS channel numbers come from the "GLONASS SLOT / FRQ #" header; when
    a satellite is not listed there its channel is estimated from the ratio
    of code change to phase change on G1, and failing that taken from a
    built-in slot table (ChannelOrigin tells which).
*/
class RinexReader
{
public:
    /*! Reads \a path. On failure returns null and writes a message naming
        the file and, for malformed content, the 1-based line number into
        \a error (when not null). */
    static std::unique_ptr<MemoryObservationSource> readFile(const QString& path,
                                                             QString* error);
    /*! Parses the uncompressed file content \a text; \a name is used in the
        source's description. Errors as readFile() but without the file name:
        "line N: ...". */
    static std::unique_ptr<MemoryObservationSource> readText(const QByteArray& text,
                                                             const QString& name,
                                                             QString* error);
};

/*! Reads a whole file, expanding it when it is gzip- or Unix-compressed
    (plain files pass through). Returns false with a message in \a error on
    failure; damaged compressed data is reported as "NAME: line N: ...", N
    being the line of the expanded text where the damage shows. With
    \a streamCut given, a gzip stream that merely ends early is no failure:
    \a content holds what it expanded to and *streamCut is set true (false
    otherwise). A Unix-compressed stream cut short cannot be told from a
    whole one. */
bool readMaybeGzipped(const QString& path, QByteArray* content, QString* error,
                      bool* streamCut = nullptr);

} // namespace gnssdemo

#endif // GNSSDEMO_RINEXREADER_H
