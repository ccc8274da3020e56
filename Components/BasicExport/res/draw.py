#!/usr/bin/python3
"""Draws the factories' icons 169.png (directory), 170.png (mail) and 171.png (ZIP) beside this script.

One family: a page slides into a container in front of it, and shape and colour tell which. Every straight edge
lies on the pixel grid, so that nothing blurs at the size the toolbar shows. Wants Debian's python3-cairo.
"""
import math
from pathlib import Path

import cairo

HERE = Path(__file__).resolve().parent

PAGE = {"top": "#ffffff", "bottom": "#eef2f6", "edge": "#6f8296", "fold": "#cfd9e3", "ink": "#93a5b8"}
AMBER = {"top": "#ffd873", "bottom": "#f2b233", "edge": "#a86e0c", "back": "#d99a25", "shine": "#ffeab3"}
BLUE = {"top": "#7fbdf2", "bottom": "#3d8bd4", "edge": "#1e5a99", "back": "#2f73b8", "shine": "#b9dcfa"}
GREEN = {"top": "#7ecb8b", "bottom": "#3f9d55", "edge": "#22683a", "back": "#338a4a", "shine": "#b7e5bf"}


def rgb(text):
    return tuple(int(text[i : i + 2], 16) / 255 for i in (1, 3, 5))


def shade(context, colours, top, bottom):
    """Makes the vertical gradient of the container the current source."""
    gradient = cairo.LinearGradient(0, top, 0, bottom)
    gradient.add_color_stop_rgb(0, *rgb(colours["top"]))
    gradient.add_color_stop_rgb(1, *rgb(colours["bottom"]))
    context.set_source(gradient)


def polygon(context, *points):
    context.new_path()
    for point in points:
        context.line_to(*point)
    context.close_path()


def rounded(context, left, top, right, bottom, radius):
    context.new_path()
    context.arc(right - radius, top + radius, radius, -math.pi / 2, 0)
    context.arc(right - radius, bottom - radius, radius, 0, math.pi / 2)
    context.arc(left + radius, bottom - radius, radius, math.pi / 2, math.pi)
    context.arc(left + radius, top + radius, radius, math.pi, math.pi * 3 / 2)
    context.close_path()


def stroke(context, colour):
    context.set_source_rgb(*rgb(colour))
    context.set_line_width(1)
    context.set_line_join(cairo.LINE_JOIN_ROUND)
    context.stroke()


def bar(context, colour, x, y, width, height=1):
    """Fills whole pixels."""
    context.set_source_rgb(*rgb(colour))
    context.rectangle(x, y, width, height)
    context.fill()


def page(context, left, top, right, bottom, fold, lines):
    """A sheet with a folded corner and one bar per (y, right end) of `lines`; edges run through pixel centres."""
    polygon(context, (left, top), (right - fold, top), (right, top + fold), (right, bottom), (left, bottom))
    shade(context, PAGE, top, bottom)
    context.fill_preserve()
    stroke(context, PAGE["edge"])
    polygon(context, (right - fold, top), (right - fold, top + fold), (right, top + fold))
    context.set_source_rgb(*rgb(PAGE["fold"]))
    context.fill_preserve()
    stroke(context, PAGE["edge"])
    for y, end in lines:
        bar(context, PAGE["ink"], left + 2.5, y, end - left - 2.5)


def directory(context):
    context.new_path()
    context.move_to(2.5, 28.5)
    for point in ((2.5, 8.5), (3.5, 7.5), (10.5, 7.5), (12.5, 9.5), (28.5, 9.5), (29.5, 10.5), (29.5, 28.5)):
        context.line_to(*point)
    context.close_path()
    context.set_source_rgb(*rgb(AMBER["back"]))
    context.fill_preserve()
    stroke(context, AMBER["edge"])
    page(context, 7.5, 1.5, 24.5, 24.5, 5, ((6, 17), (9, 22), (12, 22)))
    rounded(context, 1.5, 15.5, 30.5, 29.5, 2)
    shade(context, AMBER, 15, 30)
    context.fill_preserve()
    stroke(context, AMBER["edge"])
    bar(context, AMBER["shine"], 3, 16, 26)


def mail(context):
    polygon(context, (1.5, 13.5), (15, 4.5), (17, 4.5), (30.5, 13.5), (30.5, 26), (1.5, 26))
    context.set_source_rgb(*rgb(BLUE["back"]))
    context.fill_preserve()
    stroke(context, BLUE["edge"])
    page(context, 7.5, 1.5, 24.5, 24.5, 5, ((6, 17), (9, 22), (12, 22), (15, 22)))
    context.new_path()
    context.move_to(1.5, 13.5)
    context.line_to(15, 22.5)
    context.line_to(17, 22.5)
    context.line_to(30.5, 13.5)
    context.arc(28.5, 27.5, 2, 0, math.pi / 2)
    context.arc(3.5, 27.5, 2, math.pi / 2, math.pi)
    context.close_path()
    shade(context, BLUE, 14, 30)
    context.fill_preserve()
    stroke(context, BLUE["edge"])
    context.set_line_width(1)
    context.set_source_rgba(*rgb(BLUE["edge"]), 0.55)
    for outer, inner in ((2.5, 12), (29.5, 20)):
        context.move_to(outer, 28.5)
        context.line_to(inner, 20.8)
    context.stroke()


def archive(context):
    page(context, 4.5, 0.5, 19.5, 15.5, 4, ((3, 13), (6, 17)))
    rounded(context, 1.5, 8.5, 22.5, 22.5, 2)
    shade(context, GREEN, 8, 23)
    context.fill_preserve()
    stroke(context, GREEN["edge"])
    bar(context, GREEN["shine"], 3, 9, 18)
    bar(context, GREEN["edge"], 10, 9, 4, 8)
    for row, y in enumerate(range(9, 15)):
        bar(context, PAGE["bottom"], 10 + 2 * (row % 2), y, 2)
    rounded(context, 9.5, 14.5, 14.5, 20.5, 1.5)
    context.set_source_rgb(*rgb(PAGE["bottom"]))
    context.fill_preserve()
    stroke(context, GREEN["edge"])
    bar(context, GREEN["edge"], 11, 17, 2, 2)


if __name__ == "__main__":
    for number, size, draw in ((169, 32, directory), (170, 32, mail), (171, 24, archive)):
        surface = cairo.ImageSurface(cairo.FORMAT_ARGB32, size, size)
        draw(cairo.Context(surface))
        surface.write_to_png(str(HERE / f"{number}.png"))
