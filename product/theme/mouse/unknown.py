"""A mouse that no model describes: the bare form of the symmetrical one in the dark, told by the light along its rim."""

import symmetric
from studio import Material, Softbox, Studio

BOXES = (Softbox((-0.95, 0.25, 0.35), 0.12, 0.9, 0.2, 1.5), Softbox((0.95, 0.45, 0.25), 0.12, 0.9, 0.2, 1.5),
         Softbox((0.10, 1.0, 0.30), 0.9, 0.12, 0.2, 1.2))
STUDIO = Studio(BOXES, ambient=0.10, exposure=0.8)

VEIL = Material((0.010, 0.012, 0.014), 0.9, 0.25, fresnel=0.02, rim=2.5)

shell = symmetric.shell


def draw(scene, accent):
    scene.body(VEIL)
