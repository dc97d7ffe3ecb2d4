#!/usr/bin/env python3
"""Draws the icons of the main window's actions and docks, the application icon's
PNG renders and the forbidden cursor, and lists the icons in resources/resources.qrc.

    scripts/make-icons.py            # SVGs and the resource list
    scripts/make-icons.py --small-icons  # also the small .ico icons (rsvg-convert, convert)
    scripts/make-icons.py --renders  # also the logo PNGs and small .ico icons (rsvg-convert, convert) and,
                                     # if missing, the cursor

Every icon is drawn on a 24 by 24 grid from the glyphs below: rounded dark grey
strokes, one blue accent, red only on the badges of deleting actions. Each
element is drawn a second time underneath, wider and nearly white, so that the
icons keep an outline on dark palettes; on light palettes that halo vanishes
into the background. Badges (add, delete, edit...) sit in the lower right corner
on a ring of the halo colour that cuts them free from the glyph beneath.
"""

import math
import os
import re
import shutil
import subprocess
import sys
import tempfile

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
ICONS = os.path.join(ROOT, "resources", "icons")

DARK = "#3c3f44"
ACCENT = "#3b74b8"
ACCENT_SOFT = "#a9c4e4"  # the accent at about a third, opaque so overlaps stay clean
DANGER = "#c8413b"
HALO = "#f6f7f8"
HALO_OPACITY = "0.85"
WHITE = "#ffffff"
MUTED = "#979ca3"  # what is hidden or inactive
SW = 1.75  # main stroke width
HW = 1.0  # halo width on each side of a stroke
# Colours of the colour docks, taken from the logo and the splash.
GOLD = "#e9c46a"
TEAL = "#2a9d8f"
RED = "#d9604c"


# ---------------------------------------------------------------------------
# Shapes: (tag, attributes, halo). Attribute names use '_' for '-'.


def _attrs(kw):
    out = {}
    for key, value in kw.items():
        if value is None:
            continue
        if isinstance(value, float):
            value = f"{value:.3f}".rstrip("0").rstrip(".")
        out[key.replace("_", "-")] = str(value)
    return out


def shape(tag, halo=True, stroke=DARK, sw=SW, fill="none", **kw):
    attrs = dict(kw)
    attrs["fill"] = fill
    attrs["stroke"] = stroke
    if stroke != "none":
        attrs["stroke_width"] = sw
        attrs.setdefault("stroke_linecap", "round")
        attrs.setdefault("stroke_linejoin", "round")
    return (tag, _attrs(attrs), halo)


def path(d, **kw):
    return shape("path", d=d, **kw)


def circle(cx, cy, r, **kw):
    return shape("circle", cx=float(cx), cy=float(cy), r=float(r), **kw)


def rect(x, y, w, h, rx=1.5, **kw):
    return shape("rect", x=float(x), y=float(y), width=float(w), height=float(h), rx=float(rx), **kw)


def line(x1, y1, x2, y2, **kw):
    return path(f"M{_n(x1)} {_n(y1)} L{_n(x2)} {_n(y2)}", **kw)


def poly(points, closed=False, **kw):
    d = "M" + " L".join(f"{_n(x)} {_n(y)}" for x, y in points)
    return path(d + (" Z" if closed else ""), **kw)


def _n(v):
    return f"{v:.2f}".rstrip("0").rstrip(".") if isinstance(v, float) else str(v)


def transformed(shapes, transform):
    out = []
    for tag, attrs, halo in shapes:
        attrs = dict(attrs)
        attrs["transform"] = transform + (" " + attrs["transform"] if "transform" in attrs else "")
        out.append((tag, attrs, halo))
    return out


def arrow_head(x, y, angle, size=3.2, **kw):
    """A chevron whose point is at (x, y), pointing along angle (degrees, y down)."""
    a = math.radians(angle)
    pts = []
    for side in (-1, 1):
        b = a + math.pi + side * math.radians(42)
        pts.append((x + size * math.cos(b), y + size * math.sin(b)))
    return poly([pts[0], (x, y), pts[1]], **kw)


def arrow(x1, y1, x2, y2, size=3.2, **kw):
    angle = math.degrees(math.atan2(y2 - y1, x2 - x1))
    return [line(x1, y1, x2, y2, **kw), arrow_head(x2, y2, angle, size, **kw)]


def double_arrow(x1, y1, x2, y2, size=2.8, **kw):
    angle = math.degrees(math.atan2(y2 - y1, x2 - x1))
    return [line(x1, y1, x2, y2, **kw), arrow_head(x2, y2, angle, size, **kw),
            arrow_head(x1, y1, angle + 180, size, **kw)]


def arc_arrow(cx, cy, r, start, end, size=3.0, **kw):
    """An arc from start to end (degrees, clockwise on screen) with a head at end."""
    a0, a1 = math.radians(start), math.radians(end)
    x0, y0 = cx + r * math.cos(a0), cy + r * math.sin(a0)
    x1, y1 = cx + r * math.cos(a1), cy + r * math.sin(a1)
    sweep = (end - start) % 360
    large = 1 if sweep > 180 else 0
    d = f"M{x0:.2f} {y0:.2f} A{r} {r} 0 {large} 1 {x1:.2f} {y1:.2f}"
    tangent = end + 90
    return [path(d, **kw), arrow_head(x1, y1, tangent, size, **kw)]


# ---------------------------------------------------------------------------
# Glyphs: each returns a list of shapes on the 24 grid.


def page():
    return [path("M5 2.75 H14.25 L19 7.5 V19.75 A1.5 1.5 0 0 1 17.5 21.25 H6.5 A1.5 1.5 0 0 1 5 19.75 V4.25 "
                 "A1.5 1.5 0 0 1 6.5 2.75 Z"),
            path("M14.25 2.75 V7.5 H19", fill=ACCENT_SOFT)]


def folder_open():
    return [path("M3 18.5 V5.5 A1 1 0 0 1 4 4.5 H9 L11 6.5 H18 A1 1 0 0 1 19 7.5 V10"),
            path("M3 19.5 L6 10.5 H21.5 L18.5 19.5 Z", fill=ACCENT_SOFT)]


def floppy():
    return [path("M3.5 5 A1.5 1.5 0 0 1 5 3.5 H16.5 L20.5 7.5 V19 A1.5 1.5 0 0 1 19 20.5 H5 "
                 "A1.5 1.5 0 0 1 3.5 19 Z"),
            path("M8 3.5 V8 H15 V3.5"),
            rect(7, 12.5, 10, 8, rx=1, fill=ACCENT)]


def brush(tip=ACCENT):
    """A round brush lying from the upper right to the lower left."""
    upright = [
        path("M10.9 1.6 Q12 0.7 13.1 1.6 L14 8.75 H10 Z", fill=DARK, sw=1.3),
        rect(9, 8.75, 6, 4.25, rx=0.9, fill=HALO, sw=1.5),
        path("M9.25 13 C9 16.75 10.4 19.75 12 22.5 C13.6 19.75 15 16.75 14.75 13 Z", fill=tip, sw=1.5),
    ]
    return transformed(upright, "rotate(45 12 12)")


