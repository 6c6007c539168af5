"""What MEF-SSIM does not see, as numbers. Each takes the frames in the geometry of the result."""
import cv2
import numpy as np

CLIPPED = 254


def _lost(frames, picture, inside):
    """Share of clipped samples, in percent, that some frame shows neither black nor clipped."""
    shown = np.zeros(picture.shape[:2], bool)
    for frame in frames:
        shown |= (frame.max(axis=2) < 250) & (frame.max(axis=2) > 40)
    clipped = (picture >= CLIPPED).all(axis=2) | (picture.max(axis=2) <= 1)
    return 100 * float((clipped & shown & inside).sum()) / max(1, int(inside.sum()))


def _hue_error(frames, picture, inside):
    """Mean angle between hues, degrees, over coloured parts, against the best exposed frame of each pixel."""
    best = np.argmin(np.stack([np.abs(np.float32(f.max(axis=2)) - 150) for f in frames]), axis=0)
    shown = np.choose(best[..., None], frames)
    a = cv2.cvtColor(np.ascontiguousarray(shown), cv2.COLOR_BGR2HSV)
    b = cv2.cvtColor(picture, cv2.COLOR_BGR2HSV)
    coloured = inside & (a[..., 1] > 90) & (a[..., 2] > 60) & (shown.max(axis=2) < 245)
    if coloured.sum() < 100:
        return 0.0
    difference = np.abs(np.int32(a[..., 0]) - b[..., 0])
    return 2 * float(np.minimum(difference, 180 - difference)[coloured].mean())


def all_of(burst, picture, reference):
    frames, inside = burst.aligned(reference)
    frames = [f for f in frames if f is not None]
    if burst.group() == 'moving':
        inside = inside & ~burst.moved(reference)
    return {'clipped though a frame shows it, %': _lost(frames, picture, inside),
            'hue error of coloured parts, degrees': _hue_error(frames, picture, inside)}
