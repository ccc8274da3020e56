#!/usr/bin/env python3
"""Lets Python's email package read drafts of ours and compares what it finds with what went in.

drafts.py FOLDER PROGRAM...: works in FOLDER; PROGRAM is draft_tool with what runs it.
"""
import pathlib
import random
import shutil
import sys

sys.path.insert(0, str(pathlib.Path(__file__).parent))
from draftcheck import Tool, check, expect_draft, only_draft_in  # noqa: E402

folder = pathlib.Path(sys.argv[1]).resolve()
tool = Tool(sys.argv[2:])
noise = random.Random(1)

EVERY_BYTE = bytes(range(256))
NAMES = {
    "plain": "Page-1.jpg",
    "diacritics": "Příloha žluťoučký kůň 1.tif",
    "quotes": "a 'quoted name' 100%.tif",
    "semicolon": "a;b=c, (d) [e] {f} ~!#$&+^`.tif",
    "other scripts": "中文 עברית 😀.png",
    "long": "x" * 200 + ".tif",
    "long with diacritics": "ř" * 200 + ".tif",
    "blanks at the ends": " x.tif ",
}
NO_FILE_NAMES = {
    "\"1/2\": a\r\nX-Field: b.tif": "_1_2__ a__X-Field_ b.tif",
    "=?utf-8?B?SGVsbG8=?=.tif": "=_utf-8_B_SGVsbG8=_=.tif",
}
SUBJECTS = {
    "ascii": "Invoices (3): paid; \"all\"",
    "diacritics": "Faktury říjen",
    "empty": "",
    "blanks": "  two  blanks  ",
    "long": "žluťoučký kůň " * 20 + "end",
    "long ascii": "word " * 60 + "end",
    "one long word": "x" * 500,
    "looks encoded": "=?utf-8?B?SGVsbG8=?=",
    "emoji": "📧" * 50,
}
NOTES = {
    "blank": " ",
    "lines": "one\r\ntwo\n\nthree\rfour\r\n",
    "diacritics": "žluťoučký kůň\r\n",
    "long line": "x" * 2000,
    "boundary": "--=_0123456789abcdef\r\n--=_0123456789abcdef--\r\n",
    "empty": "",
}


def draft(case, subject, note, attachments, names=()):
    """Writes a draft with the tool and checks it; attachments are names with bytes, and names what becomes of theirs."""
    drafts = folder / case / "Drafts"
    drafts.parent.mkdir()
    words = []
    for number, (name, content) in enumerate(attachments):
        source = drafts.parent / f"source{number}"
        source.write_bytes(content)
        words += [name, tool.path(source)]
    check(case, tool("write", tool.path(drafts), subject, note, *words), 0)
    # The draft must not need the files any more.
    for source in drafts.parent.glob("source*"):
        source.unlink()
    if names:
        attachments = [(name, content) for name, (_, content) in zip(names, attachments, strict=True)]
    expect_draft(case, only_draft_in(drafts), subject, note, attachments)


shutil.rmtree(folder, ignore_errors=True)
folder.mkdir(parents=True)
for case, subject in SUBJECTS.items():
    draft(f"subject {case}", subject, " ", [("a.tif", EVERY_BYTE)])
for case, note in NOTES.items():
    draft(f"note {case}", "S", note, [("a.tif", EVERY_BYTE)])
    draft(f"note {case} alone", "S", note, [])
draft("names", "S", " ", [(name, name.encode()) for name in NAMES.values()])
draft("no file names", "S", " ", [(name, EVERY_BYTE) for name in NO_FILE_NAMES], NO_FILE_NAMES.values())
sizes = [0, 1, 2, 3, 56, 57, 58, 57 * 4096 - 1, 57 * 4096, 57 * 4096 + 1, 5_000_000]
draft("sizes", "S", " ", [(f"{size}.bin", noise.randbytes(size)) for size in sizes])
draft("many", "S", " ", [(f"Page-{number:03}.tif", noise.randbytes(number)) for number in range(1, 151)])