def layer(y=0.0, fill="none"):
    pts = [(12, 3.5 + y), (21, 8.25 + y), (12, 13 + y), (3, 8.25 + y)]
    return [poly(pts, closed=True, fill=fill)]


def layer_edge(y):
    return [poly([(3, 8.25 + y), (12, 13 + y), (21, 8.25 + y)])]


def layers():
    return layer_edge(8) + layer_edge(4) + layer(fill=ACCENT_SOFT)


def eye(cx=12, cy=12, pupil=ACCENT):
    return [path(f"M{cx - 9.5} {cy} C{cx - 6.5} {cy - 6} {cx + 6.5} {cy - 6} {cx + 9.5} {cy} "
                 f"C{cx + 6.5} {cy + 6} {cx - 6.5} {cy + 6} {cx - 9.5} {cy} Z"),
            circle(cx, cy, 2.9, fill=pupil)]


def lock():
    return [path("M8 10.5 V7.5 A4 4 0 0 1 16 7.5 V10.5"), rect(5, 10.5, 14, 10.5, rx=1.75, fill=ACCENT_SOFT),
            line(12, 14.5, 12, 17)]


def picture():
    return [rect(2.75, 4.25, 18.5, 15.5, rx=1.75),
            poly([(3.25, 17.5), (8.5, 11.75), (12.5, 15.5), (15, 13), (20.75, 18.5)]),
            circle(16, 8.75, 1.9, fill=ACCENT, sw=1.4)]


def star(cx, cy, r, fill=ACCENT, sw=1.5):
    k = r * 0.22
    d = (f"M{cx} {cy - r} C{cx + k} {cy - k} {cx + k} {cy - k} {cx + r} {cy} "
         f"C{cx + k} {cy + k} {cx + k} {cy + k} {cx} {cy + r} "
         f"C{cx - k} {cy + k} {cx - k} {cy + k} {cx - r} {cy} "
         f"C{cx - k} {cy - k} {cx - k} {cy - k} {cx} {cy - r} Z")
    return [path(_round_numbers(d), fill=fill, sw=sw)]


def sparkles():
    return star(10.5, 12, 8.75) + star(18.75, 5.25, 3.0, fill=ACCENT_SOFT, sw=1.25)


def gear(cx=12, cy=12, teeth=7, r_out=9.75, r_in=6.75, hole=3.0, hole_fill=ACCENT_SOFT):
    pts = []
    step = 2 * math.pi / teeth
    for i in range(teeth):
        a = i * step - math.pi / 2
        for da, r in ((-0.27, r_in), (-0.15, r_out), (0.15, r_out), (0.27, r_in)):
            pts.append((cx + r * math.cos(a + da * step), cy + r * math.sin(a + da * step)))
    return [poly([(round(x, 2), round(y, 2)) for x, y in pts], closed=True, sw=1.6),
            circle(cx, cy, hole, fill=hole_fill, sw=1.6)]


def sliders():
    out = []
    for y, x in ((5.5, 15), (12, 8), (18.5, 13.5)):
        out += [line(3, y, x - 2.4, y), line(x + 2.4, y, 21, y), circle(x, y, 2.3, fill=ACCENT_SOFT, sw=1.5)]
    return out


def selection(x=3.5, y=3.5, w=17, h=17, fill="none"):
    return [rect(x, y, w, h, rx=0.5, fill=fill, stroke_dasharray="3 2", stroke_linecap="butt",
                 stroke_linejoin="miter")]


def window(x=2.5, y=4, w=19, h=16):
    return [rect(x, y, w, h, rx=1.75), line(x, y + 4, x + w, y + 4)]


def stamp():
    """The brush engine: the stamp that a brush repeats along the stroke."""
    return [circle(12, 5.75, 3.0, fill=ACCENT_SOFT),
            path("M10.25 8.5 L10.75 12.25 M13.75 8.5 L13.25 12.25"),
            rect(4.25, 12.25, 15.5, 4.5, rx=1.25, fill=ACCENT),
            line(5, 20.25, 19, 20.25)]


def texture():
    waves = []
    for y in (8.0, 12.5, 17.0):
        waves.append(path(f"M4 {y} C7 {y - 2.6} 9 {y + 2.6} 12 {y} S17 {y - 2.6} 20 {y}", stroke=ACCENT, sw=1.5))
    return [rect(2.75, 2.75, 18.5, 18.5, rx=2)] + waves


def paper():
    out = [rect(4.5, 2.75, 15, 18.5, rx=1.25)]
    for x, y in ((8, 7), (12.5, 9), (16, 6.5), (9.5, 12.5), (15, 13.5), (8, 17), (12.5, 17.5), (16.5, 18)):
        out.append(line(x, y, x + 1.2, y - 1.2, stroke=ACCENT, sw=1.3))
    return out


def swatches():
    return [rect(3, 3, 8, 8, rx=1.5, fill=ACCENT), rect(13, 3, 8, 8, rx=1.5, fill=GOLD),
            rect(3, 13, 8, 8, rx=1.5, fill=TEAL), rect(13, 13, 8, 8, rx=1.5)]


def curve_with_points():
    return [path("M3.5 3.5 V20.5 H20.5", sw=1.5),
            path("M6 18 C10 17.5 10 7 19.5 6", stroke=ACCENT, sw=1.6),
            circle(6, 18, 1.8, fill=HALO, sw=1.4), circle(11.2, 12, 1.8, fill=HALO, sw=1.4),
            circle(19.5, 6, 1.8, fill=HALO, sw=1.4)]


def question(color=ACCENT):
    return [circle(12, 12, 9.25),
            path("M9.2 9.6 A2.9 2.9 0 1 1 13.3 12.2 C12.4 12.7 12 13.3 12 14.2 V14.6", stroke=color, sw=2),
            circle(12, 17.6, 1.15, fill=color, stroke="none")]


# ---------------------------------------------------------------------------
# Badges in the lower right corner.

BADGE_R = 5.0


