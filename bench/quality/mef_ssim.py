"""MEF-SSIM: how much of the structure that a bracket shows is in the fused picture (Ma, Zeng and Wang, "Perceptual Quality
Assessment for Multi-Exposure Image Fusion", IEEE Transactions on Image Processing 24, 2015). 1 is all of it.

Around every pixel a window of 11 x 11 (Gaussian, deviation 1.5) is looked at. The window of exposure k less its mean is
c_k s_k: contrast c_k (the norm), structure s_k. The best that a fused picture can show there has the largest contrast and
the mean of the structures, weighted by c_k ** p; p = tan(pi / 2 R), R = |sum of c_k s_k| / sum of c_k, so that where the
exposures agree the strongest counts alone. It is compared with the window of the result as in SSIM, without luminance:
(2 cov + C) / (var + var + C), C = (0.03 255)**2. Three scales, each half of the one above, with the exponents of
multi-scale SSIM's finest three, normalised.

Everything is a sum over covariances of windows, so it is computed by convolutions, no window is ever cut out.
"""
import cv2
import numpy as np

WINDOW = 11
DEVIATION = 1.5
CONSTANT = (0.03 * 255) ** 2
EXPONENTS = np.array([0.0448, 0.2856, 0.3001]) / 0.6305
MOST_P = 10.0  # where the exposures agree exactly p would be infinite


def _blur(picture):
    return cv2.GaussianBlur(picture, (WINDOW, WINDOW), DEVIATION, borderType=cv2.BORDER_REFLECT)


def _inner(picture):
    half = WINDOW // 2
    return picture[half:-half, half:-half]


def _means_and_covariances(frames, result):
    """Of the windows of frames and, last, of the result: covariance (i, j) for i <= j."""
    pictures = [np.float32(f) - 128 for f in [*frames, result]]  # small squares lose less of their fraction
    means = [_blur(p) for p in pictures]
    cov = {}
    for i in range(len(pictures)):
        for j in range(i, len(pictures)):
            cov[i, j] = _blur(pictures[i] * pictures[j]) - means[i] * means[j]
    return cov


def scale_map(frames, result):
    """The index at every pixel whose window lies inside, at one scale. frames, result: H x W, 0 .. 255."""
    count = len(frames)
    cov = _means_and_covariances(frames, result)
    contrast = [np.sqrt(np.maximum(cov[k, k], 0)) for k in range(count)]
    total = np.zeros_like(contrast[0])  # variance of the sum of the windows
    for i in range(count):
        for j in range(i, count):
            total += (1 if i == j else 2) * cov[i, j]
    consistency = np.sqrt(np.maximum(total, 0)) / np.maximum(sum(contrast), 1e-6)
    p = np.minimum(np.tan(np.pi / 2 * np.clip(consistency, 0, 0.999)), MOST_P)
    best = np.maximum.reduce(contrast)
    # Weights are relative to the largest contrast, so that powers stay in range; a / contrast takes a window to its
    # structure.
    weight = [np.power(c / np.maximum(best, 1e-6), p) / np.maximum(c, 1e-6) for c in contrast]
    norm = np.zeros_like(best)
    with_result = np.zeros_like(best)
    for i in range(count):
        with_result += weight[i] * cov[i, count]
        for j in range(i, count):
            norm += (1 if i == j else 2) * weight[i] * weight[j] * cov[i, j]
    norm = np.sqrt(np.maximum(norm, 1e-12))
    # In flat windows rounding is all there is: a structure has length 1, so this bound holds for every true one.
    bound = best * np.sqrt(np.maximum(cov[count, count], 0))
    covariance = np.clip(best * with_result / norm, -bound, bound)
    index = (2 * covariance + CONSTANT) / (best * best + cov[count, count] + CONSTANT)
    return _inner(index)


def _halve(picture):
    return cv2.resize(picture, (picture.shape[1] // 2, picture.shape[0] // 2), interpolation=cv2.INTER_AREA)


def mef_ssim(frames, result, inside=None):
    """The index of a grey result against grey frames (H x W, 0 .. 255). inside: H x W bool, where it is judged; a window
    counts when its centre is inside at that scale."""
    frames = [np.float32(f) for f in frames]
    result = np.float32(result)
    mask = None if inside is None else np.float32(inside)
    value = 1.0
    for scale, exponent in enumerate(EXPONENTS):
        if scale > 0:
            frames, result = [_halve(f) for f in frames], _halve(result)
            mask = None if mask is None else _halve(mask)
        index = scale_map(frames, result)
        if mask is None:
            mean = float(index.mean(dtype=np.float64))
        else:
            chosen = _inner(mask) > 0.999
            mean = float(index[chosen].mean(dtype=np.float64)) if chosen.any() else float('nan')
        value *= max(mean, 0.0) ** exponent
    return value
