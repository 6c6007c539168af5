"""Where the frames of a burst lie on each other: homographies by SIFT, and where they show the same thing."""
import cv2
import numpy as np

LONGEST = 2000  # features are looked for at most at this size; their places are fractions of a pixel


def grey(picture):
    return cv2.cvtColor(picture, cv2.COLOR_BGR2GRAY)


def _features(picture):
    image = grey(picture)
    factor = min(1.0, LONGEST / max(image.shape))
    if factor < 1:
        image = cv2.resize(image, None, fx=factor, fy=factor, interpolation=cv2.INTER_AREA)
    image = cv2.createCLAHE(4.0, (8, 8)).apply(image)  # so that dark frames have features too
    points, descriptors = cv2.SIFT_create(6000, contrastThreshold=0.02).detectAndCompute(image, None)
    # Pixel centres: (i + 0.5) / factor - 0.5 of the full picture.
    places = np.array([p.pt for p in points], np.float64).reshape(-1, 2)
    return (places + 0.5) / factor - 0.5, descriptors


def homography(moving, still):
    """3 x 3, takes points of moving to points of still; None when nothing fits. Also the number of inliers."""
    a, da = _features(moving)
    b, db = _features(still)
    if da is None or db is None or len(a) < 8 or len(b) < 8:
        return None, 0
    matches = [m for m, n in cv2.BFMatcher(cv2.NORM_L2).knnMatch(da, db, k=2) if m.distance < 0.75 * n.distance]
    if len(matches) < 12:
        return None, len(matches)
    src = np.float64([a[m.queryIdx] for m in matches])
    dst = np.float64([b[m.trainIdx] for m in matches])
    found, inliers = cv2.findHomography(src, dst, cv2.RANSAC, 2.0, maxIters=10000, confidence=0.9999)
    count = 0 if found is None else int(inliers.sum())
    return (found, count) if count >= 12 else (None, count)


def links(frames):
    """Homographies between neighbours k -> k + 1; None where nothing fits."""
    return [homography(frames[k], frames[k + 1])[0] for k in range(len(frames) - 1)]


def to_frame(neighbours, reference):
    """For each frame the homography to the reference along the chain of neighbours, None beyond a broken link."""
    count = len(neighbours) + 1
    found = [None] * count
    found[reference] = np.eye(3)
    for k in range(reference - 1, -1, -1):
        if found[k + 1] is not None and neighbours[k] is not None:
            found[k] = found[k + 1] @ neighbours[k]
    for k in range(reference + 1, count):
        if found[k - 1] is not None and neighbours[k - 1] is not None:
            found[k] = found[k - 1] @ np.linalg.inv(neighbours[k - 1])
    return found


def shift_of(h, shape):
    """How far h moves the corners of the middle half of the picture, at most."""
    height, width = shape[:2]
    corners = np.float64([[x, y] for x in (width / 4, 3 * width / 4) for y in (height / 4, 3 * height / 4)])
    moved = cv2.perspectiveTransform(corners[None], h)[0]
    return float(np.abs(moved - corners).max())


def warp(picture, h):
    height, width = picture.shape[:2]
    return cv2.warpPerspective(picture, h, (width, height), flags=cv2.INTER_CUBIC, borderMode=cv2.BORDER_REPLICATE)


def covered(h, shape):
    """Where a frame warped by h has pixels of its own."""
    return cv2.warpPerspective(np.full(shape[:2], 255, np.uint8), h, (shape[1], shape[0]), flags=cv2.INTER_NEAREST) > 0


def moving_mask(frames):
    """Where things moved, from frames that lie on each other: neighbours are brought to one brightness by matching
    histograms, what then differs and is neither black nor blown out in either has moved. True: moved."""
    moved = np.zeros(frames[0].shape[:2], bool)
    greys = [grey(f) for f in frames]
    scale = max(1, round(max(moved.shape) / 1000))
    for dark, bright in zip(greys, greys[1:]):
        mapped = _matched(dark, bright)
        a = cv2.blur(np.float32(mapped), (2 * scale + 1, 2 * scale + 1))
        b = cv2.blur(np.float32(bright), (2 * scale + 1, 2 * scale + 1))
        seen = (bright < 245) & (dark > 4)
        # A brightness whose match is steep tells little.
        noise = 8 + 2 * cv2.blur(np.abs(np.float32(bright) - b), (2 * scale + 1, 2 * scale + 1))
        moved |= seen & (np.abs(a - b) > 18 + noise)
    kernel = cv2.getStructuringElement(cv2.MORPH_ELLIPSE, (2 * scale + 1, 2 * scale + 1))
    sure = cv2.morphologyEx(np.uint8(moved), cv2.MORPH_OPEN, kernel)
    wide = cv2.getStructuringElement(cv2.MORPH_ELLIPSE, (16 * scale + 1, 16 * scale + 1))
    return cv2.dilate(cv2.morphologyEx(sure, cv2.MORPH_CLOSE, wide), wide) > 0


def _matched(dark, bright):
    """dark with the histogram of bright."""
    a = np.cumsum(np.bincount(dark.ravel(), minlength=256)) / dark.size
    b = np.cumsum(np.bincount(bright.ravel(), minlength=256)) / bright.size
    return np.interp(a, b, np.arange(256)).astype(np.uint8)[dark]
