#!/usr/bin/env python3
"""Writes the images of the image tests, sound ones and damaged ones, beside itself."""
import pathlib
import struct
import zlib

SIGNATURE = b"\x89PNG\r\n\x1a\n"


def chunk(kind, data):
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))


def png(width, height, depth, colour, rows, extra=b""):
    header = chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, depth, colour, 0, 0, 0))
    pixels = b"".join(b"\0" + row for row in rows)
    return SIGNATURE + header + extra + chunk(b"IDAT", zlib.compress(pixels, 9)) + chunk(b"IEND", b"")


RGBA = png(3, 2, 8, 6, [
    bytes([255, 0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255]),
    bytes([200, 100, 50, 128, 10, 20, 30, 1, 1, 2, 3, 0]),
])

IMAGES = {
    "rgba.png": RGBA,
    "rgb.png": png(2, 1, 8, 2, [bytes([1, 2, 3, 250, 251, 252])]),
    "palette.png": png(4, 1, 2, 3, [bytes([0b00011011])],
                       chunk(b"PLTE", bytes([0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0, 255]))
                       + chunk(b"tRNS", bytes([255, 255, 77]))),
    "grey.png": png(2, 1, 8, 0, [bytes([0, 128])]),
    "truncated.png": RGBA[:-30],
    "header_only.png": RGBA[:33],
    "bad_header.png": png(1, 1, 77, 6, [b"\0" * 4]),
    "bad_pixels.png": RGBA[:45] + b"\xff" * 12 + RGBA[57:],
    "huge.png": png(60000, 60000, 8, 6, [b"\0" * 16]),
    "text.png": b"This is no picture.",
    "other.gif": b"GIF89a\x01\0\x01\0\x80\0\0\xff\0\0\0\0\0,\0\0\0\0\x01\0\x01\0\0\x02\x02D\x01\0;",
}

for name, data in IMAGES.items():
    (pathlib.Path(__file__).parent / name).write_bytes(data)
