"""OpenCV's exposure fusion, as its tutorial has it, on frames as they are or aligned with its means."""
import cv2
import numpy as np


def mertens(frames):
    return np.uint8(np.clip(cv2.createMergeMertens().process(frames) * 255 + 0.5, 0, 255))


def _warped(frame, h, like):
    return cv2.warpPerspective(frame, h, (like.shape[1], like.shape[0]), borderMode=cv2.BORDER_REPLICATE)


def orb_aligned(frames, reference):
    still = frames[reference]
    orb = cv2.ORB_create(5000)
    points, descriptors = orb.detectAndCompute(cv2.cvtColor(still, cv2.COLOR_BGR2GRAY), None)
    aligned = []
    for k, frame in enumerate(frames):
        own, own_descriptors = orb.detectAndCompute(cv2.cvtColor(frame, cv2.COLOR_BGR2GRAY), None)
        h = None
        if k != reference and own_descriptors is not None and descriptors is not None:
            matches = cv2.BFMatcher(cv2.NORM_HAMMING, crossCheck=True).match(own_descriptors, descriptors)
            if len(matches) >= 4:
                src = np.float32([own[m.queryIdx].pt for m in matches])
                dst = np.float32([points[m.trainIdx].pt for m in matches])
                h, _ = cv2.findHomography(src, dst, cv2.RANSAC, 3.0)
        aligned.append(frame if h is None else _warped(frame, h, still))
    return aligned


def ecc_aligned(frames, reference):
    """A homography by the enhanced correlation coefficient, on pictures of at most 1000 pixels."""
    still = frames[reference]
    factor = min(1.0, 1000 / max(still.shape[:2]))

    def small(frame):
        return cv2.resize(cv2.cvtColor(frame, cv2.COLOR_BGR2GRAY), None, fx=factor, fy=factor,
                          interpolation=cv2.INTER_AREA)

    aligned = []
    scale = np.diag([factor, factor, 1.0])
    for k, frame in enumerate(frames):
        h = np.eye(3, dtype=np.float32)
        if k != reference:
            try:
                criteria = (cv2.TERM_CRITERIA_EPS | cv2.TERM_CRITERIA_COUNT, 100, 1e-5)
                _, h = cv2.findTransformECC(small(still), small(frame), h, cv2.MOTION_HOMOGRAPHY, criteria, None, 5)
            except cv2.error:
                h = np.eye(3, dtype=np.float32)
        full = np.linalg.inv(scale) @ np.float64(h) @ scale  # takes points of the still frame to points of this one
        aligned.append(frame if k == reference else _warped(frame, np.linalg.inv(full), still))
    return aligned
