#!/usr/bin/env python3
"""The index by convolutions against its definition, window by window, on made-up pictures."""
import sys
import unittest

try:
    import cv2
    import numpy as np
except ImportError:
    print('skipped: no numpy or no OpenCV for Python')
    sys.exit(77)

import mef_ssim as m


def by_definition(frames, result, y, x):
    half = m.WINDOW // 2
    line = cv2.getGaussianKernel(m.WINDOW, m.DEVIATION)
    weights = (line @ line.T).ravel()
    root = np.sqrt(weights)

    def window(picture):
        w = np.float64(picture[y - half:y + half + 1, x - half:x + half + 1]).ravel()
        return root * (w - (weights * w).sum())  # norms of these are weighted deviations

    vectors = [window(f) for f in frames]
    norms = [np.linalg.norm(v) for v in vectors]
    consistency = np.linalg.norm(sum(vectors)) / sum(norms)
    p = min(np.tan(np.pi / 2 * min(consistency, 0.999)), m.MOST_P)
    mean = sum(n ** p * v / n for n, v in zip(norms, vectors))
    best = max(norms) * mean / np.linalg.norm(mean)
    shown = window(result)
    return (2 * best @ shown + m.CONSTANT) / (best @ best + shown @ shown + m.CONSTANT)


class MefSsimTest(unittest.TestCase):
    def setUp(self):
        rng = np.random.default_rng(7)
        light = cv2.GaussianBlur(rng.random((96, 112), np.float32), (0, 0), 2)
        light = (light - light.min()) / (light.max() - light.min())
        noise = rng.normal(0, 4, (4, 96, 112))
        self.frames = [np.clip(255 * light * gain + noise[i], 0, 255) for i, gain in enumerate((0.4, 1.0, 2.5))]
        self.result = np.clip(255 * np.sqrt(light) + noise[3], 0, 255)

    def test_is_the_definition(self):
        got = m.scale_map(self.frames, self.result)
        for y, x in [(5, 5), (5, 42), (20, 24), (34, 11), (34, 42)]:
            self.assertAlmostEqual(by_definition(self.frames, self.result, y, x), got[y - 5, x - 5], delta=2e-3)

    def test_one_frame_shows_itself_whole(self):
        self.assertAlmostEqual(1.0, m.mef_ssim([self.result], self.result), delta=1e-4)

    def test_is_lower_for_a_clipped_result(self):
        whole = m.mef_ssim(self.frames, self.result)
        clipped = m.mef_ssim(self.frames, np.clip(self.result * 3, 0, 255))
        self.assertLess(clipped, whole - 0.05)

    def test_judges_inside_the_mask_alone(self):
        inside = np.zeros((96, 112), bool)
        inside[:, :56] = True
        broken = self.result.copy()
        broken[:, 84:] = 0
        self.assertAlmostEqual(m.mef_ssim(self.frames, self.result, inside),
                               m.mef_ssim(self.frames, broken, inside), delta=1e-6)
        self.assertLess(m.mef_ssim(self.frames, broken), m.mef_ssim(self.frames, self.result) - 0.02)


if __name__ == '__main__':
    unittest.main()
