#!/usr/bin/python3
"""Draws the programs' icon ScanHost.ico beside this script: a page in a scanner.

Each size is drawn for itself, with all straight edges between pixels. Wants Debian's python3-cairo.
"""
import io
import struct
import sys
from pathlib import Path

import cairo

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parents[2] / "Components" / "BasicExport" / "res"))
from draw import PAGE, polygon, rgb, rounded, shade  # noqa: E402

SIZES = (16, 20, 24, 32, 40, 48, 64, 256)
SCANNER = {"top": "#64788c", "bottom": "#3c4c5c", "edge": "#263340", "shine": "#a9bac9"}
LIGHT = {"top": "#8df0d2", "bottom": "#2fc79b"}


class Drawing:
    """Coordinates are in sixteenths of the icon, rounded to whole pixels; edges are lines of `width` pixels within."""

    def __init__(self, size):
        self.size = size
        self.width = max(1, round(size / 40))
        self.surface = cairo.ImageSurface(cairo.FORMAT_ARGB32, size, size)
        self.context = cairo.Context(self.surface)

    def at(self, sixteenths):
        return round(sixteenths * self.size / 16)

    def fill(self, colour):
        self.context.set_source_rgb(*rgb(colour))
        self.context.fill()

    def bar(self, colour, left, top, right, thickness):
        self.context.rectangle(self.at(left), self.at(top), self.at(right) - self.at(left), thickness)
        self.fill(colour)

    def sheet(self, left, top, right, bottom, fold):
        left, top, right, bottom, fold = map(self.at, (left, top, right, bottom, fold))
        w = self.width
        # The slanting edge is as wide as the straight ones.
        slant = 0.41 * w
        polygon(self.context, (left, top), (right - fold, top), (right, top + fold), (right, bottom), (left, bottom))
        self.fill(PAGE["edge"])
        polygon(self.context, (left + w, top + w), (right - fold - slant, top + w), (right - w, top + fold + slant),
                (right - w, bottom), (left + w, bottom))
        shade(self.context, PAGE, top, bottom)
        self.context.fill()
        polygon(self.context, (right - fold - w, top), (right - fold, top), (right, top + fold), (right, top + fold + w),
                (right - fold - w, top + fold + w))
        self.fill(PAGE["edge"])
        polygon(self.context, (right - fold, top + 1.41 * w), (right - 1.41 * w, top + fold), (right - fold, top + fold))
        self.fill(PAGE["fold"])

    def scanner(self, left, top, right, bottom, radius):
        left, top, right, bottom, radius = map(self.at, (left, top, right, bottom, radius))
        w = self.width
        rounded(self.context, left, top, right, bottom, radius)
        self.fill(SCANNER["edge"])
        rounded(self.context, left + w, top + w, right - w, bottom - w, max(radius - w, 0.5))
        shade(self.context, SCANNER, top, bottom)
        self.context.fill()
        self.context.rectangle(left + radius, top + w, right - left - 2 * radius, w)
        self.fill(SCANNER["shine"])

    def draw(self):
        thin = max(1, self.at(0.6))
        self.sheet(3, 0, 13, 12, 3.2)
        for top, right in ((2.4, 8.4), (4.4, 11), (6.4, 11)):
            self.bar(PAGE["ink"], 5, top, right, thin)
        self.scanner(0, 9, 16, 16, 1.6)
        # The light lies on the page where it goes into the scanner.
        light = max(1, self.at(0.9))
        self.context.rectangle(self.at(2), self.at(9) - light, self.at(14) - self.at(2), light)
        shade(self.context, LIGHT, self.at(9) - light, self.at(9))
        self.context.fill()
        self.bar(SCANNER["edge"], 2.5, 11.6, 13.5, max(1, self.at(0.8)))
        lamp = max(1, self.at(1))
        self.context.rectangle(self.at(12.4), self.at(13.4), lamp, lamp)
        self.fill(LIGHT["top"])
        return self

    def bitmap(self):
        """As a device-independent bitmap, which every reader of icons knows."""
        self.surface.flush()
        data, stride = bytes(self.surface.get_data()), self.surface.get_stride()
        rows = []
        for y in reversed(range(self.size)):
            row = bytearray()
            for x in range(self.size):
                *colour, alpha = data[y * stride + 4 * x : y * stride + 4 * x + 4]
                row += bytes(min(255, round(each * 255 / alpha)) if alpha else 0 for each in colour) + bytes([alpha])
            rows.append(bytes(row))
        mask_row = (self.size + 31) // 32 * 4
        mask = []
        for row in rows:
            bits = 0
            for alpha in row[3::4]:
                bits = bits << 1 | (alpha == 0)
            mask.append((bits << mask_row * 8 - self.size).to_bytes(mask_row, "big"))
        header = struct.pack("<IiiHHIIiiII", 40, self.size, 2 * self.size, 1, 32, 0, 0, 0, 0, 0, 0)
        return header + b"".join(rows) + b"".join(mask)

    def image(self):
        if self.size < 256:
            return self.bitmap()
        # The large one is compressed, as is usual.
        stream = io.BytesIO()
        self.surface.write_to_png(stream)
        return stream.getvalue()


if __name__ == "__main__":
    images = [Drawing(size).draw().image() for size in SIZES]
    directory = struct.pack("<HHH", 0, 1, len(images))
    offset = len(directory) + 16 * len(images)
    for size, image in zip(SIZES, images):
        directory += struct.pack("<BBBBHHII", size % 256, size % 256, 0, 0, 1, 32, len(image), offset)
        offset += len(image)
    (HERE / "ScanHost.ico").write_bytes(directory + b"".join(images))
