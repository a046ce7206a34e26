// SPDX-License-Identifier: MIT
// The exact mapping of samples to device pixels, several samples at a time.
// Every path performs the same IEEE operations in the same order as the
// scalar one (subtract, divide, multiply, offset; clamp, truncate; scale,
// offset, clamp, floor), so all of them give the same pixels to the bit.
// The build keeps the compiler from fusing a multiply and an add here
// (-ffp-contract=off), which would round differently on one path only.
#include "CurveRaster_p.h"

#include <atomic>

#if defined(__x86_64__) || defined(_M_X64)
#define GNSSPLOT_MAP_SSE2 1
#include <emmintrin.h>
#if defined(__GNUC__) || defined(__clang__)
#define GNSSPLOT_MAP_AVX2 1
#include <immintrin.h>
#endif
#endif

namespace CurveRaster {

namespace {

inline double clampTo(double v, double limit)
{
    const double low = v < -limit ? -limit : v;
    return low > limit ? limit : low;
}

// Truncate the item coordinate toward zero within +-kItemLimit, scale,
// offset, floor, saturate; a NaN is replaced by 0 before it gets here.
inline qint32 devicePixel(double itemCoord, double scale, double offset)
{
    const double item = clampTo(itemCoord, double(kItemLimit));
    const double v = clampTo(scale * double(qint32(item)) + offset, double(kCoordLimit));
    const qint32 t = qint32(v);
    return t - qint32(v < double(t));
}

struct RowArgs
{
    double yMin, ry, height, base, m22, dy;
};
struct ColumnArgs
{
    double xMin, rx, width, left, m11, dx;
};

template <bool bYDown>
inline qint32 rowOf(const RowArgs& a, double y, qint32 column)
{
    const double t = ((y - a.yMin) / a.ry) * a.height;
    const double py = bYDown ? a.base + t : a.base - t;
    // Plain bitwise logic keeps the loop free of branches.
    const bool none = (py != py) | (column == kNoPixel);
    const qint32 row = devicePixel(none ? 0.0 : py, a.m22, a.dy);
    return none ? kNoPixel : row;
}

inline qint32 columnOf(const ColumnArgs& a, double x)
{
    const double px = ((x - a.xMin) / a.rx) * a.width + a.left;
    const bool none = px != px;
    const qint32 column = devicePixel(none ? 0.0 : px, a.m11, a.dx);
    return none ? kNoPixel : column;
}

template <bool bYDown>
void rowsScalar(const RowArgs& a, const double* ys, const qint32* columns, qint64 n,
                qint32* rows)
{
    for (qint64 i = 0; i < n; ++i)
        rows[i] = rowOf<bYDown>(a, ys[i], columns[i]);
}

void columnsScalar(const ColumnArgs& a, const double* xs, qint64 n, qint32* columns)
{
    for (qint64 i = 0; i < n; ++i)
        columns[i] = columnOf(a, xs[i]);
}

#ifdef GNSSPLOT_MAP_SSE2

// Two samples: the item coordinate \a p (NaN lanes given in \a none as
// all-ones) to device pixels, kNoPixel where \a none32 is set.
inline __m128i pixels2(__m128d p, __m128d none, double scale, double offset)
{
    const __m128d itemLimit = _mm_set1_pd(double(kItemLimit));
    const __m128d coordLimit = _mm_set1_pd(double(kCoordLimit));
    p = _mm_andnot_pd(none, p);
    p = _mm_min_pd(_mm_max_pd(p, _mm_sub_pd(_mm_setzero_pd(), itemLimit)), itemLimit);
    const __m128d whole = _mm_cvtepi32_pd(_mm_cvttpd_epi32(p));
    __m128d v = _mm_add_pd(_mm_mul_pd(_mm_set1_pd(scale), whole), _mm_set1_pd(offset));
    v = _mm_min_pd(_mm_max_pd(v, _mm_sub_pd(_mm_setzero_pd(), coordLimit)), coordLimit);
    const __m128d t = _mm_cvtepi32_pd(_mm_cvttpd_epi32(v));
    const __m128d down = _mm_and_pd(_mm_cmplt_pd(v, t), _mm_set1_pd(1.0));
    return _mm_cvttpd_epi32(_mm_sub_pd(t, down));
}

// The two 64-bit lane masks of \a m as two 32-bit lanes.
inline __m128i narrow2(__m128d m)
{
    return _mm_shuffle_epi32(_mm_castpd_si128(m), _MM_SHUFFLE(3, 3, 2, 0));
}

inline __m128i select32(__m128i none, __m128i value)
{
    return _mm_or_si128(_mm_andnot_si128(none, value),
                        _mm_and_si128(none, _mm_set1_epi32(kNoPixel)));
}

template <bool bYDown>
void rowsSse2(const RowArgs& a, const double* ys, const qint32* columns, qint64 n,
              qint32* rows)
{
    const __m128d yMin = _mm_set1_pd(a.yMin);
    const __m128d ry = _mm_set1_pd(a.ry);
    const __m128d height = _mm_set1_pd(a.height);
    const __m128d base = _mm_set1_pd(a.base);
    qint64 i = 0;
    for (; i + 2 <= n; i += 2) {
        const __m128d t = _mm_mul_pd(_mm_div_pd(_mm_sub_pd(_mm_loadu_pd(ys + i), yMin), ry),
                                     height);
        const __m128d py = bYDown ? _mm_add_pd(base, t) : _mm_sub_pd(base, t);
        const __m128d nan = _mm_cmpunord_pd(py, py);
        const __m128i noColumn = _mm_cmpeq_epi32(
            _mm_loadl_epi64(reinterpret_cast<const __m128i*>(columns + i)),
            _mm_set1_epi32(kNoPixel));
        const __m128i none = _mm_or_si128(narrow2(nan), noColumn);
        _mm_storel_epi64(reinterpret_cast<__m128i*>(rows + i),
                         select32(none, pixels2(py, nan, a.m22, a.dy)));
    }
    rowsScalar<bYDown>(a, ys + i, columns + i, n - i, rows + i);
}

void columnsSse2(const ColumnArgs& a, const double* xs, qint64 n, qint32* columns)
{
    const __m128d xMin = _mm_set1_pd(a.xMin);
    const __m128d rx = _mm_set1_pd(a.rx);
    const __m128d width = _mm_set1_pd(a.width);
    const __m128d left = _mm_set1_pd(a.left);
    qint64 i = 0;
    for (; i + 2 <= n; i += 2) {
        const __m128d px = _mm_add_pd(
            _mm_mul_pd(_mm_div_pd(_mm_sub_pd(_mm_loadu_pd(xs + i), xMin), rx), width), left);
        const __m128d nan = _mm_cmpunord_pd(px, px);
        _mm_storel_epi64(reinterpret_cast<__m128i*>(columns + i),
                         select32(narrow2(nan), pixels2(px, nan, a.m11, a.dx)));
    }
    columnsScalar(a, xs + i, n - i, columns + i);
}

#endif // GNSSPLOT_MAP_SSE2

#ifdef GNSSPLOT_MAP_AVX2

#define GNSSPLOT_AVX2 __attribute__((target("avx2")))

GNSSPLOT_AVX2 inline __m128i pixels4(__m256d p, __m256d none, double scale, double offset)
{
    const __m256d itemLimit = _mm256_set1_pd(double(kItemLimit));
    const __m256d coordLimit = _mm256_set1_pd(double(kCoordLimit));
    p = _mm256_andnot_pd(none, p);
    p = _mm256_min_pd(_mm256_max_pd(p, _mm256_sub_pd(_mm256_setzero_pd(), itemLimit)),
                      itemLimit);
    const __m256d whole = _mm256_cvtepi32_pd(_mm256_cvttpd_epi32(p));
    __m256d v = _mm256_add_pd(_mm256_mul_pd(_mm256_set1_pd(scale), whole),
                              _mm256_set1_pd(offset));
    v = _mm256_min_pd(_mm256_max_pd(v, _mm256_sub_pd(_mm256_setzero_pd(), coordLimit)),
                      coordLimit);
    const __m256d t = _mm256_cvtepi32_pd(_mm256_cvttpd_epi32(v));
    const __m256d down = _mm256_and_pd(_mm256_cmp_pd(v, t, _CMP_LT_OQ), _mm256_set1_pd(1.0));
    return _mm256_cvttpd_epi32(_mm256_sub_pd(t, down));
}

GNSSPLOT_AVX2 inline __m128i narrow4(__m256d m)
{
    const __m128 lo = _mm_castpd_ps(_mm256_castpd256_pd128(m));
    const __m128 hi = _mm_castpd_ps(_mm256_extractf128_pd(m, 1));
    return _mm_castps_si128(_mm_shuffle_ps(lo, hi, _MM_SHUFFLE(2, 0, 2, 0)));
}

template <bool bYDown>
GNSSPLOT_AVX2 void rowsAvx2(const RowArgs& a, const double* ys, const qint32* columns, qint64 n,
                            qint32* rows)
{
    const __m256d yMin = _mm256_set1_pd(a.yMin);
    const __m256d ry = _mm256_set1_pd(a.ry);
    const __m256d height = _mm256_set1_pd(a.height);
    const __m256d base = _mm256_set1_pd(a.base);
    qint64 i = 0;
    for (; i + 4 <= n; i += 4) {
        const __m256d t = _mm256_mul_pd(
            _mm256_div_pd(_mm256_sub_pd(_mm256_loadu_pd(ys + i), yMin), ry), height);
        const __m256d py = bYDown ? _mm256_add_pd(base, t) : _mm256_sub_pd(base, t);
        const __m256d nan = _mm256_cmp_pd(py, py, _CMP_UNORD_Q);
        const __m128i noColumn = _mm_cmpeq_epi32(
            _mm_loadu_si128(reinterpret_cast<const __m128i*>(columns + i)),
            _mm_set1_epi32(kNoPixel));
        const __m128i none = _mm_or_si128(narrow4(nan), noColumn);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(rows + i),
                         select32(none, pixels4(py, nan, a.m22, a.dy)));
    }
    rowsScalar<bYDown>(a, ys + i, columns + i, n - i, rows + i);
}

GNSSPLOT_AVX2 void columnsAvx2(const ColumnArgs& a, const double* xs, qint64 n,
                               qint32* columns)
{
    const __m256d xMin = _mm256_set1_pd(a.xMin);
    const __m256d rx = _mm256_set1_pd(a.rx);
    const __m256d width = _mm256_set1_pd(a.width);
    const __m256d left = _mm256_set1_pd(a.left);
    qint64 i = 0;
    for (; i + 4 <= n; i += 4) {
        const __m256d px = _mm256_add_pd(
            _mm256_mul_pd(_mm256_div_pd(_mm256_sub_pd(_mm256_loadu_pd(xs + i), xMin), rx),
                          width),
            left);
        const __m256d nan = _mm256_cmp_pd(px, px, _CMP_UNORD_Q);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(columns + i),
                         select32(narrow4(nan), pixels4(px, nan, a.m11, a.dx)));
    }
    columnsScalar(a, xs + i, n - i, columns + i);
}

