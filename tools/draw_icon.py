#!/usr/bin/env python3
"""Draws the program's icon: a magnifying lens over a GPU chip, with a spark of light.

Writes the scalable SVG and the PNG sizes of the hicolor icon theme under packaging/icons/hicolor/, from the
one list of shapes below, so that every size shows the same picture. The outputs are committed; the build
never runs this. Needs Pillow (Debian: python3-pil).

    python3 tools/draw_icon.py
"""

import math
import pathlib

from PIL import Image, ImageDraw

ICON_NAME = "org.example.lumenscope"
PNG_SIZES = (16, 24, 32, 48, 64, 128, 256)
CANVAS = 256  # the shapes' coordinate system
SUPERSAMPLE = 8  # PNGs are drawn this much larger, then scaled down, for smooth edges

BACKGROUND = dict(box=(16, 16, 240, 240), radius=52, top="#2b4a7e", bottom="#152645")
LENS = dict(centre=(112, 108), radius=68, ring=18, ring_colour="#eef3fb", glass="#7fd3ff", glass_opacity=0.25)
CHIP = dict(centre=(112, 108), half=30, radius=6, colour="#3ddc97", die_half=14, die_radius=3,
            die_colour="#1f8f62", pin_offsets=(-16, 0, 16), pin_width=8, pin_length=12)
HANDLE = dict(start=(164, 160), grip_start=(182, 178), end=(208, 204), width=26, colour="#eef3fb",
              grip_colour="#ffb547")
GLINT = dict(radius=48, start_degrees=200, end_degrees=250, width=6, colour="#ffffff")
SPARK = dict(centre=(198, 60), outer=26, inner=6, colour="#ffd86b")


def hex_rgb(colour):
    return tuple(int(colour[i:i + 2], 16) for i in (1, 3, 5))


def chip_pins():
    """The chip's pins as (x0, y0, x1, y1) boxes, three on each side."""
    cx, cy = CHIP["centre"]
    half, width, length = CHIP["half"], CHIP["pin_width"], CHIP["pin_length"]
    pins = []
    for offset in CHIP["pin_offsets"]:
        a, b = offset - width / 2, offset + width / 2
        pins.append((cx - half - length, cy + a, cx - half, cy + b))
        pins.append((cx + half, cy + a, cx + half + length, cy + b))
        pins.append((cx + a, cy - half - length, cx + b, cy - half))
        pins.append((cx + a, cy + half, cx + b, cy + half + length))
    return pins


def spark_points():
    """A four-pointed star: points alternate between the outer and the inner radius."""
    cx, cy = SPARK["centre"]
    points = []
    for i in range(8):
        radius = SPARK["outer"] if i % 2 == 0 else SPARK["inner"]
        angle = math.radians(i * 45 - 90)
        points.append((cx + radius * math.cos(angle), cy + radius * math.sin(angle)))
    return points


def glint_end(degrees):
    cx, cy = LENS["centre"]
    angle = math.radians(degrees)
    return cx + GLINT["radius"] * math.cos(angle), cy + GLINT["radius"] * math.sin(angle)


def svg_text():
    x0, y0, x1, y1 = BACKGROUND["box"]
    cx, cy = LENS["centre"]
    half, die = CHIP["half"], CHIP["die_half"]
    gx0, gy0 = glint_end(GLINT["start_degrees"])
    gx1, gy1 = glint_end(GLINT["end_degrees"])
    pins = "".join(
        f'<rect x="{a:g}" y="{b:g}" width="{c - a:g}" height="{d - b:g}" rx="2"/>' for a, b, c, d in chip_pins())
    spark = " ".join(f"{x:.2f},{y:.2f}" for x, y in spark_points())
    hx0, hy0 = HANDLE["start"]
    gsx, gsy = HANDLE["grip_start"]
    hx1, hy1 = HANDLE["end"]
    return f"""<?xml version="1.0" encoding="UTF-8"?>
<!-- Drawn by tools/draw_icon.py; change the script and run it again rather than editing this file. -->
<svg xmlns="http://www.w3.org/2000/svg" width="{CANVAS}" height="{CANVAS}" viewBox="0 0 {CANVAS} {CANVAS}">
  <defs>
    <linearGradient id="background" x1="0" y1="0" x2="0" y2="1">
      <stop offset="0" stop-color="{BACKGROUND['top']}"/>
      <stop offset="1" stop-color="{BACKGROUND['bottom']}"/>
    </linearGradient>
  </defs>
  <rect x="{x0}" y="{y0}" width="{x1 - x0}" height="{y1 - y0}" rx="{BACKGROUND['radius']}" fill="url(#background)"/>
  <line x1="{hx0}" y1="{hy0}" x2="{hx1}" y2="{hy1}" stroke="{HANDLE['colour']}" stroke-width="{HANDLE['width']}" stroke-linecap="round"/>
  <line x1="{gsx}" y1="{gsy}" x2="{hx1}" y2="{hy1}" stroke="{HANDLE['grip_colour']}" stroke-width="{HANDLE['width']}" stroke-linecap="round"/>
  <circle cx="{cx}" cy="{cy}" r="{LENS['radius']}" fill="{LENS['glass']}" fill-opacity="{LENS['glass_opacity']}"/>
  <g fill="{CHIP['colour']}">
    {pins}
    <rect x="{cx - half}" y="{cy - half}" width="{2 * half}" height="{2 * half}" rx="{CHIP['radius']}"/>
  </g>
  <rect x="{cx - die}" y="{cy - die}" width="{2 * die}" height="{2 * die}" rx="{CHIP['die_radius']}" fill="{CHIP['die_colour']}"/>
  <circle cx="{cx}" cy="{cy}" r="{LENS['radius']}" fill="none" stroke="{LENS['ring_colour']}" stroke-width="{LENS['ring']}"/>
  <path d="M {gx0:.2f} {gy0:.2f} A {GLINT['radius']} {GLINT['radius']} 0 0 1 {gx1:.2f} {gy1:.2f}" fill="none" stroke="{GLINT['colour']}" stroke-width="{GLINT['width']}" stroke-linecap="round"/>
  <polygon points="{spark}" fill="{SPARK['colour']}"/>
</svg>
"""