def _badge_symbol(kind):
    """White strokes and fills around (0, 0), within about 3.2 units."""
    w = dict(stroke=WHITE, sw=1.5, halo=False)
    f = dict(stroke="none", fill=WHITE, halo=False)
    if kind == "plus":
        return [path("M-3 0 H3 M0 -3 V3", **w)]
    if kind == "minus":
        return [path("M-3 0 H3", **w)]
    if kind == "x":
        return [path("M-2.2 -2.2 L2.2 2.2 M2.2 -2.2 L-2.2 2.2", **w)]
    if kind == "pencil":
        return [path("M-3 3 L-2.4 0.6 L1.2 -3 L3 -1.2 L-0.6 2.4 Z", **f)]
    if kind == "copy":
        return [path("M-0.9 -3 H-3 V0.9", stroke=WHITE, sw=1.2, halo=False),
                rect(-1.2, -1.2, 4.2, 4.2, rx=0.6, **f)]
    if kind == "reset":
        return [path("M-2.4 -1.2 H0.9 A2.1 2.1 0 0 1 0.9 3 H-1", stroke=WHITE, sw=1.4, halo=False),
                path("M-0.6 -3.4 L-2.8 -1.2 L-0.6 1", stroke=WHITE, sw=1.4, halo=False)]
    if kind == "eye":
        return [path("M-3.4 0 Q0 -4 3.4 0 Q0 4 -3.4 0 Z", **f), circle(0, 0, 1.05, stroke="none", fill=ACCENT, halo=False)]
    if kind == "eyeoff":
        return [path("M-3.4 0 Q0 -4 3.4 0 Q0 4 -3.4 0 Z", **f),
                path("M-3 3 L3 -3", stroke=ACCENT, sw=2.4, halo=False),
                path("M-3 3 L3 -3", stroke=WHITE, sw=1.1, halo=False)]
    if kind in ("lock", "unlock"):
        shackle = "M-1.6 -0.5 V-1.6 A1.6 1.6 0 0 1 1.6 -1.6 V-0.5" if kind == "lock" else \
            "M-1.6 -0.5 V-1.6 A1.6 1.6 0 0 1 1.5 -2.2"
        return [path(shackle, stroke=WHITE, sw=1.1, halo=False), rect(-2.6, -0.6, 5.2, 3.8, rx=0.6, **f)]
    if kind == "import":
        return [path("M0 -3.2 V2.6 M-2.6 0.2 L0 2.8 L2.6 0.2", **w)]
    if kind == "export":
        return [path("M-2.5 2.5 L2.4 -2.4 M-1 -2.6 H2.6 V1", **w)]
    if kind == "sysin":
        return [path("M0 -3.4 V0.9 M-1.9 -1 L0 0.9 L1.9 -1 M-3 3 H3", stroke=WHITE, sw=1.3, halo=False)]
    if kind == "sysout":
        return [path("M0 1.1 V-3.2 M-1.9 -1.3 L0 -3.2 L1.9 -1.3 M-3 3 H3", stroke=WHITE, sw=1.3, halo=False)]
    if kind == "check":
        return [path("M-2.8 0.1 L-0.8 2.1 L2.8 -1.7", **w)]
    if kind == "bolt":
        return [path("M1 -3.6 L-2.6 0.6 H-0.2 L-1 3.6 L2.6 -0.6 H0.2 Z", **f)]
    if kind == "rename":
        return [path("M-2.6 -2.4 H2.6 M0 -2.4 V3", **w)]
    if kind == "sparkle":
        return [path("M0 -3.4 C0.5 -0.5 0.5 -0.5 3.4 0 C0.5 0.5 0.5 0.5 0 3.4 C-0.5 0.5 -0.5 0.5 -3.4 0 "
                     "C-0.5 -0.5 -0.5 -0.5 0 -3.4 Z", **f)]
    if kind == "cog":
        return [circle(0, 0, 1.6, stroke=WHITE, sw=1.3, halo=False),
                path("M0 -3.3 V-2.2 M0 3.3 V2.2 M-3.3 0 H-2.2 M3.3 0 H2.2 M-2.3 -2.3 L-1.6 -1.6 M2.3 2.3 L1.6 1.6 "
                     "M-2.3 2.3 L-1.6 1.6 M2.3 -2.3 L1.6 -1.6", stroke=WHITE, sw=1.2, halo=False)]
    if kind == "right":
        return [path("M-3 0 H2.6 M0.2 -2.4 L2.6 0 L0.2 2.4", **w)]
    if kind == "left":
        return [path("M3 0 H-2.6 M-0.2 -2.4 L-2.6 0 L-0.2 2.4", **w)]
    if kind == "up":
        return [path("M0 3 V-2.6 M-2.4 -0.2 L0 -2.6 L2.4 -0.2", **w)]
    if kind == "down":
        return [path("M0 -3 V2.6 M-2.4 0.2 L0 2.6 L2.4 0.2", **w)]
    raise ValueError(kind)


def badge(kind, color=ACCENT, cx=17.75, cy=17.75):
    ring = [circle(0, 0, BADGE_R, fill=color, stroke=HALO, sw=1.75, halo=False)]
    return transformed(ring + _badge_symbol(kind), f"translate({cx} {cy})")


# ---------------------------------------------------------------------------
# The icons. Each entry: name -> list of shapes. Defined as functions so that the
# table reads as a catalogue.


def _windows_see_through():
    return [path("M9 14.5 H4.5 A1.5 1.5 0 0 1 3 13 V4.5 A1.5 1.5 0 0 1 4.5 3 H14 A1.5 1.5 0 0 1 15.5 4.5 V9"),
            line(3, 6.25, 15.5, 6.25),
            rect(8.5, 9, 12.5, 12, rx=1.5, fill=ACCENT, fill_opacity=0.35),
            line(8.5, 12.25, 21, 12.25)]


def _corners(inset=3.0, size=5.0):
    a, b = inset, 24 - inset
    return [poly([(a, a + size), (a, a), (a + size, a)]), poly([(b - size, a), (b, a), (b, a + size)]),
            poly([(b, b - size), (b, b), (b - size, b)]), poly([(a + size, b), (a, b), (a, b - size)])]


def _flip():
    return [line(12, 2.5, 12, 21.5, stroke=ACCENT, sw=1.5, stroke_dasharray="2.2 2", stroke_linecap="butt"),
            poly([(9.5, 6), (9.5, 19), (2.75, 19)], closed=True),
            poly([(14.5, 6), (14.5, 19), (21.25, 19)], closed=True, fill=ACCENT_SOFT)]


def _undo():
    return [path("M8.5 5.5 L4 10 L8.5 14.5"), path("M4 10 H14.25 A5.25 5.25 0 0 1 14.25 20.5 H9.5")]


def _merge(down):
    top = layer(y=-1.5, fill=ACCENT_SOFT if not down else "none")
    bottom = layer(y=8.5, fill=ACCENT_SOFT if down else "none")
    if down:
        arr = arrow(12, 5.5, 12, 16.5, size=2.6, stroke=ACCENT)
    else:
        arr = arrow(12, 16.5, 12, 5.5, size=2.6, stroke=ACCENT)
    return bottom + top + arr


def _move_layer(up):
    base = [poly([(9.25, 7), (16.5, 12), (9.25, 17), (2, 12)], closed=True, fill=ACCENT_SOFT)]
    if up:
        return base + arrow(20.5, 20.5, 20.5, 3, size=3, stroke=ACCENT)
    return base + arrow(20.5, 3, 20.5, 20.5, size=3, stroke=ACCENT)


def _step_layer(up):
    # Two layers, the one to step to in the accent, a chevron pointing the way.
    upper = layer(y=1.5, fill=ACCENT_SOFT if up else "none")
    lower = layer(y=7.5, fill="none" if up else ACCENT_SOFT)
    return (lower + upper) if up else (upper + lower)


