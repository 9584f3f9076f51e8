"""The ergonomic mouse for the right hand: a satin black shell that leans to the right, a rubber thumb grip, a lit mark."""

from outline import main_button, oval, rounded, strip, waterline
from shell import Shell, Side, Table
from studio import Material, Softbox, Studio, bell, smoothstep

# A black body is told by what it mirrors, so its lights are narrow and bright.
BOXES = (Softbox((-0.80, 0.10, 0.60), 0.15, 0.9, 0.16, 2.3), Softbox((0.10, 0.05, 1.0), 0.9, 0.9, 0.7, 0.05),
         Softbox((0.95, 0.45, 0.25), 0.12, 0.9, 0.10, 2.0), Softbox((0.10, 1.0, 0.42), 0.9, 0.12, 0.14, 1.5))
STUDIO = Studio(BOXES, ambient=0.12, exposure=1.15)

SATIN = Material((0.016, 0.018, 0.021), 1.0, 0.16, rim=1.6)
PIANO = Material((0.010, 0.011, 0.013), 1.9, 0.08)
RUBBER = Material((0.016, 0.017, 0.019), 0.5, 0.5, rim=1.5)
RIDGE = Material((0.005, 0.005, 0.006), 0.2, 0.5)
KEY = Material((0.05, 0.055, 0.062), 1.2, 0.16, fresnel=0.09)
METAL = Material((0.16, 0.175, 0.19), 1.6, 0.14, fresnel=0.25)
TREAD = Material((0.03, 0.033, 0.036), 0.6, 0.35)

SPINE = -1.5  # x of the spine
GRIP_TOP = Table((-40, -0.70), (-10, -0.64), (20, -0.60), (50, -0.66), (58, -0.70))


def finger_grooves(x, y):
    return -(1.5 * bell(x, -15, 7) + 1.4 * bell(x, 15, 8)) * smoothstep(6, 40, y)


def thumb_rest(y, s):
    return 4.6 * bell(y, 8, 30) * bell(s, -0.80, 0.15) if s < 0 else 0.0


def grip_texture(y, s):
    ridged = (0.55 * y + 34 * s) % 2.2 < 0.8 and s < (-0.71 if y < -14 else -0.80) and -37 < y < 50 and s > -0.945
    return RIDGE if ridged else RUBBER


def shell():
    left = Side(width=Table((-63, 27), (-38, 28.5), (-15, 27.5), (8, 25), (30, 23.5), (50, 24.5), (64, 25)),
                power=Table((-63, 2.3), (-20, 2.7), (20, 3.2), (64, 3.6)),
                undercut=Table((-63, 0.0), (-15, -0.06), (8, -0.12), (35, 0.05), (64, 0.02)))
    right = Side(width=Table((-63, 36), (-38, 38), (-15, 38.5), (10, 35.0), (30, 32.0), (50, 31.5), (64, 31)),
                 power=Table((-63, 1.9), (-20, 1.75), (20, 2.0), (64, 2.7)),
                 undercut=Table((-63, 0.0), (-15, -0.02), (20, 0.08), (64, 0.05)))
    return Shell(tail=-63, nose=64, left=left, right=right,
                 height=Table((-63, 42), (-16, 43), (8, 40), (35, 29), (64, 16)),
                 crest=Table((-63, -2), (-30, -4), (0, -5.5), (30, -4.5), (64, -3)),
                 power=Table((-63, 2.0), (-10, 2.2), (30, 2.4), (64, 2.8)),
                 width_caps=((36, 2.3), (12, 2.4)), height_caps=((48, 2.0), (5, 2.5)),
                 dent=finger_grooves, scoop=thumb_rest)


def draw(scene, accent):
    body = scene.shell
    scene.body(SATIN)
    scene.stroke(waterline(body, 2.6), '#000000', 0.45, 0.9, True)
    ys = [-40 + 96 * k / 60 for k in range(61)]
    edge = [(y, GRIP_TOP(y)) for y in ys]
    scene.part(RUBBER, edge + [(y, -0.965) for y in reversed(ys[4:])], bevel=0, paint=grip_texture, fine=2)
    scene.part(METAL, [(y, s + 0.012) for y, s in edge] + [(y, s + 0.036) for y, s in reversed(edge)], lift=0.25,
               gap=0.2, bevel=0)
    scene.part(SATIN, main_button(body, 1, SPINE + 4.5, lambda t: -3 + 15 * t ** 1.7,
                                  Table((10, 15), (40, 10.5), (64, 7.5)), 8.5), lift=0.3)
    scene.part(SATIN, main_button(body, -1, SPINE - 4.5, lambda t: -3 + 9 * t ** 1.7,
                                  Table((10, 31.5), (30, 25), (50, 15.5), (64, 11)), 8.5), lift=0.3)
    scene.part(PIANO, strip(body, SPINE, 4.0, -3, 9), bevel=0.35)
    scene.fill(oval(body, SPINE, 35, 3.8, 11.5, 0.6), '#020303')
    scene.wheel(SPINE, 35, 12.5, 3.1, 3.5, TREAD, METAL)
    for y in (15, 4.2):
        scene.part(KEY, oval(body, SPINE, y, 2.7, 4.6, 0.55), lift=0.5, gap=0.3, bevel=0.35)
    for rear, front, foot, top in ((1.5, 19, -0.765, -0.66), (20.6, 37.5, -0.76, -0.655)):
        key = rounded([(rear, foot), (front, foot), (front, top), (rear, top)], (4, 0.05))
        scene.part(KEY, key, lift=1.3, gap=0.45, bevel=0.6)
    for width, opacity in ((0.85, 0.10), (0.58, 0.16), (0.38, 1.0)):
        scene.mark(-3.5, -36, 4.4, (accent, opacity), width)
