// SPDX-License-Identifier: MIT
#ifndef GNSSPLOT_TESTS_BYTEREADER_H
#define GNSSPLOT_TESTS_BYTEREADER_H

#include <QtGlobal>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

// Decodes a fuzzer's byte string into call arguments. Running out of bytes
// yields zeros, so every input decodes to some finite sequence.
class ByteReader
{
public:
    ByteReader(const uint8_t* data, size_t size) : m_data(data), m_size(size) {}

    bool atEnd() const { return m_pos >= m_size; }

    quint8 u8()
    {
        return m_pos < m_size ? m_data[m_pos++] : 0;
    }

    quint32 u32()
    {
        quint32 v = 0;
        for (int i = 0; i < 4; ++i)
            v = (v << 8) | u8();
        return v;
    }

    int pick(int n) { return n <= 1 ? 0 : u8() % n; }
    bool flag() { return u8() & 1; }

    // Small indices and counts mostly, with the extremes now and then.
    qint64 index()
    {
        const quint8 kind = u8();
        switch (kind % 16) {
        case 0: return -1;
        case 1: return std::numeric_limits<qint64>::max();
        case 2: return std::numeric_limits<qint64>::min();
        case 3: return qint64(1) << 61;
        default: return kind % 12;
        }
    }

    double value()
    {
        const quint8 kind = u8();
        switch (kind % 16) {
        case 0: return std::numeric_limits<double>::quiet_NaN();
        case 1: return std::numeric_limits<double>::infinity();
        case 2: return -std::numeric_limits<double>::infinity();
        case 3: return std::numeric_limits<double>::max();
        case 4: return -std::numeric_limits<double>::max();
        case 5: return 1e300;
        case 6: return 0.0;
        case 7: return -0.0;
        default: return (double(qint32(u32())) / 65536.0);
        }
    }

private:
    const uint8_t* m_data;
    size_t m_size;
    size_t m_pos = 0;
};

#endif // GNSSPLOT_TESTS_BYTEREADER_H
