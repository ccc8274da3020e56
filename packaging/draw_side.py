#!/usr/bin/python3
"""Draws the picture beside the installer's last page, side.bmp, beside this script. Wants Debian's python3-cairo."""
import struct
import sys
from pathlib import Path

import cairo

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "host" / "desktop" / "res"))
from draw_icon import SCANNER, Drawing  # noqa: E402
from draw import rgb  # noqa: E402

WIDTH, HEIGHT, ICON = 164, 314, 96

surface = cairo.ImageSurface(cairo.FORMAT_RGB24, WIDTH, HEIGHT)
context = cairo.Context(surface)
gradient = cairo.LinearGradient(0, 0, 0, HEIGHT)
gradient.add_color_stop_rgb(0, *rgb("#f4f7fa"))
gradient.add_color_stop_rgb(1, *rgb(SCANNER["shine"]))
context.set_source(gradient)
context.paint()
context.set_source_surface(Drawing(ICON).draw().surface, (WIDTH - ICON) // 2, (HEIGHT - ICON) // 2)
context.paint()
surface.flush()

data, stride = bytes(surface.get_data()), surface.get_stride()
row_size = (3 * WIDTH + 3) // 4 * 4
pixels = b""
for y in reversed(range(HEIGHT)):
    row = data[y * stride : y * stride + 4 * WIDTH]
    pixels += b"".join(row[x : x + 3] for x in range(0, 4 * WIDTH, 4)).ljust(row_size, b"\0")
header = struct.pack("<IiiHHIIiiII", 40, WIDTH, HEIGHT, 1, 24, 0, len(pixels), 0, 0, 0, 0)
(HERE / "side.bmp").write_bytes(struct.pack("<2sIHHI", b"BM", 54 + len(pixels), 0, 0, 54) + header + pixels)
