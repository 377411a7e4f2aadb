#!/usr/bin/env python3
"""Writes the two clouds of the gallery that make_cloud has none of: a furnished room, and a knotted tube.

    make_samples.py room FILE.csv
    make_samples.py knot FILE.xyz
"""
import math
import random
import sys

rng = random.Random(5)


def shade(rgb, low=0.9):
    """A colour with a little grain, as a scanner's camera gives it."""
    light = rng.uniform(low, 1.0)
    return [int(channel * light) for channel in rgb]


def patch(origin, across, along, density, color):
    """Points spread over a parallelogram, coloured by where they lie on it (0 to 1 each way)."""
    size = math.dist((0, 0, 0), across) * math.dist((0, 0, 0), along)
    for _ in range(int(size * density)):
        u, v = rng.random(), rng.random()
        yield [origin[i] + u * across[i] + v * along[i] + rng.gauss(0, 0.0015) for i in range(3)], color(u, v)


def box(low, high, density, rgb):
    """The faces of a box that a scanner above the floor sees: four sides and the top."""
    (x0, y0, z0), (x1, y1, z1) = low, high
    faces = [((x0, y0, z1), (x1 - x0, 0, 0), (0, y1 - y0, 0), 1.0), ((x0, y0, z0), (x1 - x0, 0, 0), (0, 0, z1 - z0), 0.85),
             ((x0, y1, z0), (x1 - x0, 0, 0), (0, 0, z1 - z0), 0.85), ((x0, y0, z0), (0, y1 - y0, 0), (0, 0, z1 - z0), 0.75),
             ((x1, y0, z0), (0, y1 - y0, 0), (0, 0, z1 - z0), 0.75)]
    for origin, across, along, light in faces:
        yield from patch(origin, across, along, density, lambda u, v: shade([c * light for c in rgb]))


