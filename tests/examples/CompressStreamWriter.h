// SPDX-License-Identifier: MIT
// A Unix compress (.Z) writer for the demo's tests, which have no such tool
// to rely on.
#ifndef GNSSDEMO_TESTS_COMPRESSSTREAMWRITER_H
#define GNSSDEMO_TESTS_COMPRESSSTREAMWRITER_H

#include <QByteArray>

#include <algorithm>
#include <unordered_map>

// A Unix compress writer, to make .Z files: LZW codes packed from the least
// significant bit, widening from 9 bits up to maxBits (and to 10 bits once a
// 9-bit table is full, as gzip's reader expects), each group of eight codes
// padded to full size when the width changes or (in block mode) when a full
// table is cleared with code 256.
inline QByteArray writeCompressStream(const QByteArray& data, int maxBits, bool blockMode)
{
    QByteArray out;
    out.append(char(0x1f)).append(char(0x9d)).append(char(maxBits | (blockMode ? 0x80 : 0)));
    quint64 acc = 0;
    int accBits = 0;
    qint64 segmentBits = 0;
    int width = 9;
    const int first = blockMode ? 257 : 256;
    int next = first;
    int maxCode = (1 << width) - 1;
    auto put = [&](quint32 code, int bits) {
        acc |= quint64(code) << accBits;
        accBits += bits;
        segmentBits += bits;
        for (; accBits >= 8; accBits -= 8, acc >>= 8)
            out.append(char(acc & 0xff));
    };
    auto pad = [&]() {
        const qint64 group = qint64(width) * 8;
        const qint64 rest = (group - segmentBits % group) % group;
        for (qint64 i = 0; i < rest; i += 8)
            put(0, int(std::min<qint64>(8, rest - i)));
        segmentBits = 0;
    };
    auto writeCode = [&](int code) {
        put(quint32(code), width);
        if (next > maxCode) {
            pad();
            ++width;
            maxCode = width == maxBits ? 1 << maxBits : (1 << width) - 1;
        }
    };
    if (data.isEmpty())
        return out;
    std::unordered_map<quint32, int> table;
    int ent = uchar(data[0]);
    for (int i = 1; i < data.size(); ++i) {
        const int c = uchar(data[i]);
        const quint32 key = quint32(ent) << 8 | quint32(c);
        const auto it = table.find(key);
        if (it != table.end()) {
            ent = it->second;
            continue;
        }
        writeCode(ent);
        if (next < (1 << maxBits)) {
            table[key] = next++;
        } else if (blockMode) {
            writeCode(256);
            pad();
            table.clear();
            width = 9;
            maxCode = (1 << width) - 1;
            next = first;
        }
        ent = c;
    }
    writeCode(ent);
    if (accBits > 0)
        out.append(char(acc & 0xff));
    return out;
}

#endif // GNSSDEMO_TESTS_COMPRESSSTREAMWRITER_H
