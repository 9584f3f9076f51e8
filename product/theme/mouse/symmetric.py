"""The light symmetrical mouse: a white shell, waisted, with a dark spine and two keys on the left."""

from outline import main_button, oval, rounded, strip, waterline
from shell import Shell, Side, Table
from studio import Material, Softbox, Studio, bell, smoothstep

BOXES = (Softbox((-0.80, 0.22, 0.60), 0.40, 0.90, 0.22, 1.35), Softbox((0.10, 0.05, 1.0), 0.9, 0.9, 0.7, 0.16),
         Softbox((0.95, 0.50, 0.28), 0.13, 0.9, 0.10, 1.25), Softbox((0.10, 1.0, 0.40), 0.9, 0.13, 0.12, 1.0))
STUDIO = Studio(BOXES, ambient=0.07, exposure=1.45)

WHITE = Material((0.60, 0.63, 0.665), 2.6, 0.24)
PIANO = Material((0.012, 0.014, 0.016), 0.8, 0.10)
KEY = Material((0.035, 0.04, 0.045), 1.0, 0.20)
TREAD = Material((0.03, 0.033, 0.036), 0.6, 0.35)
FLANK = Material((0.02, 0.022, 0.025), 1.3, 0.12)


def finger_groove(x, y):
    return -1.3 * bell(abs(x), 15.5, 8) * smoothstep(8, 38, y)


def shell():
    side = Side(width=Table((-62, 31), (-40, 32), (-22, 31.2), (0, 28.6), (16, 27.8), (36, 28.8), (54, 30), (62, 30)),
                power=Table((-62, 2.3), (-20, 2.5), (20, 3.0), (62, 3.6)),
                undercut=Table((-62, 0.05), (-10, 0.14), (20, 0.2), (62, 0.08)))
    return Shell(tail=-62, nose=62, left=side, right=side,
                 height=Table((-62, 38), (-14, 38.5), (10, 34.5), (35, 25.5), (62, 15.5)),
                 crest=Table((-62, 0), (62, 0)), power=Table((-62, 2.1), (-10, 2.3), (30, 2.6), (62, 3.0)),
                 width_caps=((34, 2.35), (9, 2.6)), height_caps=((46, 2.0), (5, 2.6)),
                 dent=finger_groove, scoop=lambda y, s: 0.0)


def draw(scene, accent):
    body = scene.shell
    scene.body(WHITE)
    scene.stroke(waterline(body, 3.2), '#14181c', 0.45, 0.9, True)
    parting = Table((15, 15.5), (40, 10.5), (62, 7.0))
    for side in (1, -1):
        scene.part(WHITE, main_button(body, side, 4.7 * side, lambda t: 3.5 + 11.5 * t * t, parting, 8.0), lift=0.3)
    scene.part(PIANO, strip(body, 0, 4.2, 4, 8.5), bevel=0.35)
    scene.fill(oval(body, 0, 34, 3.9, 11.5, 0.6), '#020303')
    scene.wheel(0, 34, 12.5, 3.2, 3.3, TREAD, FLANK)
    scene.part(KEY, oval(body, 0, 13, 2.9, 5, 0.55), lift=0.5, gap=0.3, bevel=0.35)
    scene.fill(oval(body, 0, 5, 2.4, 2.4, 1), accent, 0.6, blur=0.8)
    scene.fill(oval(body, 0, 5, 0.8, 0.8, 1), accent)
    for rear, front in ((3, 19), (20.4, 36.5)):
        key = rounded([(rear, -0.80), (front, -0.80), (front, -0.645), (rear, -0.645)], (3, 0.06))
        scene.part(KEY, key, lift=0.9, gap=0.4, bevel=0.5)
    scene.mark(0, -34, 4.2, ('#ffffff', 0.6), shift=-0.35)
    scene.mark(0, -34, 4.2, ('#8a939c', 1.0))
