"""Camera, lights and materials: what a point of a mouse sends to the camera.

Lengths are millimetres: x to the right of the mouse, y to its nose, z up. The lights stand still before the camera, so
that every view has the same light from the upper left.
"""

import math


def clamp(value, low, high):
    return max(low, min(high, value))


def smoothstep(low, high, value):
    """0 below low, 1 above high, a smooth ramp between."""
    t = clamp((value - low) / (high - low), 0.0, 1.0)
    return t * t * (3.0 - 2.0 * t)


def bell(value, centre, width):
    return math.exp(-((value - centre) / width) ** 2)


def dot(a, b):
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]


def cross(a, b):
    return (a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0])


def minus(a, b):
    return (a[0] - b[0], a[1] - b[1], a[2] - b[2])


def along(a, direction, length):
    return (a[0] + direction[0] * length, a[1] + direction[1] * length, a[2] + direction[2] * length)


def normalized(v):
    length = math.sqrt(dot(v, v)) or 1.0
    return (v[0] / length, v[1] / length, v[2] / length)


class Camera:
    """Looks at `target` from `distance` mm, the mouse turned by `yaw` about z, the camera raised by `pitch` (degrees).

    `scale` is px per mm at the target, which stands at `centre` of the picture.
    """

    target = (0.0, 0.0, 15.0)

    def __init__(self, yaw, pitch, distance, scale, centre):
        self.cos_yaw, self.sin_yaw = math.cos(math.radians(yaw)), math.sin(math.radians(yaw))
        self.cos_pitch, self.sin_pitch = math.cos(math.radians(pitch)), math.sin(math.radians(pitch))
        self.distance, self.scale, self.centre = distance, scale, centre
        self.eye = (0.0, -distance * self.cos_pitch, distance * self.sin_pitch)

    def turned(self, v):
        """A direction of the mouse in the studio's axes: x right, y away from the camera, z up."""
        return (v[0] * self.cos_yaw - v[1] * self.sin_yaw, v[0] * self.sin_yaw + v[1] * self.cos_yaw, v[2])

    def toward(self, point):
        """Unit vector, in the studio's axes, from a point to the camera."""
        return normalized(minus(self.eye, self.turned(minus(point, self.target))))

    def screen(self, point):
        """Place of a point in the picture, in px, and its depth, in mm."""
        q = self.turned(minus(point, self.target))
        up = q[1] * self.sin_pitch + q[2] * self.cos_pitch
        depth = q[1] * self.cos_pitch - q[2] * self.sin_pitch
        k = self.scale * self.distance / (self.distance + depth)
        return (self.centre[0] + q[0] * k, self.centre[1] - up * k, depth)


class Softbox:
    """A rectangular light far away. Half sizes and the width of its soft edge are radians."""

    def __init__(self, direction, width, height, edge, power):
        self.direction = normalized(direction)
        self.right = normalized(cross((0.0, 0.0, 1.0), self.direction))
        self.up = cross(self.direction, self.right)
        self.width, self.height, self.edge, self.power = width, height, edge, power
        self.size = math.sqrt(width * height)

    def mirrored(self, direction, roughness):
        """How much of the box a mirror of that roughness (radians) sees in a direction, 0 to 1."""
        front = dot(direction, self.direction)
        if front <= 0.05:
            return 0.0
        across = abs(math.atan2(dot(direction, self.right), front))
        upward = abs(math.atan2(dot(direction, self.up), front))
        edge = self.edge + roughness
        return ((1 - smoothstep(self.width - edge, self.width + edge, across))
                * (1 - smoothstep(self.height - edge, self.height + edge, upward)))


class Material:
    """albedo: linear red, green, blue; gloss: strength of the mirrored lights; roughness: radians; fresnel: share that
    is mirrored when looked at straight on; rim: light that only grazing sight brings out."""

    def __init__(self, albedo, gloss, roughness, fresnel=0.05, rim=1.0):
        self.albedo, self.gloss, self.roughness = albedo, gloss, roughness
        self.fresnel, self.rim = fresnel, rim


class Studio:
    def __init__(self, boxes, ambient, exposure):
        self.boxes, self.ambient, self.exposure = boxes, ambient, exposure

    def colour(self, material, normal, to_camera, height, open_sky):
        """The colour, as #rrggbb, of a point `height` mm over the ground that sees the share `open_sky` of the lights.
        normal and to_camera stand in the studio's axes."""
        facing = max(0.0, dot(normal, to_camera))
        mirror = minus((2 * facing * normal[0], 2 * facing * normal[1], 2 * facing * normal[2]), to_camera)
        diffuse = self.ambient * (0.675 + 0.325 * normal[2])
        mirrored = 0.0
        for box in self.boxes:
            # Light wraps a little round the edge, as that of a large box does.
            lambert = max(0.0, (dot(normal, box.direction) + 0.12) / 1.12) ** 1.35
            diffuse += 0.75 * box.power * box.size * lambert
            mirrored += box.power * box.mirrored(mirror, material.roughness)
        fresnel = material.fresnel + (1 - material.fresnel) * (1 - facing) ** 5
        shade = open_sky * (0.45 + 0.55 * smoothstep(0.0, 16.0, height))
        sheen = material.gloss * fresnel * mirrored * (0.3 + 0.7 * shade) + 0.10 * material.rim * fresnel * shade
        text = '#'
        for albedo in material.albedo:
            exposed = 1.0 - math.exp(-1.6 * self.exposure * (albedo * diffuse * shade + sheen))
            value = 1.055 * exposed ** (1 / 2.4) - 0.055 if exposed > 0.0031308 else 12.92 * exposed
            text += '%02x' % int(clamp(value, 0.0, 1.0) * 255 + 0.5)
        return text