def _brush_radius():
    return [circle(11, 11, 8.25, stroke_dasharray="2.5 2", stroke_linecap="butt"),
            circle(11, 11, 4.25, fill=ACCENT, sw=1.5)]


def _magic_wand():
    return [line(3.5, 20.5, 14, 10, sw=2.5),
            path("M17 3 V5.5 M17 9.5 V12 M12 7.5 H14.5 M19.5 7.5 H22 M13.6 4.1 L14.6 5.1 M20.4 10.9 L19.4 9.9 "
                 "M20.4 4.1 L19.4 5.1", stroke=ACCENT, sw=1.5),
            circle(17, 7.5, 1.3, fill=ACCENT, stroke="none")]


def _eyedropper():
    upright = [rect(9.25, 1.5, 5.5, 5.5, rx=2.5, fill=DARK, sw=1.4),
               rect(7.75, 7, 8.5, 2.5, rx=1, fill=HALO, sw=1.5),
               path("M10 9.5 V17.5 L12 21.5 L14 17.5 V9.5", sw=1.5),
               path("M10.75 14 H13.25 V17.3 L12 19.8 L10.75 17.3 Z", fill=ACCENT, stroke=ACCENT, sw=0.8)]
    return transformed(upright, "rotate(45 12 12)")


def _shapes():
    return [rect(10, 10, 10.75, 10.75, rx=1.25), circle(9, 9, 5.75, fill=ACCENT_SOFT)]


def _text():
    return [path("M5 6 V3.75 H19 V6 M12 3.75 V20.25 M8.75 20.25 H15.25", sw=2)]


def _symmetry():
    left = [path("M10 4.5 C5 4.5 3 8 5.5 11 S8 17.5 3.25 19.5", sw=1.75)]
    right = transformed(left, "matrix(-1 0 0 1 24 0)")
    return [line(12, 2.5, 12, 21.5, stroke=ACCENT, sw=1.5, stroke_dasharray="2.2 2", stroke_linecap="butt")] + \
        left + right + [circle(10, 4.5, 1.3, fill=DARK, stroke="none"), circle(14, 4.5, 1.3, fill=ACCENT, stroke="none")]


def _grid():
    out = [rect(8.75, 8.75, 6.5, 6.5, rx=0, fill=ACCENT_SOFT, stroke="none", halo=False),
           rect(3, 3, 18, 18, rx=1.5)]
    for v in (8.75, 15.25):
        out += [line(v, 3, v, 21, sw=1.5), line(3, v, 21, v, sw=1.5)]
    return out


def _line_tool():
    return [line(5.5, 18.5, 18.5, 5.5), circle(5, 19, 2.25, fill=ACCENT, sw=1.5),
            circle(19, 5, 2.25, fill=ACCENT, sw=1.5)]


def _perspective():
    vx, vy, ground = 12.0, 6.0, 20.5
    out = [line(2.25, vy, 21.75, vy, stroke=ACCENT, sw=1.5)]
    for x in (2.5, 7.25, 16.75, 21.5):
        out.append(line(vx, vy, x, ground, sw=1.4))
    out.append(line(12, vy, 12, ground, sw=1.4))
    for y in (10.5, 14.75):
        t = (y - vy) / (ground - vy)
        out.append(line(vx + (2.5 - vx) * t, y, vx + (21.5 - vx) * t, y, sw=1.4))
    out.append(line(2.5, ground, 21.5, ground, sw=1.4))
    out.append(circle(vx, vy, 1.8, fill=ACCENT, stroke=ACCENT, sw=1))
    return out


def _fill_bucket():
    return [path("M11 3.25 L19.25 11.5 L12.5 18.25 A2 2 0 0 1 9.67 18.25 L3.75 12.33 A2 2 0 0 1 3.75 9.5 Z"),
            path("M4.6 11.5 H19.25 L12.5 18.25 A2 2 0 0 1 9.67 18.25 Z", fill=ACCENT, stroke="none", halo=False),
            path("M5.4 7.85 C2.6 5 5.9 1.7 8.9 4.6", sw=1.5),
            path("M20.25 14.25 C20.25 14.25 18.25 16.75 18.25 18.25 A2 2 0 0 0 22.25 18.25 "
                 "C22.25 16.75 20.25 14.25 20.25 14.25 Z", fill=ACCENT, sw=1.25)]


def _gradient_tool():
    return [rect(3, 3, 18, 18, rx=1.75, fill="url(#fade)"),
            line(7, 17, 17, 7, sw=1.5), circle(7, 17, 2, fill=HALO, sw=1.5),
            circle(17, 7, 2, fill=HALO, sw=1.5)]


FADE = ('<linearGradient id="fade" x1="0" y1="0" x2="1" y2="0">'
        f'<stop offset="0" stop-color="{ACCENT}"/><stop offset="1" stop-color="{ACCENT}" stop-opacity="0"/>'
        '</linearGradient>')


def _comic_strip():
    return [rect(2.75, 3.5, 8, 17, rx=1.25, fill=ACCENT_SOFT), rect(12.75, 3.5, 8.5, 7.5, rx=1.25),
            rect(12.75, 13, 8.5, 7.5, rx=1.25)]


def _pan():
    out = [line(12, 2.75, 12, 21.25), line(2.75, 12, 21.25, 12)]
    out += [arrow_head(12, 2.75, -90, 3), arrow_head(12, 21.25, 90, 3), arrow_head(2.75, 12, 180, 3),
            arrow_head(21.25, 12, 0, 3)]
    out.append(circle(12, 12, 2.2, fill=ACCENT, sw=1.4))
    return out


def _rotate():
    return arc_arrow(12, 12, 8.75, 150, 60, size=3.0) + \
        transformed([rect(8.25, 8.25, 7.5, 7.5, rx=1, fill=ACCENT_SOFT, sw=1.5)], "rotate(20 12 12)")


def _zoom():
    return [circle(10, 10, 6.75, fill=ACCENT_SOFT), line(15, 15, 20.75, 20.75, sw=2.75)]


def _ruler():
    body = [rect(1.25, 8.25, 21.5, 7.5, rx=1.25, fill=ACCENT_SOFT)]
    for i, x in enumerate((4.25, 7.25, 10.25, 13.25, 16.25, 19.25)):
        body.append(line(x, 8.25, x, 11.75 if i % 2 else 10.25, sw=1.3))
    return transformed(body, "rotate(-45 12 12)")


def _mesh():
    """A warped grid with its corner handles."""
    out = [path("M3.5 4 Q12 1.5 20.5 4 Q22.5 12 20.5 20 Q12 22.5 3.5 20 Q1.5 12 3.5 4 Z", fill=ACCENT_SOFT)]
    out += [path("M9 2.9 Q10.75 12 9 21.1", sw=1.4), path("M15 2.9 Q13.25 12 15 21.1", sw=1.4),
            path("M2.7 9.5 Q12 11.25 21.3 9.5", sw=1.4), path("M2.7 14.5 Q12 12.75 21.3 14.5", sw=1.4)]
    out += [circle(x, y, 1.7, fill=ACCENT, stroke="none") for x, y in ((3.5, 4), (20.5, 4), (3.5, 20), (20.5, 20))]
    return out