def room():
    wide, deep, tall, dense = 6.4, 7.2, 2.7, 2600

    def floor(u, v):
        board = int(u * wide / 0.16)
        return shade([168 + board * 37 % 24, 118 + board * 29 % 18, 74 + board * 13 % 14], 0.94)

    def wall(u, v):
        return shade((226, 219, 204), 0.96) if v > 0.05 else shade((120, 96, 72))

    def back(u, v):
        inside = min(abs(u - 0.30), abs(u - 0.70)) < 0.14 and 0.33 < v < 0.86
        frame = min(abs(u - 0.30), abs(u - 0.70)) < 0.006 or abs(v - 0.6) < 0.01
        if inside:
            return shade((240, 240, 236)) if frame else shade((150 + 40 * v, 190 + 30 * v, 226))
        return wall(u, v)

    def art(u, v):
        return shade([(208, 84, 60), (236, 190, 92), (60, 108, 128)][int(v * 3 + 0.6 * math.sin(u * 7)) % 3])

    yield from patch((0, 0, 0), (wide, 0, 0), (0, deep, 0), dense, floor)
    yield from patch((0, deep, 0), (wide, 0, 0), (0, 0, tall), dense, back)
    yield from patch((0, 0, 0), (wide, 0, 0), (0, 0, tall), dense, wall)
    for x in (0, wide):
        yield from patch((x, 0, 0), (0, deep, 0), (0, 0, tall), dense, wall)
    yield from patch((0, 0, tall), (wide, 0, 0), (0, deep, 0), dense, lambda u, v: shade((236, 234, 228), 0.97))
    yield from patch((0.02, 4.3, 1.2), (0, 1.5, 0), (0, 0, 0.95), 3 * dense, art)
    yield from patch((2.0, 3.6, 0.012), (2.6, 0, 0), (0, 2.2, 0), 2 * dense,
                     lambda u, v: shade((150, 44, 48) if max(abs(u - 0.5), abs(v - 0.5)) < 0.42 else (224, 196, 150)))
    # A sofa, a low table, a cupboard with books, a lamp and a plant.
    for low, high, rgb in [((4.9, 3.5, 0.1), (5.8, 5.9, 0.42), (62, 92, 104)), ((5.8, 3.5, 0.1), (6.15, 5.9, 0.85), (56, 84, 96)),
                           ((4.9, 3.3, 0.1), (6.15, 3.5, 0.6), (56, 84, 96)), ((4.9, 5.9, 0.1), (6.15, 6.1, 0.6), (56, 84, 96)),
                           ((2.8, 4.2, 0.36), (3.8, 5.2, 0.42), (124, 82, 48)), ((0.02, 5.95, 0), (0.45, 7.1, 2.0), (140, 98, 60))]:
        yield from box(low, high, 2 * dense, rgb)
    for x, y in ((2.85, 4.25), (3.75, 4.25), (2.85, 5.15), (3.75, 5.15)):
        yield from box((x - 0.03, y - 0.03, 0), (x + 0.03, y + 0.03, 0.36), 3 * dense, (96, 62, 36))
    for shelf in range(4):
        for book in range(20):
            y, rgb = 6.0 + book * 0.054, rng.choice([(180, 60, 50), (60, 110, 90), (214, 170, 80), (70, 90, 150), (230, 224, 210)])
            yield from patch((0.46, y, 0.15 + shelf * 0.47), (0, 0.045, 0), (0, 0, 0.28 + 0.1 * rng.random()), 4 * dense,
                             lambda u, v: shade(rgb))
    for _ in range(16000):
        a, t = rng.uniform(0, 2 * math.pi), rng.random()
        if rng.random() < 0.25:
            yield (5.6 + 0.025 * math.cos(a), 6.6 + 0.025 * math.sin(a), 1.5 * t), shade((70, 66, 62))
        else:
            radius = 0.27 - 0.1 * t
            yield (5.6 + radius * math.cos(a), 6.6 + radius * math.sin(a), 1.42 + 0.36 * t), shade((250, 224, 168), 0.97)
    for _ in range(14000):
        a, r = rng.uniform(0, 2 * math.pi), rng.random()
        if rng.random() < 0.3:
            yield (1.0 + 0.17 * math.cos(a), 6.7 + 0.17 * math.sin(a), 0.32 * r), shade((196, 116, 80))
        else:
            leaf = int(a * 3.5) / 3.5
            yield ((1.0 + 0.5 * r * math.cos(leaf) + rng.gauss(0, 0.02), 6.7 + 0.45 * r * math.sin(leaf) + rng.gauss(0, 0.02),
                    0.35 + 1.0 * math.sin(2.2 * r) + rng.gauss(0, 0.02)), shade((52, 122, 60), 0.6))


def knot(points=240000):
    def curve(t):
        radius = 2.0 + math.cos(3 * t)
        return radius * math.cos(2 * t), radius * math.sin(2 * t), 1.15 * math.sin(3 * t)

    for _ in range(points):
        t, a = rng.uniform(0, 2 * math.pi), rng.uniform(0, 2 * math.pi)
        here, next_ = curve(t), curve(t + 1e-4)
        along = [(next_[i] - here[i]) * 1e4 for i in range(3)]
        length = math.dist((0, 0, 0), along)
        along = [c / length for c in along]
        flat = math.hypot(along[0], along[1])
        side = (-along[1] / flat, along[0] / flat, 0.0)
        up = [along[1] * side[2] - along[2] * side[1], along[2] * side[0] - along[0] * side[2],
              along[0] * side[1] - along[1] * side[0]]
        place = [here[i] + 0.42 * (math.cos(a) * side[i] + math.sin(a) * up[i]) for i in range(3)]
        band = 0.5 + 0.5 * math.sin(12 * t + 2 * a)
        yield place, [int(c0 + (c1 - c0) * band) for c0, c1 in zip((232, 120, 58), (34, 92, 128))]


def main():
    kind, path = sys.argv[1:]
    with open(path, "w", encoding="ascii") as file:
        if kind == "room":
            file.write("x,y,z,r,g,b\n")
        separator = "," if kind == "room" else " "
        for place, rgb in room() if kind == "room" else knot():
            file.write(separator.join(["%.4f" % c for c in place] + [str(max(0, min(255, c))) for c in rgb]) + "\n")


if __name__ == "__main__":
    main()
