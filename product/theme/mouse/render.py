"""Writes the picture of a mouse: render.py MODEL VIEW ACCENT FILE

MODEL is one of the names in MODELS, VIEW one of those in VIEWS, ACCENT the colour of what is lit, as #rrggbb.
"""

import sys

import ergonomic
import symmetric
import unknown
from scene import Scene
from studio import Camera

MODELS = {'symmetric': symmetric, 'ergonomic': ergonomic, 'unknown': unknown}

# Size in px and camera. `portrait` is for the chooser's cards. `page` puts the mouse's buttons under the six number
# discs of the button page, whose places are fixed.
VIEWS = {'portrait': ((284, 360), Camera(yaw=148, pitch=54, distance=380, scale=2.36, centre=(147, 170))),
         'page': ((432, 356), Camera(yaw=118.4, pitch=41.5, distance=420, scale=3.10, centre=(222, 124)))}


def main():
    model, view, accent, file = sys.argv[1:]
    size, camera = VIEWS[view]
    scene = Scene(MODELS[model].shell(), camera, MODELS[model].STUDIO)
    scene.shadow(spread=3, blur=7, opacity=0.55, shift=(4, -3))
    scene.shadow(spread=0, blur=2.2, opacity=0.8, shift=(1, -1))
    MODELS[model].draw(scene, accent)
    with open(file, 'w', encoding='utf-8') as out:
        out.write(scene.svg(size))


if __name__ == '__main__':
    main()