def _eraser():
    body = [rect(2.5, 7.5, 19, 8, rx=2), path("M9 7.5 V15.5 H4.5 A2 2 0 0 1 2.5 13.5 V9.5 A2 2 0 0 1 4.5 7.5 Z",
                                                fill=ACCENT, stroke=DARK)]
    return transformed(body, "rotate(-40 12 11.5)") + [line(8.5, 21, 20.5, 21, sw=1.5)]


def _exit():
    return [path("M13.5 3.5 H6 A1.5 1.5 0 0 0 4.5 5 V19 A1.5 1.5 0 0 0 6 20.5 H13.5")] + \
        arrow(9.5, 12, 20.5, 12, size=3.2, stroke=ACCENT)


def _canvas_target():
    return [rect(3.5, 5.5, 17, 13, rx=1.25),
            circle(12, 12, 2.6, stroke=ACCENT, sw=1.5),
            path("M12 2.5 V7 M12 17 V21.5 M1.75 12 H6.5 M17.5 12 H22.25", stroke=ACCENT, sw=1.5)]


def _fit_width():
    return [rect(3, 5.5, 18, 13, rx=1.25)] + double_arrow(6.75, 12, 17.25, 12, stroke=ACCENT)


def _fit_height():
    return [rect(5.5, 3, 13, 18, rx=1.25)] + double_arrow(12, 6.75, 12, 17.25, stroke=ACCENT)


def _view_all():
    return _corners(3, 5) + [rect(7.5, 7.5, 9, 9, rx=1, fill=ACCENT_SOFT)]


def _full_screen():
    return _corners(3.5, 5.5) + [line(3.5, 3.5, 9.5, 9.5, stroke=ACCENT), line(20.5, 3.5, 14.5, 9.5, stroke=ACCENT),
                                 line(20.5, 20.5, 14.5, 14.5, stroke=ACCENT), line(3.5, 20.5, 9.5, 14.5, stroke=ACCENT)]


def _layout():
    return [rect(2.5, 8, 6, 12, rx=0, fill=ACCENT_SOFT, stroke="none", halo=False)] + window() + \
        [line(8.5, 8, 8.5, 20)]


def _crop():
    return [rect(7.5, 7.5, 9, 9, rx=0, fill=ACCENT_SOFT, stroke="none", halo=False),
            path("M6.5 2.5 V17.5 H21.5"), path("M2.5 6.5 H17.5 V21.5")]


def _printer():
    return [path("M7 8 V3.5 H17 V8"),
            path("M7 17 H4.5 A1.5 1.5 0 0 1 3 15.5 V9.5 A1.5 1.5 0 0 1 4.5 8 H19.5 A1.5 1.5 0 0 1 21 9.5 "
                 "V15.5 A1.5 1.5 0 0 1 19.5 17 H17"),
            rect(7, 13.5, 10, 7.5, rx=0.5, fill=ACCENT_SOFT),
            circle(17.75, 11.25, 1.1, fill=ACCENT, stroke="none")]


def _histogram():
    out = [path("M3.25 3 V20.75 H21")]
    for x, top in ((7, 15), (10.5, 7.5), (14, 11), (17.5, 14.5)):
        out.append(line(x, 18.5, x, top, stroke=ACCENT, sw=2.25))
    return out


def _info():
    return [circle(12, 12, 9.25), circle(12, 7.6, 1.25, fill=ACCENT, stroke="none"),
            line(12, 11, 12, 17, stroke=ACCENT, sw=2)]


def _globe():
    return [circle(12, 12, 9.25), path("M12 2.75 C7.5 7 7.5 17 12 21.25 C16.5 17 16.5 7 12 2.75 Z",
                                       stroke=ACCENT, sw=1.5),
            line(2.75, 12, 21.25, 12, sw=1.5)]


def _envelope():
    return [rect(2.75, 5.25, 18.5, 13.5, rx=1.75), poly([(3.5, 6.5), (12, 13), (20.5, 6.5)], stroke=ACCENT)]


def _download():
    return [path("M3.5 14.5 V18.5 A2 2 0 0 0 5.5 20.5 H18.5 A2 2 0 0 0 20.5 18.5 V14.5")] + \
        arrow(12, 3, 12, 15, size=3.5, stroke=ACCENT)


def _restart():
    return arc_arrow(12, 12.5, 8.5, -55, 235, size=3.0) + [line(12, 2.75, 12, 10.5, stroke=ACCENT, sw=2)]


def _timeline():
    out = [line(2.75, 15.5, 21.25, 15.5)]
    for x in (5, 17):
        out.append(poly([(x, 12.75), (x + 2.75, 15.5), (x, 18.25), (x - 2.75, 15.5)], closed=True, fill=DARK, sw=1.2))
    out += [line(10, 6.5, 10, 21.25, stroke=ACCENT, sw=1.75),
            poly([(7, 3), (13, 3), (13, 5.5), (10, 7.75), (7, 5.5)], closed=True, fill=ACCENT, stroke=ACCENT,
                 sw=1.25)]
    return out


def _color_converter():
    return [rect(2.75, 2.75, 9, 9, rx=1.5, fill=ACCENT), rect(12.25, 12.25, 9, 9, rx=1.5, fill=GOLD),
            path("M14.5 4.5 H16.75 A2.5 2.5 0 0 1 19.25 7 V9.25", sw=1.6),
            arrow_head(19.25, 9.5, 90, 2.6, sw=1.6),
            path("M9.5 19.5 H7.25 A2.5 2.5 0 0 1 4.75 17 V14.75", sw=1.6),
            arrow_head(4.75, 14.5, -90, 2.6, sw=1.6)]


def _image_to_path():
    out = []
    for x, y in ((3, 17.5), (6, 17.5), (6, 14.5), (3, 14.5)):
        out.append(rect(x, y, 3, 3, rx=0, fill=DARK if (x + y) % 2 else ACCENT_SOFT, stroke="none"))
    out += [path("M8.5 16 C13 16 10.5 6 19.5 5", stroke=ACCENT, sw=1.6),
            line(12, 11, 15, 7.5, sw=1.2), circle(15, 7.5, 1.4, fill=HALO, sw=1.3),
            rect(17.5, 3, 4, 4, rx=0.5, fill=HALO, sw=1.4), rect(6.5, 14, 4, 4, rx=0.5, fill=HALO, sw=1.4)]
    return out


def _history():
    return arc_arrow(12.5, 12, 8.5, 175, 150, size=3.0) + \
        [path("M12.5 7 V12 L16 14.5", stroke=ACCENT, sw=1.75)]


def _brush_presets():
    out = []
    for (x, y), r in zip(((2.5, 2.5), (13.5, 2.5), (2.5, 13.5), (13.5, 13.5)), (1.3, 2.1, 2.8, 3.4)):
        out += [rect(x, y, 8, 8, rx=1.75, sw=1.5), circle(x + 4, y + 4, r, fill=ACCENT, stroke="none")]
    return out


