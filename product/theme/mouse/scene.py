"""Draws a mouse, part after part, into SVG elements.

The body is cut into facets of about two pixels, each filled with the light that it sends to the camera. A part (a
button, a grip) is facets again, clipped to the part's outline, so that its edge is crisp.
"""

import math

from studio import along, cross, dot, minus, normalized

ROWS, COLUMNS = 150, 170


def path(points, close=True):
    return 'M' + 'L'.join('%.2f %.2f' % p[:2] for p in points) + ('Z' if close else '')


class Scene:
    def __init__(self, shell, camera, studio):
        self.shell, self.camera, self.studio = shell, camera, studio
        self.definitions, self.elements = [], []
        self.ys, self.ss = shell.grid(ROWS, COLUMNS)

    # What the studio says of a place.

    def normal(self, y, s):
        y0, y1 = max(self.shell.tail, y - 0.3), min(self.shell.nose, y + 0.3)
        lengthwise = minus(self.shell.point(y1, s), self.shell.point(y0, s))
        across = minus(self.shell.point(y, min(1, s + 0.004)), self.shell.point(y, max(-1, s - 0.004)))
        return normalized(cross(across, lengthwise))

    def raised(self, place, lift):
        point = self.shell.point(*place)
        return along(point, self.normal(*place), lift) if lift else point

    def lit(self, material, point, normal, open_sky=1.0):
        return self.studio.colour(material, self.camera.turned(normal), self.camera.toward(point), point[2], open_sky)

    def faces_camera(self, place):
        return dot(self.camera.turned(self.normal(*place)), self.camera.toward(self.shell.point(*place))) > 0

    # Elements.

    def add(self, element, *values):
        self.elements.append(element % values)

    def define(self, element, *values):
        """Adds a definition whose id is the first value; gives the id."""
        name = 'd%d' % len(self.definitions)
        self.definitions.append(element % ((name,) + values))
        return name

    def blur(self, millimetres):
        return self.define('<filter id="%s" x="-60%%" y="-60%%" width="220%%" height="220%%">'
                           '<feGaussianBlur stdDeviation="%.2f"/></filter>', millimetres * self.camera.scale)

    def facets(self, facets):
        """Draws (depth, corners, colour) facets, the far ones first. The stroke closes the cracks between them."""
        for _, corners, colour in sorted(facets, key=lambda f: -f[0]):
            self.add('<path d="%s" fill="%s" stroke="%s" stroke-width="1.1"/>', path(corners), colour, colour)

    def surface(self, material, ys, ss, lift=0.0, paint=None):
        """Facets of the body between the places ys x ss. paint(y, s) gives the material place by place."""
        points = [[self.shell.point(y, s) for s in ss] for y in ys]
        last_row, last_column = len(ys) - 1, len(ss) - 1

        def normal_at(i, j):
            lengthwise = minus(points[min(i + 1, last_row)][j], points[max(i - 1, 0)][j])
            across = minus(points[i][min(j + 1, last_column)], points[i][max(j - 1, 0)])
            return normalized(cross(across, lengthwise))

        normals = [[normal_at(i, j) for j in range(len(ss))] for i in range(len(ys))]
        if lift:
            points = [[along(p, n, lift) for p, n in zip(*row)] for row in zip(points, normals)]
        screens = [[self.camera.screen(p) for p in row] for row in points]
        facets = []
        for i in range(last_row):
            for j in range(last_column):
                places = ((i, j), (i, j + 1), (i + 1, j + 1), (i + 1, j))
                a, b, c, d = (screens[m][n] for m, n in places)
                if (c[0] - a[0]) * (d[1] - b[1]) - (c[1] - a[1]) * (d[0] - b[0]) >= 0:
                    continue  # turned away from the camera
                middle = tuple(sum(points[m][n][k] for m, n in places) / 4 for k in range(3))
                normal = normalized(tuple(sum(normals[m][n][k] for m, n in places) for k in range(3)))
                what = paint((ys[i] + ys[i + 1]) / 2, (ss[j] + ss[j + 1]) / 2) if paint else material
                facets.append(((a[2] + c[2]) / 2, (a, b, c, d), self.lit(what, middle, normal)))
        self.facets(facets)

    def body(self, material):
        self.surface(material, self.ys, self.ss)

    def stroke(self, places, colour, width, opacity=1.0, close=False):
        """A line on the body, width in mm. What is turned away from the camera is left out."""
        runs = [[]]
        for place in places + (places[:1] if close else []):
            if self.faces_camera(place):
                runs[-1].append(self.camera.screen(self.shell.point(*place)))
            elif runs[-1]:
                runs.append([])
        for run in runs:
            if len(run) > 1:
                self.add('<path d="%s" fill="none" stroke="%s" stroke-width="%.2f" stroke-opacity="%g" '
                         'stroke-linecap="round" stroke-linejoin="round"/>', path(run, False), colour,
                         width * self.camera.scale, opacity)

    def fill(self, places, colour, opacity=1.0, blur=0.0):
        """A flat shape on the body; blur in mm."""
        extra = 'filter="url(#%s)"' % self.blur(blur) if blur else ''
        self.add('<path d="%s" fill="%s" fill-opacity="%g" %s/>',
                 path([self.camera.screen(self.shell.point(*p)) for p in places]), colour, opacity, extra)

    def part(self, material, places, lift=0.0, gap=0.35, bevel=0.45, paint=None, fine=1):
        """A part with an outline of its own: the gap round it, its face, and an edge that catches the light. Lengths are
        mm; `fine` divides the facets."""
        if gap:
            self.stroke(places, '#050607', 2 * gap, 0.95, True)
        clip = self.define('<clipPath id="%s"><path d="%s"/></clipPath>',
                           path([self.camera.screen(self.raised(p, lift)) for p in places]))
        self.add('<g clip-path="url(#%s)">', clip)
        self.surface(material, self._span(self.ys, [p[0] for p in places], fine),
                     self._span(self.ss, [p[1] for p in places], fine), lift, paint)
        self.add('</g>')
        if bevel:
            self.bevel(material, places, lift, bevel)

    @staticmethod
    def _span(grid, values, fine):
        """The grid's places round the values, each step cut into `fine`."""
        low, high = min(values), max(values)
        first = max(0, max((i for i, g in enumerate(grid) if g <= low), default=0) - 1)
        last = min(len(grid) - 1, min((i for i, g in enumerate(grid) if g >= high), default=len(grid) - 1) + 1)
        cut = [a + (b - a) * k / fine for a, b in zip(grid[first:last], grid[first + 1:last + 1]) for k in range(fine)]
        return cut + [grid[last]]

    def bevel(self, material, places, lift, width):
        """The rounded edge of a part, a short piece at a time, each lit by its own direction."""
        points = [self.raised(p, lift) for p in places]
        middle = tuple(sum(p[k] for p in points) / len(points) for k in range(3))
        for place, a, b in zip(places, points, points[1:] + points[:1]):
            if not self.faces_camera(place):
                continue
            normal = self.normal(*place)
            outward = cross(normalized(minus(b, a)), normal)
            if dot(outward, minus(a, middle)) < 0:
                outward = tuple(-c for c in outward)
            edge = normalized(along(tuple(0.75 * c for c in normal), outward, 0.85))
            p, q = (self.camera.screen(along(end, outward, -width / 2)) for end in (a, b))
            self.add('<path d="M%.2f %.2fL%.2f %.2f" stroke="%s" stroke-width="%.2f" stroke-linecap="round"/>',
                     p[0], p[1], q[0], q[1], self.lit(material, a, edge), width * self.camera.scale)

    def shadow(self, spread, blur, opacity, shift):
        """The body's footprint on the ground, grown by `spread`, shifted and blurred, all in mm."""
        shell = self.shell
        grown = 1.0 + spread / 31.0
        foot = []
        for right in (False, True):
            for y in (reversed(self.ys) if right else self.ys):
                width, crest = shell.section(y, right)[0], shell.crest(y)
                foot.append((crest + (width if right else -width) * grown + shift[0],
                             y * (1.0 + spread / 62.0) + shift[1], 0.0))
        self.add('<path d="%s" fill="#000000" fill-opacity="%g" filter="url(#%s)"/>',
                 path([self.camera.screen(p) for p in foot]), opacity, self.blur(blur))

    def wheel(self, x, y, radius, half_width, rise, tread, flank):
        """A ribbed wheel, its axle across the body; `rise` mm of it stand out of the shell."""
        centre = along(self.shell.point(*self.shell.plan(x, y)), (0.0, 0.0, 1.0), rise - radius)
        # Across the wheel: (place from -1 to 1, share of the radius). Flank, shoulder, tread, shoulder, flank.
        flank_radii = (0.60, 0.66, 0.72, 0.78, 0.84)
        profile = [(-1.0, r) for r in flank_radii]
        profile += [(-0.999, 0.90), (-0.86, 0.965), (-0.5, 1.0), (0.5, 1.0), (0.86, 0.965), (0.999, 0.90)]
        profile += [(1.0, r) for r in reversed(flank_radii)]
        tread_index = len(flank_radii) + 2
        reach, steps = math.acos((radius - rise - 0.5) / radius), 44
        facets = []
        for i in range(steps):
            turns = (-reach + 2 * reach * i / steps, -reach + 2 * reach * (i + 1) / steps)
            turn, rib = sum(turns) / 2, i % 2
            for j, ((x0, r0), (x1, r1)) in enumerate(zip(profile, profile[1:])):
                on_tread = j == tread_index
                sunk = 0.35 if on_tread and not rib else 0.0
                corners = [(centre[0] + place * half_width, centre[1] + (radius * share - sunk) * math.sin(angle),
                            centre[2] + (radius * share - sunk) * math.cos(angle))
                           for angle, place, share in ((turns[0], x0, r0), (turns[0], x1, r1), (turns[1], x1, r1),
                                                       (turns[1], x0, r0))]
                point = tuple(sum(c[k] for c in corners) / 4 for k in range(3))
                if point[2] < self.shell.point(point[1], 0.0)[2] - 0.2:
                    continue  # inside the shell
                tilt = max(-9.0, min(9.0, (r0 - r1) * radius / max((x1 - x0) * half_width, 1e-3)))
                lean = (0.33 if rib else -0.15) if on_tread else 0.0
                normal = normalized((tilt, math.sin(turn + lean), math.cos(turn + lean)))
                if dot(self.camera.turned(normal), self.camera.toward(point)) <= 0:
                    continue
                shade = (0.35 + 0.65 * math.cos(turn) ** 2) * (0.45 if sunk else 1.0)
                screens = [self.camera.screen(c) for c in corners]
                facets.append((self.camera.screen(point)[2], screens,
                               self.lit(tread if on_tread else flank, point, normal, shade)))
        self.facets(facets)

    def mark(self, x, y, half_width, colour, width=0.36, shift=0.0):
        """The maker's mark above a point of the plan; width is that of its strokes as a share of half_width."""
        for corners in (((-12, 16), (-12, -16)), ((12, 16), (12, -16)), ((-12, -5), (-3.5, -5), (3.5, 5), (12, 5))):
            places = []
            for (x0, y0), (x1, y1) in zip(corners, corners[1:]):
                places += [(x0 + (x1 - x0) * k / 8, y0 + (y1 - y0) * k / 8) for k in range(9)]
            self.stroke([self.shell.plan(x + a * half_width / 12, y + shift + b * half_width / 12) for a, b in places],
                        colour[0], width * half_width, colour[1])

    def svg(self, size):
        return ('<svg xmlns="http://www.w3.org/2000/svg" width="%d" height="%d" viewBox="0 0 %d %d">\n<defs>\n%s\n</defs>\n'
                '%s\n</svg>\n' % (size + size + ('\n'.join(self.definitions), '\n'.join(self.elements))))
