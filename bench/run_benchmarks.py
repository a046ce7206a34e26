#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs the benchmarks once and writes BENCHMARKS.md: medians, ratios to the
peers measured in the same run, memory per sample and the machine.

    bench/run_benchmarks.py [--build build-bench] [--reps 3] [--out BENCHMARKS.md]

Configures and builds the benchmarks (GNSSPLOT_BUILD_BENCHMARKS=ON) in the
build directory; installs libqcustomplot-dev and libqwt-qt5-dev with apt-get
when they are missing.
"""
import argparse
import json
import os
import platform
import subprocess
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
SIZES = [10000, 100000, 1000000, 10000000]


def sh(cmd, **kw):
    print('+', ' '.join(cmd), file=sys.stderr)
    return subprocess.run(cmd, check=True, **kw)


def ensure_peers():
    missing = [p for p in ('libqcustomplot-dev', 'libqwt-qt5-dev')
               if subprocess.run(['dpkg', '-s', p], capture_output=True).returncode != 0]
    if missing:
        sudo = [] if os.geteuid() == 0 else ['sudo']
        sh(sudo + ['apt-get', 'install', '-y'] + missing)


def build(build_dir):
    sh(['cmake', '-S', ROOT, '-B', build_dir, '-G', 'Ninja', '-DGNSSPLOT_BUILD_BENCHMARKS=ON', '-DGNSSPLOT_BUILD_TESTS=OFF',
        # the peers are Qt 5 builds
        '-DGNSSPLOT_QT_MAJOR=5',
        '-DGNSSPLOT_BUILD_EXAMPLES=ON'], stdout=subprocess.DEVNULL)
    sh(['ninja', '-C', build_dir, '-j2', 'bench_curve', 'bench_epoch', 'bench_sky', 'bench_demo',
        'bench_display'], stdout=subprocess.DEVNULL)


# The display sizes of the full-day table: logical size and device pixel ratio.
DISPLAYS = [(800, 540, 1), (1600, 900, 1), (1600, 900, 2), (1920, 1080, 2)]


def run_bench(exe, reps, filt=None, extra=(), counters=None):
    cmd = [exe] + list(extra) + ['--benchmark_format=json', f'--benchmark_repetitions={reps}',
                                 '--benchmark_report_aggregates_only=true',
                                 '--benchmark_min_time=0.2']
    if filt:
        cmd.append(f'--benchmark_filter={filt}')
    out = sh(cmd, capture_output=True, text=True).stdout
    medians = {}
    for b in json.loads(out)['benchmarks']:
        if b.get('aggregate_name') == 'median':
            name = b['run_name'].split('/iterations')[0]
            medians[name] = b['real_time']  # milliseconds
            if counters is not None:
                for key, value in b.items():
                    if key.endswith('_MB'):
                        counters[f'{name}:{key}'] = value
    return medians


def memory(exe, lib, n):
    out = sh([exe, '--memory', lib, str(n)], capture_output=True, text=True).stdout.split()
    before, peak, steady = (int(v) * 1024 for v in out[:3])
    return (peak - before) / n, (steady - before) / n


def sky_memory(exe, device_pixels):
    out = sh([exe, '--memory', str(device_pixels)], capture_output=True, text=True).stdout.split()
    before, peak, steady = (int(v) for v in out[:3])
    return (peak - before) / 1024.0, (steady - before) / 1024.0


def fidelity(exe):
    png = os.path.join(ROOT, 'docs', 'images', 'fidelity.png')
    out = sh([exe, '--fidelity', png], capture_output=True, text=True).stdout.split()
    return tuple(int(v) for v in out[:3])


def machine():
    cpu = ''
    with open('/proc/cpuinfo') as f:
        for line in f:
            if line.startswith('model name'):
                cpu = line.split(':', 1)[1].strip()
                break
    mem = ''
    with open('/proc/meminfo') as f:
        mem = f.readline().split(':', 1)[1].strip()
    qt = subprocess.run(['qmake', '-query', 'QT_VERSION'], capture_output=True,
                        text=True).stdout.strip()
    return (f'{cpu}, {os.cpu_count()} logical cores, {mem} RAM, {platform.system()} '
            f'{platform.release()}, Qt {qt}, offscreen platform, shared machine')


def fmt(v):
    return '-' if v is None else (f'{v:.3g}' if v < 10 else f'{v:.0f}')


def ratio(a, b):
    return '-' if a is None or b is None or b == 0 else f'{a / b:.2f}x'


def sky_section(g, exe):
    first = 'BM_Sky_FirstPaint/ratio:{}/byValue:{}/process_time/real_time'
    step = 'BM_Sky_WindowStep/ratio:{}/byValue:{}'
    mem1, steady1 = sky_memory(exe, 800)
    mem2, steady2 = sky_memory(exe, 1600)
    qcp_first = g('BM_Qcp_SkyFirstPaint')
    qcp_repaint = g('BM_Qcp_SkyRepaint')
    return [
        '## Sky plot: 145 satellites x 86,400 epochs at 1 Hz (bench_sky)', '',
        'A synthetic day seen from 43.9 N (NaN below the horizon, about half of the samples), '
        'a signal-strength value axis. 800 x 800 pixels, and 1600 x 1600 device pixels '
        '(800 x 800 at a device pixel ratio of 2). First paint: registering the tracks and '
        'the paint after it, wall time on the thread pool.', '',
        '| | 800 x 800 | target | 1600 x 1600, ratio 2 | target |', '|---|---|---|---|---|',
        f'| first paint | {fmt(g(first.format(1, 0)))} | < 100 '
        f'| {fmt(g(first.format(2, 0)))} | < 300 |',
        f'| first paint, tracks coloured by value | {fmt(g(first.format(1, 1)))} | - | - | - |',
        f'| re-paint, unchanged | {fmt(g("BM_Sky_Repaint/ratio:1"))} | < 2 '
        f'| {fmt(g("BM_Sky_Repaint/ratio:2"))} | - |',
        f'| time-window step (a quarter day moved by a tenth) + paint '
        f'| {fmt(g(step.format(1, 0)))} | < 30 | {fmt(g(step.format(2, 0)))} | - |',
        f'| the same, tracks coloured by value | {fmt(g(step.format(1, 1)))} | - | - | - |',
        f'| hover query | {fmt(g("BM_Sky_Hover/ratio:1"))} | < 2 '
        f'| {fmt(g("BM_Sky_Hover/ratio:2"))} | - |',
        f'| memory beyond the host\'s buffers, peak (steady), MB | {mem1:.1f} ({steady1:.1f}) '
        f'| < 30 | {mem2:.1f} ({steady2:.1f}) | < 100 |', '',
        '| mapping every track once, one thread | plain read of 24 B/sample | ratio |',
        '|---|---|---|',
        f'| {fmt(g("BM_Sky_MapSteps"))} | {fmt(g("BM_Sky_PlainRead"))} '
        f'| {ratio(g("BM_Sky_MapSteps"), g("BM_Sky_PlainRead"))} |', '',
        '| the same tracks in QCustomPlot (145 QCPCurves over the mapped points) | QCP '
        '| ours | ratio |', '|---|---|---|---|',
        f'| load + first paint | {fmt(qcp_first)} | {fmt(g(first.format(1, 0)))} '
        f'| {ratio(g(first.format(1, 0)), qcp_first)} |',
        f'| re-paint | {fmt(qcp_repaint)} | {fmt(g("BM_Sky_Repaint/ratio:1"))} '
        f'| {ratio(g("BM_Sky_Repaint/ratio:1"), qcp_repaint)} |', '']


def display_table(days):
    """The full day at display sizes, both libraries from the same processes."""
    lines = ['', '## Full GNSS day at display sizes: 145 satellites x 86,400 epochs x 2 Y axes',
             '', 'Public API only (bench_display links the shared library), the host\'s '
             'buffers filled before the view exists, QCustomPlot drawing the same samples '
             '(290 graphs) in the same process. Memory: peak resident size beyond the host\'s '
             'buffers during load, first paint and a wheel step.', '',
             '| view | ratio | load + first paint | QCP | re-paint, unchanged | QCP '
             '| wheel step + paint | QCP | ratio to QCP | memory MB |',
             '|---|---|---|---|---|---|---|---|---|---|']
    for (w, h, r), (d, counters) in days.items():
        wheel = d.get('BM_Ours_Wheel/threads:2')
        lines.append(f'| {w} x {h} | {r} | {fmt(d.get("BM_Ours_LoadPaint"))} '
                     f'| {fmt(d.get("BM_Qcp_LoadPaint"))} | {fmt(d.get("BM_Ours_Repaint"))} '
                     f'| {fmt(d.get("BM_Qcp_Repaint"))} | {fmt(wheel)} '
                     f'| {fmt(d.get("BM_Qcp_Wheel"))} | {ratio(wheel, d.get("BM_Qcp_Wheel"))} '
                     f'| {fmt(counters.get("BM_Ours_LoadPaint:memory_MB"))} |')
    small = days[DISPLAYS[0]][0]
    large = days[DISPLAYS[-1]]
    wheel = small.get('BM_Ours_Wheel/threads:2')
    one = small.get('BM_Ours_Wheel/threads:1')
    lines += ['', '| target (issue 20) | measured | target |', '|---|---|---|',
              f'| 800 x 540: wheel step | {fmt(wheel)} | <= 40 |',
              f'| 800 x 540: re-paint unchanged | {fmt(small.get("BM_Ours_Repaint"))} | <= 1 |',
              f'| 800 x 540: memory MB '
              f'| {fmt(days[DISPLAYS[0]][1].get("BM_Ours_LoadPaint:memory_MB"))} | <= 40 |',
              f'| 1920 x 1080 r2: wheel step | {fmt(large[0].get("BM_Ours_Wheel/threads:2"))} '
              '| <= 300 |',
              f'| 1920 x 1080 r2: re-paint | {fmt(large[0].get("BM_Ours_Repaint"))} | <= 5 |',
              f'| 1920 x 1080 r2: load + first paint | {fmt(large[0].get("BM_Ours_LoadPaint"))} '
              '| <= 1500 |',
              f'| 1920 x 1080 r2: memory MB '
              f'| {fmt(large[1].get("BM_Ours_LoadPaint:memory_MB"))} | <= 200 |',
              f'| 800 x 540: time-zoom step | {fmt(small.get("BM_Ours_TimeZoom"))} '
              f'| <= wheel step ({ratio(small.get("BM_Ours_TimeZoom"), wheel)}) |',
              f'| 800 x 540: pan | {fmt(small.get("BM_Ours_TimePan"))} '
              f'| <= wheel step ({ratio(small.get("BM_Ours_TimePan"), wheel)}) |',
              f'| 800 x 540: 1 to 2 threads | {ratio(one, wheel)} | >= 1.7x |']
    return lines


def main():
    ap = argparse.ArgumentParser()
    ap.add_argument('--build', default=os.path.join(ROOT, 'build-bench'))
    ap.add_argument('--reps', type=int, default=3)
    ap.add_argument('--out', default=os.path.join(ROOT, 'BENCHMARKS.md'))
    ap.add_argument('--skip-build', action='store_true', help='use the built programs as they are')
    args = ap.parse_args()
    ensure_peers()
    if not args.skip_build:
        build(args.build)
    curve = os.path.join(args.build, 'bench', 'bench_curve')
    epoch = os.path.join(args.build, 'bench', 'bench_epoch')
    m = run_bench(curve, args.reps)
    m.update(run_bench(epoch, args.reps))
    sky = os.path.join(args.build, 'bench', 'bench_sky')
    m.update(run_bench(sky, args.reps))
    demo = os.path.join(args.build, 'examples', 'bench_demo')
    m.update(run_bench(demo, args.reps, 'WheelStep/ajac:0|SecondBandBox|ShowOneAndBack'))
    demo_hidpi = run_bench(demo, args.reps, 'WheelStep/ajac:0', ['--window', '1920x1080@2'])
    display = os.path.join(args.build, 'bench', 'bench_display')
    days = {}
    for w, h, r in DISPLAYS:
        counters = {}
        days[(w, h, r)] = (run_bench(display, args.reps, None, ['--display', f'{w}x{h}@{r}'],
                                     counters), counters)
    sh([display, '--mix-picture', os.path.join(ROOT, 'docs', 'images', 'mix-by-count.png')])
    g = lambda name, n=None: m.get(f'{name}/{n}' if n else name)

    lines = ['# Benchmarks', '',
             'Generated by `bench/run_benchmarks.py` from one run; every ratio compares '
             'figures of that same run. Medians of '
             f'{args.reps} repetitions, milliseconds, 800 x 540 image, one curve with pen '
             'width 1.0, NaN samples and three breaks.', '',
             f'Machine: {machine()}.', '',
             '## One curve', '',
             'Load + first paint charges both sides the host\'s work from the same '
             '`std::vector`s: ours fills the axis buffers and publishes them, '
             'QCustomPlot gets its `QVector`s built and `setData`.', '',
             '| N | ours load+paint | QCP | Qwt | ratio to QCP (target <= 1.0 at 1e6 and 1e7) '
             '| ours re-paint | QCP | Qwt | ratio to QCP (target <= 0.05 at 1e7) '
             '| ours wheel+paint | QCP wheel+replot | ratio to QCP '
             '(target <= 0.5 at 1e5, 1e6 and 1e7) | DrawXYCurveToPixmap |',
             '|---|---|---|---|---|---|---|---|---|---|---|---|---|']
    for n in SIZES:
        lines.append('| {:.0e} | {} | {} | {} | {} | {} | {} | {} | {} | {} | {} | {} | {} |'
                     .format(n, fmt(g('BM_Ours_LoadPaint', n)), fmt(g('BM_Qcp_LoadPaint', n)),
                             fmt(g('BM_Qwt_LoadPaint', n)),
                             ratio(g('BM_Ours_LoadPaint', n), g('BM_Qcp_LoadPaint', n)),
                             fmt(g('BM_Ours_Repaint', n)), fmt(g('BM_Qcp_Repaint', n)),
                             fmt(g('BM_Qwt_Repaint', n)),
                             ratio(g('BM_Ours_Repaint', n), g('BM_Qcp_Repaint', n)),
                             fmt(g('BM_Ours_WheelPaint', n)), fmt(g('BM_Qcp_WheelPaint', n)),
                             ratio(g('BM_Ours_WheelPaint', n), g('BM_Qcp_WheelPaint', n)),
                             fmt(g('BM_Ours_Pixmap', n))))
    lines += ['', '## Mapping against the floor', '',
              '| N | plain read of 16 B/sample | Curve_Coord_XY::map | item rebuild (one pass) '
              '| rebuild / read | write + publish an axis |', '|---|---|---|---|---|---|']
    for n in SIZES:
        lines.append('| {:.0e} | {} | {} | {} | {} | {} |'.format(
            n, fmt(g('BM_PlainRead', n)), fmt(g('BM_Map', n)), fmt(g('BM_Ours_Rebuild', n)),
            ratio(g('BM_Ours_Rebuild', n), g('BM_PlainRead', n)), fmt(g('BM_AxisPublish', n))))
    lines += ['', '## Memory beyond the axis buffers (bytes per sample, separate processes)', '',
              '| N | ours peak | ours steady | QCP peak | QCP steady | Qwt peak | Qwt steady |',
              '|---|---|---|---|---|---|---|']
    for n in (1000000, 10000000):
        row = [f'{n:.0e}']
        for lib in ('ours', 'qcp', 'qwt'):
            peak, steady = memory(curve, lib, n)
            row += [f'{peak:.1f}', f'{steady:.1f}']
        lines.append('| ' + ' | '.join(row) + ' |')
    day1 = g('BM_Ours_DayWheel/threads:1')
    day2 = g('BM_Ours_DayWheel/threads:2')
    touched, differing, far = fidelity(curve)
    lines += ['', '(targets: ours <= 8 at peak)', '',
              '## Full GNSS day: 122 satellites x 86,400 epochs x 2 Y axes', '',
              '| | ours | QCP (244 graphs, replot after the range change) | ratio |',
              '|---|---|---|---|',
              f'| one wheel step, 2 threads (target < 60 ms, <= 0.3x) | {fmt(day2)} '
              f'| {fmt(g("BM_Qcp_DayWheel"))} '
              f'| {ratio(day2, g("BM_Qcp_DayWheel"))} |',
              f'| one wheel step, 1 thread | {fmt(day1)} | - | - |',
              f'| speed-up from 1 to 2 threads (target >= 1.6x) | {ratio(day1, day2)} | - | - |',
              f'| resize + paint | {fmt(g("BM_Ours_DayResize"))} | - | - |',
              '', '| time navigation and hover | ours | target |', '|---|---|---|',
              f'| one Ctrl+wheel time-zoom step + paint | {fmt(g("BM_Ours_DayTimeZoom"))} '
              f'| <= one wheel step ({ratio(g("BM_Ours_DayTimeZoom"), day2)}) |',
              f'| quarter-day window panned by a tenth + paint | {fmt(g("BM_Ours_DayTimePan"))} '
              f'| - ({ratio(g("BM_Ours_DayTimePan"), day2)} of a wheel step) |',
              f'| hover query, 145 curves, on the curves | {fmt(g("BM_Ours_DayHover", 240))} '
              '| < 2 |',
              f'| hover query, 145 curves, above them | {fmt(g("BM_Ours_DayHover", 20))} '
              '| < 2 |',
              '| one wheel step, 2 threads, 40 event marks on every curve '
              f'| {fmt(g("BM_Ours_DayWheelMarks/threads:2"))} '
              f'| = one wheel step ({ratio(g("BM_Ours_DayWheelMarks/threads:2"), day2)}) |',
              '| hover move + full paint, marker off '
              f'| {fmt(g("BM_Ours_DayHoverMarker/marker:0"))} | - |',
              '| hover move + full paint, picked-sample marker on, another curve each move '
              f'| {fmt(g("BM_Ours_DayHoverMarker/marker:1"))} | no rebuild of all curves |',
              '| hover move along one curve, marker on, paint of the ring only '
              f'| {fmt(g("BM_Ours_DayHoverAlongCurve"))} | nothing built |',
              ] + display_table(days) + [
              '', '## Demo: synthetic 1 Hz day, 145 curves (bench_demo)', '',
              '| | median | target |', '|---|---|---|',
              f'| 1280 x 800: one wheel step + paint | {fmt(g("BM_WheelStep/ajac:0"))} '
              '| < 40 |',
              f'| 1280 x 800: F 2 box switched on (or off) + paint '
              f'| {fmt(g("BM_SecondBandBox/ajac:0"))} | < 40 |',
              f'| 1280 x 800: Show: one satellite alone, or all again, + paint '
              f'| {fmt(g("BM_ShowOneAndBack/ajac:0"))} | < 40 |',
              f'| 1920 x 1080 at ratio 2: one wheel step + paint '
              f'| {fmt(demo_hidpi.get("BM_WheelStep/ajac:0"))} | < 300 |',
              '', '## Fidelity', '',
              'One curve of 1e6 samples as the live view draws it (alpha-128 pen, the view\'s '
              'fit scale), through the layer and by Qt drawing every point with the same pen: '
              f'of {touched} touched pixels, {100.0 * differing / touched:.1f}% differ at all '
              f'(blend rounding) and {100.0 * far / touched:.2f}% by more than 8 levels. '
              'Side by side (layer left, Qt right): `docs/images/fidelity.png`.', '',
              ] + sky_section(g, sky) + [
              '## Epoch table: 150 satellites x 4 bands x 2,000 gaps', '',
              '| | median | target |', '|---|---|---|',
              f'| setResources | {fmt(g("BM_SetResources"))} | < 50 |',
              f'| full repaint | {fmt(g("BM_FullRepaint"))} | < 30 |',
              f'| PaintAllLabelsToDevice (150 pixmaps) | {fmt(g("BM_PaintAllLabelsToDevice"))} '
              '| - |',
              f'| one drag-to-mark | {fmt(g("BM_DragToMark"))} | - |', '']
    with open(args.out, 'w') as f:
        f.write('\n'.join(lines))
    print(f'wrote {args.out}', file=sys.stderr)


if __name__ == '__main__':
    main()
