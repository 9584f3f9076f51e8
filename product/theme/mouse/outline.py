"""Outlines of the parts of a mouse, as closed lists of places (y, s) on its shell."""

import math


def line(start, end, steps=16):
    """From start to end, the end left out."""
    return [tuple(a + (b - a) * k / steps for a, b in zip(start, end)) for k in range(steps)]


def oval(shell, x, y, half_width, half_length, squareness, steps=48):
    """A rounded shape above a point of the plan; squareness 1 is an ellipse, toward 0 a rectangle."""
    places = []
    for k in range(steps):
        c, s = math.cos(2 * math.pi * k / steps), math.sin(2 * math.pi * k / steps)
        places.append(shell.plan(x + half_width * math.copysign(abs(c) ** squareness, c),
                                 y + half_length * math.copysign(abs(s) ** squareness, s)))
    return places


def rounded(corners, radius, steps=6):
    """A polygon of places with rounded corners; radius is (mm along y, share of s)."""
    bends = []
    for i, corner in enumerate(corners):
        ends = []
        for other in (corners[i - 1], corners[(i + 1) % len(corners)]):
            length = math.hypot((other[0] - corner[0]) / radius[0], (other[1] - corner[1]) / radius[1])
            k = min(1.0, length / 2) / length
            ends.append(tuple(corner[m] + (other[m] - corner[m]) * k for m in (0, 1)))
        for k in range(steps + 1):
            t = k / steps
            bends.append(tuple((1 - t) ** 2 * ends[0][m] + 2 * t * (1 - t) * corner[m] + t * t * ends[1][m]
                               for m in (0, 1)))
    # Straight sides follow the body only when they have points on the way.
    places = []
    for a, b in zip(bends, bends[1:] + bends[:1]):
        places += line(a, b, max(1, int(max(abs(b[0] - a[0]) / 1.5, abs(b[1] - a[1]) / 0.03))))
    return places


def strip(shell, x, half_width, y_rear, z_nose, steps=40):
    """A strip along the mouse: round at y_rear, down over the nose to the height z_nose."""
    y_tip = shell.nose_at(0.05, z_nose)[0]
    left = [(x - half_width, y_tip - (y_tip - y_rear) * k / steps) for k in range(steps + 1)]
    bow = [(x - half_width * math.cos(math.pi * k / 24), y_rear - half_width * math.sin(math.pi * k / 24))
           for k in range(1, 24)]
    right = [(2 * x - a, y) for a, y in reversed(left)]
    return [shell.plan(*p) for p in left + bow + right]


def main_button(shell, side, x_inner, seam, z_side, z_nose, steps=44):
    """A main button: along the spine at x_inner, along seam(t) (y for t from 0 at the spine to 1 at the side), along the
    side at the height z_side(y), and round the nose at the height z_nose."""
    y_corner = shell.nose - 7.5
    y_tip = shell.nose_at(shell.plan(x_inner, y_corner)[1], z_nose)[0]
    inner = [shell.plan(x_inner, y_tip - (y_tip - seam(0.0)) * k / steps) for k in range(steps + 1)]
    s_inner = inner[-1][1]
    s_side = shell.at_height(seam(1.0), side, z_side(seam(1.0)))[1]
    rear = [(seam(k / steps), s_inner + (s_side - s_inner) * k / steps) for k in range(steps + 1)]
    outer = [shell.at_height(y, side, z_side(y))
             for y in [seam(1.0) + (y_corner - seam(1.0)) * k / steps for k in range(steps + 1)]]
    front = []
    for k in range(1, steps + 1):
        t = k / steps
        z = z_side(y_corner) + (z_nose - z_side(y_corner)) * min(1.0, 1.3 * t)
        front.append(shell.nose_at(outer[-1][1] + (inner[0][1] - outer[-1][1]) * t, z))
    return inner + rear + outer + front


def waterline(shell, z):
    """Round the whole body at the height z."""
    ys = shell.grid(80, 2)[0][2:-2]
    return [shell.at_height(y, -1, z) for y in ys] + [shell.at_height(y, 1, z) for y in reversed(ys)]
