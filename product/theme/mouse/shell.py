"""The body of a mouse: sections along its length, each of them two superellipse arcs that meet at the crest."""

import functools
import math

from studio import clamp


class Table:
    """A smooth line through (place, value) points that never overshoots them (monotone cubic)."""

    def __init__(self, *points):
        self.x = [p[0] for p in points]
        self.y = [p[1] for p in points]
        slopes = [(self.y[i + 1] - self.y[i]) / (self.x[i + 1] - self.x[i]) for i in range(len(points) - 1)]
        inner = [2 * a * b / (a + b) if a * b > 0 else 0.0 for a, b in zip(slopes, slopes[1:])]
        self.tangents = [slopes[0]] + inner + [slopes[-1]]

    def __call__(self, place):
        x, y, m = self.x, self.y, self.tangents
        if place <= x[0]:
            return y[0]
        if place >= x[-1]:
            return y[-1]
        i = next(k for k in range(len(x) - 1) if place <= x[k + 1])
        h = x[i + 1] - x[i]
        t = (place - x[i]) / h
        return ((1 + 2 * t) * (1 - t) ** 2 * y[i] + t * (1 - t) ** 2 * h * m[i]
                + t * t * (3 - 2 * t) * y[i + 1] + t * t * (t - 1) * h * m[i + 1])


class Side:
    """One half of the body: width from the crest outward in mm, power of the arc (2 round, 4 boxy), undercut (share of
    the width by which the foot draws in; negative flares)."""

    def __init__(self, width, power, undercut):
        self.width, self.power, self.undercut = width, power, undercut


class Shell:
    """A closed body. A place on it is (y, s): y along the mouse, s from -1 (left foot) over 0 (crest) to 1 (right foot).

    tail, nose: the ends in mm. height, crest: of the crest, over y. power: of the arcs upward, over y.
    width_caps, height_caps: (length, power) of the rounding at tail and nose.
    dent(x, y) adds to the height, scoop(y, s) moves sideways, both in mm.
    """

    def __init__(self, tail, nose, left, right, height, crest, power, width_caps, height_caps, dent, scoop):
        self.tail, self.nose, self.left, self.right = tail, nose, left, right
        self.height, self.crest, self.power = height, crest, power
        self.width_caps, self.height_caps = width_caps, height_caps
        self.dent, self.scoop = dent, scoop
        self.section = functools.lru_cache(maxsize=None)(self._section)

    def _cap(self, y, caps):
        """1 along the body, falling to 0 at its ends."""
        value = 1.0
        for (length, power), inside in zip(caps, (y - self.tail, self.nose - y)):
            if inside < length:
                value *= max(0.0, 1.0 - min(1.0 - inside / length, 1.0) ** power) ** (1.0 / power)
        return value

    def _section(self, y, right):
        side = self.right if right else self.left
        return (side.width(y) * self._cap(y, self.width_caps), side.power(y), side.undercut(y),
                self.height(y) * self._cap(y, self.height_caps), self.power(y), self.crest(y))

    def point(self, y, s):
        width, power, undercut, height, up, crest = self.section(y, s >= 0)
        angle = min(abs(s), 1.0) * math.pi / 2
        across = math.sin(angle) ** (2.0 / power)
        rise = max(0.0, math.cos(angle)) ** (2.0 / up)
        x = crest + math.copysign(width * across * (1.0 - undercut * (1.0 - rise) ** 2), s) + self.scoop(y, s)
        return (x, y, height * rise + self.dent(x, y))

    def plan(self, x, y):
        """The place above a point of the plan."""
        width, power, _, _, _, crest = self.section(y, x >= self.crest(y))
        across = clamp(abs(x - crest) / max(width, 1e-6), 0.0, 1.0)
        return (y, math.copysign(math.asin(across ** (power / 2.0)) / (math.pi / 2), x - crest))

    def at_height(self, y, side, z):
        """The place on that side (-1 left, 1 right) of the section at y where the body is z mm high."""
        low, high = 0.0, 1.0
        for _ in range(24):
            middle = (low + high) / 2
            low, high = (middle, high) if self.point(y, side * middle)[2] > z else (low, middle)
        return (y, side * low)

    def nose_at(self, s, z):
        """The foremost place on the line s that is z mm high."""
        low, high = self.nose - self.height_caps[1][0], self.nose
        for _ in range(24):
            middle = (low + high) / 2
            low, high = (middle, high) if self.point(middle, s)[2] > z else (low, middle)
        return (low, s)

    def grid(self, rows, columns):
        """Places along and across, closer where the body bends: at both ends, and at the crest."""
        middle, half = (self.tail + self.nose) / 2, (self.nose - self.tail) / 2
        ys = [middle - half * math.cos(math.pi * i / rows) for i in range(rows + 1)]
        ts = [-1 + 2 * i / columns for i in range(columns + 1)]
        return ys, [math.copysign(abs(t) ** 1.35, t) for t in ts]
