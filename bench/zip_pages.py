#!/usr/bin/python3
"""Draws the pages that the ZIP benchmark packs: zip_pages.py FOLDER PAGES

Makes folders in FOLDER, with the same files every time and PAGES of them in each: "tiff" holds grey scans without
compression, "jpeg" colour scans as JPEG, "mixed" what an office leaves behind in all the usual formats. "small"
holds a few pages of about 100 KiB. Wants Debian's python3-pil, fonts-liberation and fonts-urw-base35.
"""
import functools
import multiprocessing
import random
import sys
import zlib
from pathlib import Path

from PIL import Image

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "samples"))
sys.dont_write_bytecode = True
import draw_pages  # noqa: E402

LETTERS = (draw_pages.invoice_first, draw_pages.form, draw_pages.letter, draw_pages.delivery_note,
           draw_pages.invoice_second, draw_pages.report)
PICTURES = (draw_pages.album, draw_pages.report, draw_pages.form, draw_pages.memo, draw_pages.letter)
SMALL_PAGES = 16


@functools.cache
def sheet(draw, dpi, mode, paper=255):
    """A drawn sheet that is to be scanned with this resolution, on paper of this brightness."""
    drawn = draw()
    size = [round(side * dpi / drawn.dpi) for side in drawn.image.size]
    drawn.image = drawn.image.convert(mode).resize(size, Image.Resampling.LANCZOS)
    drawn.image = drawn.image.point(lambda value: value * paper // 255)
    drawn.dpi = dpi
    return drawn


@functools.cache
def bare_scan(draw, dpi, mode):
    return draw_pages.scan(sheet(draw, dpi, mode, paper=208), 1, 0.4, mode, strength=0)


def grainy_scan(draws, number, dpi, mode):
    """Page `number` as a scanner sees it, with the grain of the paper."""
    rnd = random.Random(number)
    page = bare_scan(draws[number % len(draws)], dpi, mode)
    return draw_pages.grained(page, number, rnd.choice((2, 3, 4, 6)), rnd.choice((1.0, 1.5)))


def clean_scan(draws, number, dpi, mode):
    """Page `number` from a scanner whose white point lies below the brightness of the paper."""
    drawn = sheet(draws[number % len(draws)], dpi, "L" if mode == "1" else mode)
    return draw_pages.scan(drawn, number, random.Random(number).uniform(-0.8, 0.8), mode, 1.3, 20)


def text_pdf(number, pages=12):
    """A report as a word processor saves it: its text is compressed."""
    rnd = random.Random(number)
    words = [word for name, *_ in draw_pages.GOODS for word in name.split() if word.isascii() and word.isalnum()]
    objects = [b"<</Type/Catalog/Pages 2 0 R>>",
               b"<</Type/Pages/Count %d/Kids[%s]>>" % (
                   pages, b" ".join(b"%d 0 R" % (4 + 2 * page) for page in range(pages))),
               b"<</Type/Font/Subtype/Type1/BaseFont/Times-Roman>>"]
    for page in range(pages):
        lines = (" ".join(rnd.choices(words, k=10)) + f" {rnd.randrange(100000)}" for _ in range(48))
        text = "BT /F 11 Tf 60 780 Td 15 TL" + "".join(f" ({line}) '" for line in lines) + " ET"
        packed = zlib.compress(text.encode())
        objects.append(b"<</Type/Page/Parent 2 0 R/MediaBox[0 0 595 842]/Contents %d 0 R"
                       b"/Resources<</Font<</F 3 0 R>>>>>>" % (5 + 2 * page))
        objects.append(b"<</Filter/FlateDecode/Length %d>>stream\n%s\nendstream" % (len(packed), packed))
    data, offsets = b"%PDF-1.4\n", []
    for index, content in enumerate(objects, 1):
        offsets.append(len(data))
        data += b"%d 0 obj\n%s\nendobj\n" % (index, content)
    table = b"".join(b"%010d 00000 n \n" % offset for offset in offsets)
    return data + b"xref\n0 %d\n0000000000 65535 f \n%strailer\n<</Size %d/Root 1 0 R>>\nstartxref\n%d\n%%%%EOF\n" % (
        len(objects) + 1, table, len(objects) + 1, len(data))


def grey_tiff(path, number):
    scan = clean_scan if number % 4 == 3 else grainy_scan
    scan(LETTERS, number, 130, "L").save(path.with_suffix(".tif"), dpi=(130, 130))


def lzw_tiff(path, number):
    clean_scan(LETTERS, number, 130, "L").save(path.with_suffix(".tif"), dpi=(130, 130), compression="tiff_lzw")


def fax_tiff(path, number):
    clean_scan(LETTERS, number, 200, "1").save(path.with_suffix(".tif"), dpi=(200, 200), compression="group4")


def colour_jpeg(path, number):
    # Scanners use the standard's Huffman tables, programs such as are made for the picture.
    grainy_scan(PICTURES, number, 300, "RGB").save(path.with_suffix(".jpg"), dpi=(300, 300), quality=85,
                                                   optimize=number % 2 == 0)


def small_jpeg(path, number):
    grainy_scan(LETTERS, number, 100, "L").save(path.with_suffix(".jpg"), dpi=(100, 100), quality=85)


def png(path, number):
    clean_scan(LETTERS, number, 110, "L").save(path.with_suffix(".png"), dpi=(110, 110))


def scanned_pdf(path, number):
    grainy_scan(PICTURES, number, 150, "RGB").save(path.with_suffix(".pdf"), resolution=150)


def written_pdf(path, number):
    path.with_suffix(".pdf").write_bytes(text_pdf(number))


# Of twenty pages that come to an office.
MIXED = (7 * [fax_tiff] + 4 * [colour_jpeg] + 2 * [lzw_tiff] + 2 * [grey_tiff] + 2 * [png] + [scanned_pdf]
         + 2 * [written_pdf])


def draw(job):
    make, path, number = job
    make(path, number)


def main():
    folder, pages = Path(sys.argv[1]), int(sys.argv[2])
    jobs = []
    for name, count, kinds in (("tiff", pages, [grey_tiff]), ("jpeg", pages, [colour_jpeg]),
                               ("mixed", pages, random.Random(20).sample(MIXED, len(MIXED))),
                               ("small", SMALL_PAGES, [small_jpeg])):
        (folder / name).mkdir()
        jobs += [(kinds[number % len(kinds)], folder / name / f"Scan {number + 1:05}", number)
                 for number in range(count)]
    with multiprocessing.Pool() as pool:
        for _ in pool.imap_unordered(draw, jobs):
            pass


if __name__ == "__main__":
    main()