def draw_png(size):
    big = CANVAS * SUPERSAMPLE

    def s(*values):
        return [v * SUPERSAMPLE for v in values]

    image = Image.new("RGBA", (big, big), (0, 0, 0, 0))

    # Background: a vertical gradient cut to the rounded square.
    top, bottom = hex_rgb(BACKGROUND["top"]), hex_rgb(BACKGROUND["bottom"])
    x0, y0, x1, y1 = s(*BACKGROUND["box"])
    gradient = Image.new("RGBA", (big, big))
    gradient_draw = ImageDraw.Draw(gradient)
    for y in range(big):
        t = min(max((y - y0) / (y1 - y0), 0.0), 1.0)
        gradient_draw.line([(0, y), (big, y)], fill=tuple(round(a + (b - a) * t) for a, b in zip(top, bottom)))
    mask = Image.new("L", (big, big), 0)
    ImageDraw.Draw(mask).rounded_rectangle((x0, y0, x1, y1), radius=BACKGROUND["radius"] * SUPERSAMPLE, fill=255)
    image.paste(gradient, (0, 0), mask)

    draw = ImageDraw.Draw(image)

    def round_line(start, end, colour):
        width = HANDLE["width"] * SUPERSAMPLE
        a, b = s(*start), s(*end)
        draw.line([tuple(a), tuple(b)], fill=colour, width=width)
        for x, y in (a, b):
            draw.ellipse((x - width / 2, y - width / 2, x + width / 2, y + width / 2), fill=colour)

    round_line(HANDLE["start"], HANDLE["end"], HANDLE["colour"])
    round_line(HANDLE["grip_start"], HANDLE["end"], HANDLE["grip_colour"])

    cx, cy = s(*LENS["centre"])
    radius = LENS["radius"] * SUPERSAMPLE
    glass = Image.new("RGBA", (big, big), (0, 0, 0, 0))
    glass_colour = hex_rgb(LENS["glass"]) + (round(255 * LENS["glass_opacity"]),)
    ImageDraw.Draw(glass).ellipse((cx - radius, cy - radius, cx + radius, cy + radius), fill=glass_colour)
    image = Image.alpha_composite(image, glass)
    draw = ImageDraw.Draw(image)

    for pin in chip_pins():
        draw.rounded_rectangle(s(*pin), radius=2 * SUPERSAMPLE, fill=CHIP["colour"])
    half, die = CHIP["half"] * SUPERSAMPLE, CHIP["die_half"] * SUPERSAMPLE
    draw.rounded_rectangle((cx - half, cy - half, cx + half, cy + half), radius=CHIP["radius"] * SUPERSAMPLE,
                           fill=CHIP["colour"])
    draw.rounded_rectangle((cx - die, cy - die, cx + die, cy + die), radius=CHIP["die_radius"] * SUPERSAMPLE,
                           fill=CHIP["die_colour"])

    # The ring is stroked on the circle's line, half inside and half outside, as SVG strokes are.
    ring = LENS["ring"] * SUPERSAMPLE
    outer = radius + ring / 2
    draw.ellipse((cx - outer, cy - outer, cx + outer, cy + outer), outline=LENS["ring_colour"], width=ring)

    glint = GLINT["radius"] * SUPERSAMPLE
    glint_width = GLINT["width"] * SUPERSAMPLE
    box = (cx - glint - glint_width / 2, cy - glint - glint_width / 2, cx + glint + glint_width / 2,
           cy + glint + glint_width / 2)
    draw.arc(box, GLINT["start_degrees"], GLINT["end_degrees"], fill=GLINT["colour"], width=glint_width)
    for degrees in (GLINT["start_degrees"], GLINT["end_degrees"]):
        x, y = s(*glint_end(degrees))
        draw.ellipse((x - glint_width / 2, y - glint_width / 2, x + glint_width / 2, y + glint_width / 2),
                     fill=GLINT["colour"])

    draw.polygon([tuple(s(x, y)) for x, y in spark_points()], fill=SPARK["colour"])
    return image.resize((size, size), Image.LANCZOS)


def main():
    root = pathlib.Path(__file__).resolve().parent.parent / "packaging" / "icons" / "hicolor"
    scalable = root / "scalable" / "apps"
    scalable.mkdir(parents=True, exist_ok=True)
    (scalable / f"{ICON_NAME}.svg").write_text(svg_text())
    for size in PNG_SIZES:
        folder = root / f"{size}x{size}" / "apps"
        folder.mkdir(parents=True, exist_ok=True)
        draw_png(size).save(folder / f"{ICON_NAME}.png", optimize=True)


if __name__ == "__main__":
    main()
