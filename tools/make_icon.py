#!/usr/bin/env python3
"""Draws the object's icon, a ball of points colored by height, and writes it as an uncompressed RGBA TIFF.

Usage: tools/make_icon.py res/Kelvra.tif
"""
import math
import struct
import sys

SIZE = 32
DOT_RADIUS = 1.1  # pixels, at the rim
SAMPLES = 4        # per pixel and axis
RAMP = ((0.16, 0.34, 0.86), (0.10, 0.72, 0.78), (0.40, 0.80, 0.25), (0.98, 0.80, 0.15), (0.92, 0.26, 0.16))


def ramp(value):
    place = min(max(value, 0.0), 0.9999) * (len(RAMP) - 1)
    low, part = RAMP[int(place)], place - int(place)
    high = RAMP[int(place) + 1]
    return tuple(a + (b - a) * part for a, b in zip(low, high))


def dots():
    """Points spread evenly over a ball, far side first, as (depth, x, y, color)."""
    count = 60
    for index in range(count):
        up = 1.0 - (2.0 * index + 1.0) / count
        turn = index * math.pi * (3.0 - math.sqrt(5.0))
        ring = math.sqrt(1.0 - up * up)
        depth = ring * math.cos(turn)
        if depth > -0.15:
            yield depth, SIZE / 2 + 14.2 * ring * math.sin(turn), SIZE / 2 - 14.2 * up, ramp(0.5 + 0.5 * up)


def shade(x, y, ordered):
    """The nearest dot's color at one place, or None."""
    for depth, cx, cy, color in reversed(ordered):
        if (x - cx) ** 2 + (y - cy) ** 2 <= (DOT_RADIUS + 0.8 * depth) ** 2:
            return color
    return None


def draw():
    ordered = sorted(dots())
    pixels = bytearray()
    for row in range(SIZE):
        for column in range(SIZE):
            places = [(column + (i + 0.5) / SAMPLES, row + (j + 0.5) / SAMPLES)
                      for i in range(SAMPLES) for j in range(SAMPLES)]
            hits = [color for color in (shade(x, y, ordered) for x, y in places) if color]
            mean = [sum(channel) / len(hits) for channel in zip(*hits)] if hits else [0.0] * 3
            pixels += bytes(round(255 * value) for value in mean + [len(hits) / len(places)])
    return bytes(pixels)


def tiff(pixels):
    short, long = 3, 4
    tags = 12
    depths_at = 8 + 2 + 12 * tags + 4
    pixels_at = depths_at + 8
    entries = ((256, long, 1, SIZE), (257, long, 1, SIZE), (258, short, 4, depths_at), (259, short, 1, 1),
               (262, short, 1, 2), (273, long, 1, pixels_at), (274, short, 1, 1), (277, short, 1, 4),
               (278, long, 1, SIZE), (279, long, 1, len(pixels)), (284, short, 1, 1),
               (338, short, 1, 2))  # the alpha channel is not multiplied into the colors
    data = struct.pack("<2sHIH", b"II", 42, 8, tags)
    for entry in entries:
        data += struct.pack("<HHII", *entry)
    return data + struct.pack("<I4H", 0, 8, 8, 8, 8) + pixels


if __name__ == "__main__":
    with open(sys.argv[1], "wb") as file:
        file.write(tiff(draw()))