def _navigator():
    return [rect(2.75, 4.25, 18.5, 15.5, rx=1.75),
            poly([(3.25, 17.5), (8.5, 11.75), (12.5, 15.5), (15, 13), (20.75, 18.5)], sw=1.5),
            rect(10.5, 7, 7.5, 6, rx=0.75, stroke=ACCENT, sw=1.6)]


def _gradient_bar():
    return [rect(2.75, 4.75, 18.5, 8.5, rx=1.5, fill="url(#fade)"),
            poly([(5, 15.5), (7.5, 19.5), (2.5, 19.5)], closed=True, fill=ACCENT, sw=1.3),
            poly([(12, 15.5), (14.5, 19.5), (9.5, 19.5)], closed=True, fill=HALO, sw=1.3),
            poly([(19, 15.5), (21.5, 19.5), (16.5, 19.5)], closed=True, fill=HALO, sw=1.3)]


def _colour_wheel():
    colours = [RED, GOLD, "#7fb35a", TEAL, ACCENT, "#8b5fb0"]
    out = []
    r_out, r_in = 9.25, 3.75
    for i, colour in enumerate(colours):
        a0, a1 = math.radians(i * 60 - 90), math.radians((i + 1) * 60 - 90)
        p = lambda a, r: f"{12 + r * math.cos(a):.2f} {12 + r * math.sin(a):.2f}"
        d = f"M{p(a0, r_in)} L{p(a0, r_out)} A{r_out} {r_out} 0 0 1 {p(a1, r_out)} L{p(a1, r_in)} " \
            f"A{r_in} {r_in} 0 0 0 {p(a0, r_in)} Z"
        out.append(path(d, fill=colour, stroke="none", halo=False))
    out += [circle(12, 12, r_out), circle(12, 12, r_in, sw=1.5)]
    return out


def _palette():
    return [path("M12 2.75 C6.5 2.75 2.75 7 2.75 12 C2.75 17.25 6.75 21.25 11.75 21.25 C13.6 21.25 14.1 19.9 "
                 "13.6 18.4 C13.1 16.8 14 15.25 15.75 15.25 H18 C20 15.25 21.25 13.75 21.25 11.5 "
                 "C21.25 6.5 17.25 2.75 12 2.75 Z"),
            circle(7.5, 9.5, 1.7, fill=RED, stroke="none"), circle(11.75, 6.75, 1.7, fill=GOLD, stroke="none"),
            circle(16.25, 8.75, 1.7, fill=ACCENT, stroke="none"), circle(7.5, 15, 1.7, fill=TEAL, stroke="none")]


def _apply_effect():
    return layer(y=7.25, fill=ACCENT_SOFT) + star(12, 7.5, 6.25)


def flat_layer(cy, fill="none", stroke=DARK):
    return [poly([(12, cy - 3.25), (21, cy), (12, cy + 3.25), (3, cy)], closed=True, fill=fill, stroke=stroke)]


def _layers_except():
    return flat_layer(5, stroke=MUTED) + flat_layer(12, fill=ACCENT) + flat_layer(19, stroke=MUTED)


def _empty_layers():
    return layer_edge(8) + layer_edge(4) + layer()


def _sort():
    return arrow(5.5, 3.5, 5.5, 20.5, size=3, stroke=ACCENT) + \
        [line(10.5, 5.5, 20.5, 5.5), line(10.5, 12, 18, 12), line(10.5, 18.5, 15, 18.5)]


def _fill_selection():
    return selection(fill=ACCENT_SOFT)


def _stroke_selection():
    return [rect(3, 3, 18, 18, rx=1.5, stroke=ACCENT, sw=2.5)] + selection(7, 7, 10, 10)


def _invert_selection():
    return [path("M3 3 H21 V21 H3 Z M12 6.5 A5.5 5.5 0 1 0 12 17.5 A5.5 5.5 0 1 0 12 6.5 Z", fill=ACCENT_SOFT,
                 stroke="none", fill_rule="evenodd", halo=False),
            rect(3, 3, 18, 18, rx=0.5, stroke_dasharray="3 2", stroke_linecap="butt"),
            circle(12, 12, 5.5, stroke_dasharray="2.4 1.9", stroke_linecap="butt")]


def _select_all():
    out = selection(4.5, 4.5, 15, 15)
    for x, y in ((2.5, 2.5), (19, 2.5), (2.5, 19), (19, 19)):
        out.append(rect(x, y, 2.5, 2.5, rx=0.4, fill=ACCENT, sw=1.2))
    return out


def _paste():
    return [path("M8 4.5 H6.5 A1.5 1.5 0 0 0 5 6 V19.75 A1.5 1.5 0 0 0 6.5 21.25 H17.5 A1.5 1.5 0 0 0 19 19.75 "
                 "V6 A1.5 1.5 0 0 0 17.5 4.5 H16"),
            rect(8, 2.75, 8, 4, rx=1, fill=ACCENT),
            line(8.5, 11, 15.5, 11, sw=1.5), line(8.5, 14.5, 15.5, 14.5, sw=1.5), line(8.5, 18, 13, 18, sw=1.5)]


def _copy():
    return [path("M8.5 16.5 H5 A1.5 1.5 0 0 1 3.5 15 V4.5 A1.5 1.5 0 0 1 5 3 H13.5 A1.5 1.5 0 0 1 15 4.5 V7.5"),
            rect(8.5, 7.5, 12, 13.5, rx=1.5, fill=ACCENT_SOFT)]


def _scissors():
    return [line(8.9, 15.2, 17.5, 3.25), line(15.1, 15.2, 6.5, 3.25),
            circle(6.75, 17.5, 3.0, stroke=ACCENT), circle(17.25, 17.5, 3.0, stroke=ACCENT),
            circle(12, 11.25, 0.9, fill=DARK, stroke="none")]


