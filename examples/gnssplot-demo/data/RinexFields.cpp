// SPDX-License-Identifier: MIT
#include "RinexFields_p.h"

#include <cstring>

namespace gnssdemo {
namespace rinex {

void fail(qint64 line, const QString& message)
{
    throw ParseError{line, message};
}

void failEnd(qint64 line, const char* what)
{
    throw ParseError{line, QStringLiteral("file ends inside %1").arg(QLatin1String(what)), what};
}

bool Line::isBlank() const
{
    for (int i = 0; i < len; ++i)
        if (p[i] != ' ' && p[i] != '\t')
            return false;
    return true;
}

QByteArray Line::label() const
{
    return len > 60 ? QByteArray(p + 60, len - 60).trimmed() : QByteArray();
}

QByteArray Line::field(int col, int width) const
{
    if (col >= len)
        return QByteArray();
    return QByteArray(p + col, std::min(width, len - col));
}

bool LineCursor::next(Line& line)
{
    if (m_cur >= m_end)
        return false;
    const char* nl = static_cast<const char*>(std::memchr(m_cur, '\n', size_t(m_end - m_cur)));
    const char* stop = nl ? nl : m_end;
    line.p = m_cur;
    line.len = int(std::min<qint64>(stop - m_cur, std::numeric_limits<int>::max()));
    if (line.len > 0 && line.p[line.len - 1] == '\r')
        --line.len;
    m_cur = nl ? nl + 1 : m_end;
    // A line end cut off between '\r' and '\n' leaves the line whole.
    m_cut = !nl && stop > line.p && stop[-1] != '\r';
    ++m_number;
    return true;
}

bool parseInt(const Line& l, int col, int width, int* out, const int* blankValue)
{
    int i = col;
    const int end = col + width;
    while (i < end && l.at(i) == ' ')
        ++i;
    if (i == end) {
        if (!blankValue)
            return false;
        *out = *blankValue;
        return true;
    }
    bool negative = false;
    if (l.at(i) == '-' || l.at(i) == '+') {
        negative = l.at(i) == '-';
        ++i;
    }
    qint64 value = 0;
    int digits = 0;
    while (i < end && l.at(i) >= '0' && l.at(i) <= '9') {
        value = value * 10 + (l.at(i) - '0');
        ++i;
        if (++digits > 9)
            return false;
    }
    if (digits == 0)
        return false;
    while (i < end && l.at(i) == ' ')
        ++i;
    if (i != end)
        return false;
    *out = int(negative ? -value : value);
    return true;
}

// Exact for the up to 17 significant digits RINEX writes: the digits form
// one integer that is divided by a power of ten once.
bool parseFixed(const char* p, int n, double* out)
{
    static const double pow10[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9,
                                   1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17};
    int i = 0;
    while (i < n && p[i] == ' ')
        ++i;
    if (i == n) {
        *out = NaN;
        return true;
    }
    bool negative = false;
    if (p[i] == '-' || p[i] == '+') {
        negative = p[i] == '-';
        ++i;
    }
    qint64 mantissa = 0;
    int digits = 0;
    int fraction = 0;
    bool point = false;
    for (; i < n; ++i) {
        const char c = p[i];
        if (c >= '0' && c <= '9') {
            if (++digits > 17)
                return false;
            mantissa = mantissa * 10 + (c - '0');
            if (point)
                ++fraction;
        } else if (c == '.' && !point) {
            point = true;
        } else {
            break;
        }
    }
    if (digits == 0)
        return false;
    for (; i < n; ++i)
        if (p[i] != ' ')
            return false;
    const double v = double(mantissa) / pow10[fraction];
    *out = negative ? -v : v;
    return true;
}

} // namespace rinex
} // namespace gnssdemo
