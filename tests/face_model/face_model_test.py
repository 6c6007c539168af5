"""The face model against the network in it, run by itself: face_model_test.py ROOT TFLITE_LIBRARY

Exit status 77, and one line that says why, where the model cannot be made: without the network's npm package or without
Python's flatbuffers.
"""
import math
import pathlib
import subprocess
import sys
import tempfile
import unittest

from drawn_face import box, draw
from tflite_model import TfLiteModel

TOOL = pathlib.Path(sys.argv[1]) / 'tools' / 'face_model'
WIDTH, HEIGHT, SIDE, CELLS = 320, 240, 192, 48
READINGS = ((192, 144), (144, 192))  # what the picture becomes in the square, lying and standing, in the model's order


def squared(picture, fitted):
    """What the network sees, -1..1: the picture, bilinear, in the middle of black."""
    bars = [(SIDE - size) // 2 for size in fitted]

    def value(x, y, c):
        if not (bars[0] <= x < SIDE - bars[0] and bars[1] <= y < SIDE - bars[1]):
            return -1.0
        u = (x - bars[0] + 0.5) * WIDTH / fitted[0] - 0.5
        v = (y - bars[1] + 0.5) * HEIGHT / fitted[1] - 0.5
        upper = 3 * (int(v) * WIDTH + int(u)) + c
        upper, lower = (picture[i] * (1 - u % 1) + picture[i + 3] * (u % 1) for i in (upper, upper + 3 * WIDTH))
        return (upper * (1 - v % 1) + lower * (v % 1)) / 127.5 - 1

    return [value(x, y, c) for y in range(SIDE) for x in range(SIDE) for c in range(3)]


def decoded(picture, fitted):
    """Of every cell the corners in 0..1 of the picture and the probability, even odds shifted to 0.8."""
    outputs = {shape[2]: values for shape, values in network.run([1, SIDE, SIDE, 3], squared(picture, fitted))}
    for cell in range(CELLS * CELLS):
        dx, dy, width, height = outputs[16][16 * cell:16 * cell + 4]
        x, y = dx + (cell % CELLS + 0.5) * SIDE / CELLS, dy + (cell // CELLS + 0.5) * SIDE / CELLS
        corners = (x - width / 2, y - height / 2, x + width / 2, y + height / 2)
        odds = 4 * math.exp(outputs[1][cell])
        yield [(v - (SIDE - size) / 2) / size for v, size in zip(corners, fitted * 2)], odds / (1 + odds)


def overlap(a, b):
    width, height = (min(a[i + 2], b[i + 2]) - max(a[i], b[i]) for i in (0, 1))
    common = max(0, width) * max(0, height)
    return common / (sum((r[2] - r[0]) * (r[3] - r[1]) for r in (a, b)) - common)


class FaceModelTest(unittest.TestCase):
    def run_model(self, picture):
        boxes, scores = model.run([1, HEIGHT, WIDTH, 3], [(v - 127) / 128 for v in picture])
        self.assertEqual((boxes[0], scores[0]), ([1, 4608, 4], [1, 4608, 2]))
        return [boxes[1][4 * i:4 * i + 4] for i in range(4608)], [scores[1][2 * i:2 * i + 2] for i in range(4608)]

    def test_gives_what_the_network_says_of_both_readings(self):
        picture = draw(320, 240, (190, 110, 40))
        corners, scores = self.run_model(picture)
        want = [pair for fitted in READINGS for pair in decoded(picture, fitted)]
        apart = max(abs(a - b) for got, (wanted, _) in zip(corners, want) for a, b in zip(got, wanted))
        apart_score = max(abs(got[1] - score) + abs(got[0] + got[1] - 1) for got, (_, score) in zip(scores, want))
        print(f'corners at most {apart:.1e} apart, scores {apart_score:.1e}')
        self.assertLess(max(apart, apart_score), 1e-4)

    def test_finds_a_face_in_lying_and_standing_pictures_and_none_on_a_wall(self):
        for first, width, height, face in ((0, 320, 240, (100, 130, 25)), (2304, 480, 640, (200, 240, 80))):
            corners, scores = self.run_model(draw(width, height, face))
            best = max(range(len(scores)), key=lambda i: scores[i][1])
            self.assertGreater(scores[best][1], 0.9)
            self.assertIn(best, range(first, first + 2304))
            found = [v * side for v, side in zip(corners[best], (width, height) * 2)]
            self.assertGreater(overlap(found, box(*face)), 0.7)
        self.assertLess(max(score for _, score in self.run_model(draw(320, 240, None))[1]), 0.8)


def skip(why):
    print(f'SKIPPED: {why}')
    sys.exit(77)


if __name__ == '__main__':
    try:
        sys.path.insert(0, str(TOOL))
        from wrap_network import wrap
    except ModuleNotFoundError as error:
        skip(f'{error}; tools/face_model/make installs it')
    fetch = subprocess.run([TOOL / 'fetch_network'], stdout=subprocess.PIPE, text=True)
    if fetch.returncode == 3:
        skip('the network cannot be fetched')
    fetch.check_returncode()
    file = pathlib.Path(fetch.stdout.strip())
    network = TfLiteModel(sys.argv[2], file)
    with tempfile.NamedTemporaryFile(suffix='.tflite') as made:
        made.write(wrap(file.read_bytes()))
        made.flush()
        model = TfLiteModel(sys.argv[2], made.name)
    unittest.main(argv=sys.argv[:1])
