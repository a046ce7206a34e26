// SPDX-License-Identifier: MIT
// Compressed observation files: gzip streams (through zlib) and the older
// Unix compress (.Z) streams that archives of compact RINEX files still hold.
#ifndef GNSSDEMO_COMPRESSEDINPUT_P_H
#define GNSSDEMO_COMPRESSEDINPUT_P_H

#include <QByteArray>
#include <QString>

namespace gnssdemo {
namespace rinex {

// True when \a data starts like a Unix compress stream.
bool isCompressStream(const QByteArray& data);

// Expands the Unix compress stream \a in into \a out. On damage returns false
// with \a out holding what was expanded before it and a message in \a error.
// A stream cut short expands to its beginning without complaint: the format
// has no length to check it against.
bool expandCompressStream(const QByteArray& in, QByteArray* out, QString* error);

} // namespace rinex
} // namespace gnssdemo

#endif // GNSSDEMO_COMPRESSEDINPUT_P_H