ACTIONS = {
    "actionFileOpen": lambda: folder_open(),
    "actionFileSave": lambda: floppy(),
    "actionFileSaveAs": lambda: floppy() + badge("pencil"),
    "actionFileNew": lambda: page() + badge("plus"),
    "actionFileExit": _exit,
    "actionResetCanvasPosition": _canvas_target,
    "actionAdjustToWidth": _fit_width,
    "actionAdjustToHeight": _fit_height,
    "actionViewAllCanvas": _view_all,
    "actionWindowTransparency": _windows_see_through,
    "actionIncreaseWindowTransparency": lambda: _windows_see_through() + badge("plus"),
    "actionDecreaseWindowTransparency": lambda: _windows_see_through() + badge("minus"),
    "actionUndo": _undo,
    "actionRedo": lambda: transformed(_undo(), "matrix(-1 0 0 1 24 0)"),
    "actionExportAsImage": lambda: picture() + badge("export"),
    "actionEditShader": lambda: sparkles() + badge("pencil"),
    "actionEditSettings": lambda: gear(),
    "actionBrushTool": lambda: brush(),
    "actionSelectionTool": lambda: selection(),
    "actionColorPickerTool": _eyedropper,
    "actionShapeTool": _shapes,
    "actionTextTool": _text,
    "actionSymmetryTool": _symmetry,
    "actionGridTool": _grid,
    "actionLineTool": _line_tool,
    "actionImageTool": lambda: picture(),
    "actionFillSelection": _fill_selection,
    "actionStrokeSelection": _stroke_selection,
    "actionResetSelection": lambda: selection() + badge("x"),
    "actionInvertSelection": _invert_selection,
    "actionResetBrushSettings": lambda: sliders() + badge("reset"),
    "actionSortBrushes": _sort,
    "actionLockBrushControlPoints": lambda: curve_with_points() + badge("lock"),
    "actionNewLayer": lambda: layers() + badge("plus", cy=6.25),
    "actionEditLayer": lambda: layers() + badge("pencil"),
    "actionRemoveLayer": lambda: layers() + badge("x", DANGER),
    "actionDuplicateLayer": lambda: layers() + badge("copy"),
    "actionShowLayer": lambda: eye(),
    "actionLockLayer": lambda: lock(),
    "actionShowAllLayers": lambda: layers() + badge("eye"),
    "actionHideAllLayers": lambda: layers() + badge("eyeoff"),
    "actionLockAllLayers": lambda: layers() + badge("lock"),
    "actionUnlockAllLayers": lambda: layers() + badge("unlock"),
    "actionNextLayer": lambda: _step_layer(True) + badge("up"),
    "actionPreviousLayer": lambda: _step_layer(False) + badge("down"),
    "actionMergeLayerWithLower": lambda: _merge(True),
    "actionMoveLayerUp": lambda: _move_layer(True),
    "actionMoveLayerDown": lambda: _move_layer(False),
    "actionPrependLayer": lambda: layers() + badge("plus"),
    "actionRemoveEmptyLayers": lambda: _empty_layers() + badge("x", DANGER),
    "actionShowHideShaderPreview": lambda: sparkles() + badge("eye"),
    "actionRemoveShaderPreview": lambda: sparkles() + badge("eyeoff"),
    "actionCopy": _copy,
    "actionCut": _scissors,
    "actionPaste": _paste,
    "actionPasteInNewLayer": lambda: _paste() + badge("plus"),
    "actionChangePaper": lambda: paper() + badge("pencil"),
    "actionIncreasePaperSize": lambda: paper() + badge("plus"),
    "actionDecreasePaperSize": lambda: paper() + badge("minus"),
    "actionAdjustPaperToSelection": _crop,
    "actionRestoreDefaultLayout": lambda: _layout() + badge("reset"),
    "actionEdit_brush_quick_settings": lambda: sliders() + badge("bolt"),
    "actionSelectAll": _select_all,
    "actionNextSelection": lambda: selection() + badge("right"),
    "actionPreviousSelection": lambda: selection() + badge("left"),
    "actionPerspectiveTool": _perspective,
    "actionFullScreen": _full_screen,
    "actionEraserMode": _eraser,
    "actionFillTool": _fill_bucket,
    "actionFlipHorizontal": _flip,
    "actionFlipVertical": lambda: transformed(_flip(), "rotate(90 12 12)"),
    "actionHelp_index": lambda: question(),
    "actionOnline_help": _globe,
    "actionContact_us": _envelope,
    "actionAbout_Quillmere": _info,
    "actionCheck_updates": _download,
    "actionPrint": _printer,
    "actionProperties": _histogram,
    "actionImport_image_file": lambda: picture() + badge("import"),
    "actionNewShader": lambda: sparkles() + badge("plus"),
    "actionRemoveShader": lambda: sparkles() + badge("x", DANGER),
    "actionDuplicateShader": lambda: sparkles() + badge("copy"),
    "actionPreviewShader": lambda: sparkles() + badge("eye"),
    "actionRasterizeShader": _apply_effect,
    "actionFillSelectionTool": _magic_wand,
    "actionGradientTool": _gradient_tool,
    "actionRestartApplication": _restart,
    "actionIncrease_brush_radius": lambda: _brush_radius() + badge("plus"),
    "actionDecrease_brush_radius": lambda: _brush_radius() + badge("minus"),
    "actionTimeLine": _timeline,
    "actionClearColorHisto": lambda: swatches() + badge("x", DANGER),
    "actionNew_brush": lambda: brush() + badge("plus"),
    "actionDelete_brush": lambda: brush() + badge("x", DANGER),
    "actionDuplicate_brush": lambda: brush() + badge("copy"),
    "actionEdit_brush_settings": lambda: sliders() + badge("pencil"),
    "actionImport_brush_file": lambda: brush() + badge("import"),
    "actionRestore_brush": lambda: brush() + badge("reset"),
    "actionCopy_brush_to_system_directory": lambda: brush() + badge("sysin"),
    "actionRemove_brush_from_system_directory": lambda: brush() + badge("sysout", DANGER),
    "actionRename_brush": lambda: brush() + badge("rename"),
    "actionSet_brush_engine": lambda: stamp() + badge("check"),
    "actionReset_brush_engine": lambda: stamp() + badge("reset"),
    "actionNew_brush_engine": lambda: stamp() + badge("plus"),
    "actionEdit_brush_engine": lambda: stamp() + badge("pencil"),
    "actionDuplicate_brush_engine": lambda: stamp() + badge("copy"),
    "actionDelete_brush_engine": lambda: stamp() + badge("x", DANGER),
    "actionTexture_generator": lambda: texture() + badge("cog"),
    "actionLoad_brush_texture": lambda: texture() + badge("import"),
    "actionEdit_layer_effect_settings": lambda: layers() + badge("sparkle"),
    "actionGenerate_help": lambda: question() + badge("cog"),
    "actionRename_effect": lambda: sparkles() + badge("rename"),
    "actionRename_brush_engine": lambda: stamp() + badge("rename"),
    "actionImport_effect": lambda: sparkles() + badge("import"),
    "actionColor_converter": _color_converter,
    "actionComicStripTool": _comic_strip,
    "actionPanTool": _pan,
    "actionRotateTool": _rotate,
    "actionZoomTool": _zoom,
    "actionRullerTool": _ruler,
    "actionImageToPath": _image_to_path,
    "actionHideLayersExcept": _layers_except,
    "actionMergeLayerWithUpper": lambda: _merge(False),
    "actionSet_effect_thumbnail": lambda: picture() + badge("sparkle"),
    "actionOpen_default_thumbnail": lambda: picture() + badge("reset"),
}

DOCKS = {
    "colorDockWidget": _colour_wheel,
    "shaderDockWidget": sparkles,
    "brushDockWidget": _brush_presets,
    "brushSettingsDockWidget": sliders,
    "colorPaletteDockWidget": _palette,
    "undoDockWidget": _history,
    "thumbnailDockWidget": _navigator,
    "gradientDockWidget": _gradient_bar,
}


