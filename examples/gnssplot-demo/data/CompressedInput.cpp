// SPDX-License-Identifier: MIT
// Opening compressed observation files: gzip streams through zlib.
#include "RinexReader.h"

#include <QFile>
#include <QFileInfo>

#include <zlib.h>

#include <limits>
#include <new>

namespace gnssdemo {

bool readMaybeGzipped(const QString& path, QByteArray* content, QString* error)
{
    const QString name = QFileInfo(path).fileName();
    // gzread passes files that are not gzip streams through unchanged.
    gzFile file = gzopen(QFile::encodeName(path).constData(), "rb");
    if (!file) {
        if (error)
            *error = QStringLiteral("%1: cannot open the file").arg(name);
        return false;
    }
    gzbuffer(file, 1 << 18);
    content->clear();
    const int chunk = 1 << 22;
    bool ok = true;
    try {
        while (true) {
            const int old = content->size();
            if (old > std::numeric_limits<int>::max() - chunk) {
                ok = false;
                if (error)
                    *error = QStringLiteral("%1: file too large").arg(name);
                break;
            }
            content->resize(old + chunk);
            const int got = gzread(file, content->data() + old, unsigned(chunk));
            if (got < 0) {
                int code = 0;
                ok = false;
                if (error)
                    *error = QStringLiteral("%1: cannot decompress (%2)")
                                 .arg(name, QString::fromLocal8Bit(gzerror(file, &code)));
                break;
            }
            content->resize(old + got);
            if (got < chunk)
                break;
        }
    } catch (const std::bad_alloc&) {
        ok = false;
        if (error)
            *error = QStringLiteral("%1: out of memory").arg(name);
    }
    int code = Z_OK;
    const char* message = gzerror(file, &code);
    if (ok && code != Z_OK && code != Z_STREAM_END) {
        ok = false;
        if (error)
            *error = QStringLiteral("%1: damaged compressed data (%2)")
                         .arg(name, QString::fromLocal8Bit(message));
    }
    gzclose(file);
    if (!ok)
        content->clear();
    return ok;
}

} // namespace gnssdemo
