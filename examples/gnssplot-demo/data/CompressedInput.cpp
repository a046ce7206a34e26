// SPDX-License-Identifier: MIT
// Opening compressed observation files: gzip streams through zlib, Unix
// compress streams (.Z) here.
#include "CompressedInput_p.h"
#include "RinexReader.h"

#include <QFile>
#include <QFileInfo>

#include <zlib.h>

#include <algorithm>
#include <limits>
#include <new>
#include <vector>

namespace gnssdemo {

namespace rinex {

bool isCompressStream(const QByteArray& data)
{
    return data.size() >= 2 && uchar(data[0]) == 0x1f && uchar(data[1]) == 0x9d;
}

/*
    A compress stream: the two magic bytes, a byte with the largest code
    width (9 to 16 bits) in its low five bits and "block mode" in its top bit,
    then LZW codes packed from the least significant bit on. Codes start
    9 bits wide; 0 to 255 are bytes, and each code after the first adds the
    string of the code before plus the first byte of its own. In block mode
    code 256 clears the table, so new entries start at 257. The width grows by
    one bit once the next entry would not fit, up to the largest width; but
    with a largest width of 9 the limit is only lifted on the first growth, so
    those streams switch to 10-bit codes once their table is full (as the
    established readers of the format expect). The writer emits codes in
    groups of eight, that is `width` bytes, and pads the group it is in to its
    full size whenever the width changes or the table is cleared, so the reader
    skips to the group's end at those points.
*/
bool expandCompressStream(const QByteArray& in, QByteArray* out, QString* error)
{
    out->clear();
    if (!isCompressStream(in) || in.size() < 3) {
        *error = QStringLiteral("not a compress stream");
        return false;
    }
    const uchar* data = reinterpret_cast<const uchar*>(in.constData()) + 3;
    const qint64 totalBits = qint64(in.size() - 3) * 8;
    const int maxBits = uchar(in[2]) & 0x1f;
    const bool blockMode = (uchar(in[2]) & 0x80) != 0;
    if (maxBits < 9 || maxBits > 16) {
        *error = QStringLiteral("unsupported code width %1").arg(maxBits);
        return false;
    }
    const int tableSize = 1 << maxBits;
    const int firstEntry = blockMode ? 257 : 256;
    const size_t entries = static_cast<size_t>(tableSize);
    std::vector<quint16> prefix(entries);
    std::vector<uchar> suffix(entries);
    std::vector<uchar> stack;
    stack.reserve(entries);

    int width = 9;
    int maxCode = (1 << width) - 1; // beyond it the width grows
    int next = firstEntry;          // the next entry to add
    qint64 pos = 0;        // bits read
    qint64 groupStart = 0; // where the codes of the current width began
    int previous = -1;     // no previous code right after the start or a clear
    uchar firstByte = 0;
    auto skipToGroupEnd = [&]() {
        const qint64 groupBits = qint64(width) * 8;
        pos = groupStart + (pos - groupStart + groupBits - 1) / groupBits * groupBits;
        groupStart = pos;
    };
    auto byteAt = [&](qint64 i) -> quint32 { return i * 8 < totalBits ? data[i] : 0; };

    while (pos + width <= totalBits) {
        const qint64 byte = pos >> 3;
        const quint32 word = byteAt(byte) | byteAt(byte + 1) << 8 | byteAt(byte + 2) << 16;
        const int code = int((word >> (pos & 7)) & ((1u << width) - 1));
        pos += width;
        if (blockMode && code == 256) {
            skipToGroupEnd();
            width = 9;
            maxCode = (1 << width) - 1;
            next = firstEntry;
            previous = -1;
            continue;
        }
        if (previous < 0) {
            if (code > 255) {
                *error = QStringLiteral("code %1 where a byte must start").arg(code);
                return false;
            }
            out->append(char(code));
            firstByte = uchar(code);
        } else {
            if (code > next || (code == next && next >= tableSize)) {
                *error = QStringLiteral("code %1 refers to no string yet").arg(code);
                return false;
            }
            stack.clear();
            int c = code;
            if (code == next) {
                // The string being defined: the previous one plus its own
                // first byte.
                stack.push_back(firstByte);
                c = previous;
            }
            while (c >= 256) {
                stack.push_back(suffix[size_t(c)]);
                c = prefix[size_t(c)];
            }
            stack.push_back(uchar(c));
            firstByte = uchar(c);
            if (out->size() > std::numeric_limits<int>::max() - int(stack.size()) - 1) {
                *error = QStringLiteral("file too large");
                return false;
            }
            for (auto it = stack.rbegin(); it != stack.rend(); ++it)
                out->append(char(*it));
            if (next < tableSize) {
                prefix[size_t(next)] = quint16(previous);
                suffix[size_t(next)] = firstByte;
                ++next;
            }
        }
        previous = code;
        if (next > maxCode) {
            skipToGroupEnd();
            ++width;
            maxCode = width == maxBits ? tableSize : (1 << width) - 1;
        }
    }
    return true;
}

} // namespace rinex

namespace {

QString lineOfDamage(const QByteArray& expanded, qint64 size)
{
    const qint64 lines = std::count(expanded.constData(), expanded.constData() + size, '\n');
    return QStringLiteral("line %1").arg(lines + 1);
}

bool readGzip(const QString& path, const QString& name, QByteArray* content, QString* error,
              bool* streamCut)
{
    // gzread passes files that are not gzip streams through unchanged.
    gzFile file = gzopen(QFile::encodeName(path).constData(), "rb");
    if (!file) {
        *error = QStringLiteral("%1: cannot open the file").arg(name);
        return false;
    }
    gzbuffer(file, 1 << 18);
    const int chunk = 1 << 22;
    bool ok = true;
    while (true) {
        const int old = content->size();
        if (old > std::numeric_limits<int>::max() - chunk) {
            ok = false;
            *error = QStringLiteral("%1: file too large").arg(name);
            break;
        }
        content->resize(old + chunk);
        const int got = gzread(file, content->data() + old, unsigned(chunk));
        content->resize(old + std::max(got, 0));
        if (got < 0) {
            int code = 0;
            const char* message = gzerror(file, &code);
            if (code == Z_BUF_ERROR && streamCut)
                break; // ended early; said below
            ok = false;
            *error = QStringLiteral("%1: %2: cannot decompress (%3)")
                         .arg(name, lineOfDamage(*content, content->size()),
                              QString::fromLocal8Bit(message));
            break;
        }
        if (got < chunk)
            break;
    }
    int code = Z_OK;
    const char* message = gzerror(file, &code);
    // zlib reports a stream that stops before its end as a buffer error
    // ("unexpected end of file"): all that came before expanded correctly.
    if (ok && code == Z_BUF_ERROR && streamCut) {
        *streamCut = true;
        code = Z_OK;
    }
    if (ok && code != Z_OK && code != Z_STREAM_END) {
        ok = false;
        *error = QStringLiteral("%1: %2: damaged compressed data (%3)")
                     .arg(name, lineOfDamage(*content, content->size()),
                          QString::fromLocal8Bit(message));
    }
    gzclose(file);
    return ok;
}

} // namespace

bool readMaybeGzipped(const QString& path, QByteArray* content, QString* error,
                      bool* streamCut)
{
    const QString name = QFileInfo(path).fileName();
    QString message;
    bool ok = false;
    content->clear();
    if (streamCut)
        *streamCut = false;
    try {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly)) {
            message = QStringLiteral("%1: cannot open the file").arg(name);
        } else if (rinex::isCompressStream(file.peek(2))) {
            const QByteArray packed = file.readAll();
            ok = rinex::expandCompressStream(packed, content, &message);
            if (!ok)
                message = QStringLiteral("%1: %2: damaged compressed data (%3)")
                              .arg(name, lineOfDamage(*content, content->size()), message);
        } else {
            file.close();
            ok = readGzip(path, name, content, &message, streamCut);
        }
    } catch (const std::bad_alloc&) {
        ok = false;
        message = QStringLiteral("%1: out of memory").arg(name);
    }
    if (!ok) {
        content->clear();
        if (error)
            *error = message;
    }
    return ok;
}

} // namespace gnssdemo
