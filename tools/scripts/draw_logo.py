#!/usr/bin/env python3
"""Draws the logo that marks a picture, 415 x 141 grey values from 27 (ink) to 255 (paper): draw_logo.py [--check]
Writes src/interface/logo_bitmap.inc: pairs of a run's length and its value, in raster order. With --check it only tells,
by its exit status, whether that file is what would be written."""
import math
import pathlib
import sys

WIDTH, HEIGHT, INK, PAPER = 415, 141, 27, 255
LEVELS = 12  # steps from ink to paper at the edge of a stroke: few, so that runs are long

# Strokes of the letters in a box of 1 x 1, from the top left.
LETTERS = {
    'V': [[(0, 0), (.5, 1), (1, 0)]],
    'K': [[(0, 0), (0, 1)], [(1, 0), (0, .6)], [(.3, .42), (1, 1)]],
    'R': [[(0, 1), (0, 0), (.65, 0), (.92, .1), (1, .27), (.92, .44), (.65, .54), (0, .54)], [(.5, .54), (1, 1)]],
    'H': [[(0, 0), (0, 1)], [(1, 0), (1, 1)], [(0, .5), (1, .5)]],
    'D': [[(0, 0), (0, 1), (.5, 1), (.85, .85), (1, .5), (.85, .15), (.5, 0), (0, 0)]],
}


def text_strokes(text, left, top, width, height, gap):
    """Segments (x1, y1, x2, y2, half the width of the stroke, darkness 0..1)."""
    for letter in text:
        for line in LETTERS.get(letter, []):
            for (ax, ay), (bx, by) in zip(line, line[1:]):
                yield left + ax * width, top + ay * height, left + bx * width, top + by * height, 4.5, 1.0
        left += width + gap if letter in LETTERS else gap


def ring_strokes(x, y, radius, half, darkness):
    points = [(x + radius * math.cos(i * math.pi / 24), y + radius * math.sin(i * math.pi / 24)) for i in range(49)]
    for (ax, ay), (bx, by) in zip(points, points[1:]):
        yield ax, ay, bx, by, half, darkness


def distance(px, py, ax, ay, bx, by):
    dx, dy = bx - ax, by - ay
    along = max(0.0, min(1.0, ((px - ax) * dx + (py - ay) * dy) / (dx * dx + dy * dy)))
    return math.hypot(px - ax - along * dx, py - ay - along * dy)


def draw():
    """Three exposures of one disc, and the name."""
    strokes = [s for i, dark in enumerate((1.0, .7, .4)) for s in ring_strokes(46 + 26 * i, 70, 32, 4 - .5 * i, dark)]
    strokes += text_strokes('VKR', 146, 44, 32, 54, 15)
    strokes += text_strokes('HDR', 290, 44, 25, 54, 13)
    image = [[0.0] * WIDTH for _ in range(HEIGHT)]
    for ax, ay, bx, by, half, dark in strokes:
        reach = half + 1
        for y in range(int(min(ay, by) - reach), int(max(ay, by) + reach) + 2):
            for x in range(int(min(ax, bx) - reach), int(max(ax, bx) + reach) + 2):
                cover = max(0.0, min(1.0, half + .5 - distance(x, y, ax, ay, bx, by)))
                image[y][x] = max(image[y][x], dark * cover)
    return [PAPER - round(round(v * LEVELS) * (PAPER - INK) / LEVELS) for row in image for v in row]


def runs(values):
    start = 0
    for i in range(1, len(values) + 1):
        if i == len(values) or values[i] != values[start] or i - start == 255:
            yield i - start, values[start]
            start = i


def to_text(values):
    lines, line = [], ''
    for count, value in runs(values):
        item = f'{count},{value},'
        if len(line) + len(item) > 119:
            lines.append(line)
            line = ''
        line += item
    return '// Written by tools/scripts/draw_logo.py.\n' + '\n'.join(lines + [line]) + '\n'


path = pathlib.Path(__file__).resolve().parents[2] / 'src/interface/logo_bitmap.inc'
text = to_text(draw())
if '--check' in sys.argv[1:]:
    sys.exit(path.read_text() != text)
path.write_text(text)
