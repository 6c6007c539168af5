"""A face of ellipses, of which a face network is as sure as of a photographed one."""

# Front to back, in half heights of the head from its middle: x on both sides, y, half width, half height, colour.
PARTS = (
    (0.3, -0.12, 0.075, 0.075, (40, 25, 20)),  # eyes
    (0.3, -0.12, 0.16, 0.075, (240, 240, 240)),
    (0.3, -0.3, 0.2, 0.05, (60, 40, 30)),  # brows
    (0, 0.2, 0.1, 0.2, (190, 140, 115)),  # nose
    (0, 0.52, 0.28, 0.07, (160, 70, 70)),  # mouth
    (0, 0.05, 0.72, 0.95, (215, 167, 138)),  # skin
    (0, -0.12, 0.82, 1.08, (50, 35, 25)),  # hair
    (0, 1.9, 1.1, 0.9, (60, 60, 80)),  # shoulders
)
WALL = (70, 90, 120)


def box(x, y, half):
    """As one marks a face: from side to side, from above the brows to the chin."""
    return (x - 0.72 * half, y - 0.6 * half, x + 0.72 * half, y + half)


def draw(width, height, face):
    """A picture of width x height squeezed to 320 x 240, R, G, B by rows; face: its x, y and half height, or None."""
    def colour(i, j):
        if face is None:
            return WALL
        x, y = ((i + 0.5) * width / 320 - face[0]) / face[2], ((j + 0.5) * height / 240 - face[1]) / face[2]
        return next((part[4] for part in PARTS
                     if ((abs(x) - part[0]) / part[2]) ** 2 + ((y - part[1]) / part[3]) ** 2 < 1), WALL)

    return [value for j in range(240) for i in range(320) for value in colour(i, j)]