#endif // GNSSPLOT_MAP_AVX2

MapPath bestPath()
{
#ifdef GNSSPLOT_MAP_AVX2
    if (__builtin_cpu_supports("avx2"))
        return MapPath::Avx2;
#endif
#ifdef GNSSPLOT_MAP_SSE2
    return MapPath::Sse2;
#else
    return MapPath::Scalar;
#endif
}

std::atomic<int>& pathInUse()
{
    static std::atomic<int> path{int(bestPath())};
    return path;
}

} // namespace

bool isMapPathAvailable(MapPath path)
{
    switch (path) {
    case MapPath::Scalar: return true;
    case MapPath::Sse2:
#ifdef GNSSPLOT_MAP_SSE2
        return true;
#else
        return false;
#endif
    case MapPath::Avx2: return bestPath() == MapPath::Avx2;
    }
    return false;
}

bool setMapPath(MapPath path)
{
    if (!isMapPathAvailable(path))
        return false;
    pathInUse().store(int(path));
    return true;
}

MapPath mapPath()
{
    return MapPath(pathInUse().load());
}

void mapRows(const CoordMapping& mapping, double m22, double dy, const double* ys,
             const qint32* columns, qint64 n, qint32* rows)
{
    if (n < 1)
        return;
    const RowArgs a{mapping.yMin, mapping.ry, mapping.height,
                    mapping.yDown ? mapping.top : mapping.bottom, m22, dy};
    switch (mapPath()) {
#ifdef GNSSPLOT_MAP_AVX2
    case MapPath::Avx2:
        return mapping.yDown ? rowsAvx2<true>(a, ys, columns, n, rows)
                             : rowsAvx2<false>(a, ys, columns, n, rows);
#endif
#ifdef GNSSPLOT_MAP_SSE2
    case MapPath::Sse2:
        return mapping.yDown ? rowsSse2<true>(a, ys, columns, n, rows)
                             : rowsSse2<false>(a, ys, columns, n, rows);
#endif
    default:
        return mapping.yDown ? rowsScalar<true>(a, ys, columns, n, rows)
                             : rowsScalar<false>(a, ys, columns, n, rows);
    }
}

void mapColumns(const CoordMapping& mapping, double m11, double dx, const double* xs, qint64 n,
                qint32* columns)
{
    if (n < 1)
        return;
    const ColumnArgs a{mapping.xMin, mapping.rx, mapping.width, mapping.left, m11, dx};
    switch (mapPath()) {
#ifdef GNSSPLOT_MAP_AVX2
    case MapPath::Avx2: return columnsAvx2(a, xs, n, columns);
#endif
#ifdef GNSSPLOT_MAP_SSE2
    case MapPath::Sse2: return columnsSse2(a, xs, n, columns);
#endif
    default: return columnsScalar(a, xs, n, columns);
    }
}

} // namespace CurveRaster