# Small icons of lists and dialogs, kept as .ico files of 16 and 32 pixels
# beside the hand-made check and plus; the name is the path under icons/.
SMALL_ICONS = {
    "tools/eraser-tool": _eraser,
    "tools/brush-tool": brush,
    "tools/grid-tool": _grid,
    "tools/symmetry-tool": _symmetry,
    "tools/mesh-tool": _mesh,
    "tools/line-tool": _line_tool,
    "tools/selection-tool": selection,
    "tools/image-tool": picture,
    "tools/shape-tool": _shapes,
    "tools/text-tool": _text,
    "tools/perspective-tool": _perspective,
    "tools/fill-tool": _fill_bucket,
    "tools/fillselection-tool": _magic_wand,
    "tools/gradient-tool": _gradient_tool,
    "tools/comicstrip-tool": _comic_strip,
    "tools/pan-tool": _pan,
    "tools/rotate-tool": _rotate,
    "tools/zoom-tool": _zoom,
    "tools/ruller-tool": _ruler,
    "lock-on": lock,
    "show-fx": sparkles,
    "texture": texture,
    "image": picture,
}


# ---------------------------------------------------------------------------
# Output.


def _round_numbers(text):
    return re.sub(r"-?\d+\.\d+", lambda m: _n(round(float(m.group(0)), 2)), text)


def _element(tag, attrs):
    body = " ".join(f'{k}="{_round_numbers(v) if k in ("d", "transform") else v}"' for k, v in attrs.items())
    return f"<{tag} {body}/>"


def _halo(tag, attrs):
    attrs = dict(attrs)
    for key in ("stroke-dasharray", "fill-opacity", "fill-rule"):
        attrs.pop(key, None)
    width = float(attrs.get("stroke-width", 0)) if attrs.get("stroke", "none") != "none" else 0.0
    attrs["fill"] = "none"
    attrs["stroke"] = HALO
    attrs["stroke-width"] = _n(round(width + 2 * HW, 2))
    attrs["stroke-linecap"] = "round"
    attrs["stroke-linejoin"] = "round"
    return tag, attrs


def svg(shapes):
    defs = FADE if any("url(#fade)" in a.get("fill", "") for _, a, _ in shapes) else ""
    lines = ['<svg xmlns="http://www.w3.org/2000/svg" width="24" height="24" viewBox="0 0 24 24">']
    if defs:
        lines.append(f"  <defs>{defs}</defs>")
    halos = [_halo(t, a) for t, a, h in shapes if h]
    if halos:
        lines.append(f'  <g opacity="{HALO_OPACITY}">')
        lines += ["    " + _element(t, a) for t, a in halos]
        lines.append("  </g>")
    lines += ["  " + _element(t, a) for t, a, _ in shapes]
    lines.append("</svg>")
    return "\n".join(lines) + "\n"


def write_icons():
    written = []
    for folder, table in (("actions", ACTIONS), ("docks", DOCKS)):
        directory = os.path.join(ICONS, folder)
        os.makedirs(directory, exist_ok=True)
        for name, draw in table.items():
            with open(os.path.join(directory, name + ".svg"), "w", encoding="utf-8") as out:
                out.write(svg(draw()))
            written.append(f"icons/{folder}/{name}.svg")
    return written


def small_icon_files():
    return [f"icons/{name}.ico" for name in SMALL_ICONS]


def render_small_icons():
    """Each small icon through rsvg-convert at 32 and 16 pixels, joined into one .ico by convert."""
    convert = "/usr/bin/convert" if os.path.exists("/usr/bin/convert") else shutil.which("convert")
    with tempfile.TemporaryDirectory() as tmp:
        drawing = os.path.join(tmp, "icon.svg")
        for name, draw in SMALL_ICONS.items():
            with open(drawing, "w", encoding="utf-8") as out:
                out.write(svg(draw()))
            renders = []
            for size in (32, 16):
                render = os.path.join(tmp, f"icon-{size}.png")
                subprocess.run(["rsvg-convert", "-w", str(size), "-h", str(size), "-o", render, drawing], check=True)
                renders.append(render)
            target = os.path.join(ICONS, name + ".ico")
            os.makedirs(os.path.dirname(target), exist_ok=True)
            subprocess.run([convert, *renders, target], check=True)


def update_qrc(icon_files):
    """Puts the drawn icons in the resource list, keeping every other entry."""
    qrc = os.path.join(ROOT, "resources", "resources.qrc")
    with open(qrc, encoding="utf-8") as f:
        text = f.read()
    small = {f"<file>{name}</file>" for name in small_icon_files()}
    kept = [l for l in text.splitlines()
            if not re.search(r"<file>icons/(actions|docks)/", l) and l.strip() not in small]
    close = max(i for i, l in enumerate(kept) if "</qresource>" in l)
    indent = re.match(r"\s*", next(l for l in kept if "<file>" in l)).group(0) if any("<file>" in l for l in kept) \
        else "    "
    kept[close:close] = [f"{indent}<file>{name}</file>" for name in icon_files]
    with open(qrc, "w", encoding="utf-8") as f:
        f.write("\n".join(kept) + "\n")


def render_logo():
    logo = os.path.join(ICONS, "logo", "quillmere.svg")
    for size in (16, 32, 48, 64, 128, 256):
        out_dir = os.path.join(ICONS, "logo", "hicolor", f"{size}x{size}", "apps")
        os.makedirs(out_dir, exist_ok=True)
        subprocess.run(["rsvg-convert", "-w", str(size), "-h", str(size), "-o",
                        os.path.join(out_dir, "quillmere.png"), logo], check=True)


def render_cursor():
    """A 32 pixel "no entry" sign: a red ring and bar on a white outline. An
    existing cursor is kept: it may have been drawn by hand."""
    out = os.path.join(ICONS, "forbidden-cursor.ico")
    if os.path.exists(out):
        print(f"kept {os.path.relpath(out, ROOT)}")
        return
    convert = "/usr/bin/convert" if os.path.exists("/usr/bin/convert") else shutil.which("convert")
    draw_ring = "circle 16,16 16,4.5"
    bar = "line 8.2,8.2 23.8,23.8"
    subprocess.run([convert, "-size", "32x32", "xc:none",
                    "-fill", "none", "-stroke", "white", "-strokewidth", "7", "-draw", draw_ring,
                    "-stroke", "white", "-strokewidth", "7", "-draw", bar,
                    "-stroke", "#c8302a", "-strokewidth", "4", "-draw", draw_ring,
                    "-stroke", "#c8302a", "-strokewidth", "4", "-draw", bar,
                    "-define", "icon:auto-resize=32", out], check=True)


def main():
    files = write_icons()
    update_qrc(files + small_icon_files())
    if "--renders" in sys.argv[1:]:
        render_logo()
        render_cursor()
        render_small_icons()
    elif "--small-icons" in sys.argv[1:]:
        render_small_icons()
    print(f"{len(files)} icons written")


if __name__ == "__main__":
    main()
