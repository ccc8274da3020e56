#!/usr/bin/env python3
"""Lets unzip, 7z, bsdtar and Python's zipfile read archives of ours and compares what they find.

readers.py FOLDER PROGRAM...: works in FOLDER; PROGRAM is zip_files with what runs it. With READERS_AT_LIMITS set,
archives of 65,534 to 65,536 entries and of more than 4 GiB are read as well.
"""
import os
import pathlib
import random
import shutil
import subprocess
import sys
import zipfile

os.environ["LC_ALL"] = "C.UTF-8"
folder = pathlib.Path(sys.argv[1]).resolve()
program = sys.argv[2:]


def run(*command, **options):
    return subprocess.run([str(word) for word in command], check=True, capture_output=True, **options).stdout


def write(archive, *words):
    archive.unlink(missing_ok=True)
    run(*program, windows_path(archive), *words)


def windows_path(path):
    return str(path) if os.name == "nt" else "Z:" + str(path).replace("/", "\\")


def extract_with_zipfile(archive, target):
    with zipfile.ZipFile(archive) as opened:
        opened.extractall(target)


EXTRACT = {
    "unzip": lambda archive, target: run("unzip", "-q", archive, "-d", target),
    "7z": lambda archive, target: run("7z", "x", "-y", f"-o{target}", archive),
    "bsdtar": lambda archive, target: run("bsdtar", "-xf", archive, "-C", target),
    "zipfile": extract_with_zipfile,
}

LIST = {
    "unzip": lambda archive: run("unzip", "-Z1", archive).decode().splitlines(),
    "7z": lambda archive: [
        line[len("Path = "):]
        for line in run("7z", "l", "-slt", "-ba", archive).decode().splitlines()
        if line.startswith("Path = ")
    ],
    "bsdtar": lambda archive: run("bsdtar", "-tf", archive).decode().splitlines(),
    "zipfile": lambda archive: zipfile.ZipFile(archive).namelist(),
}

# The bytes of one entry, on standard output.
STREAM = {
    "unzip": ["unzip", "-p", "{archive}", "{name}"],
    "7z": ["7z", "x", "-so", "{archive}", "{name}"],
    "bsdtar": ["bsdtar", "-xOf", "{archive}", "{name}"],
    "zipfile": [
        sys.executable,
        "-c",
        "import shutil, sys, zipfile\n"
        "shutil.copyfileobj(zipfile.ZipFile(sys.argv[1]).open(sys.argv[2]), sys.stdout.buffer, 1 << 20)",
        "{archive}",
        "{name}",
    ],
}


def tree(root):
    return {
        str(path.relative_to(root)).replace(os.sep, "/"): path.read_bytes() for path in root.rglob("*") if path.is_file()
    }


def check_contents():
    noise = random.Random(1)
    contents = {
        "Strana_01.txt": b"text " * 1000,
        "Strana_02.jpg": b"\xff\xd8\xff\xe0" + noise.randbytes(50_000),
        "prázdná stránka": b"",
        "Skeny/žluťoučký kůň 📄.tif": b"II*\0" + bytes(noise.choices(range(9), k=1_700_000)),
        "Skeny/2024/šum.bin": noise.randbytes(900_000),
        "x": b"x",
    }
    words = []
    for number, (name, content) in enumerate(contents.items()):
        page = folder / f"page{number}"
        page.write_bytes(content)
        words += [name, windows_path(page)]
    archive = folder / "contents.zip"
    write(archive, *words)
    run("unzip", "-tq", archive)
    run("7z", "t", archive)
    for reader, extract in EXTRACT.items():
        target = folder / reader
        target.mkdir()
        extract(archive, target)
        found = tree(target)
        assert found.keys() == contents.keys(), f"{reader}: {sorted(found)}"
        assert found == contents, f"{reader}: contents differ"
        assert LIST[reader](archive) == list(contents), f"{reader}: the order differs"


def check_backslashes():
    """Readers keep a backslash in a name or take it for a separator; both find the pages."""
    names = ["Skeny\\2024\\Strana_1.txt", "Skeny/2024\\Strana_2.txt"]
    page = folder / "page0"
    archive = folder / "backslashes.zip"
    write(archive, *(word for name in names for word in (name, windows_path(page))))
    assert zipfile.ZipFile(archive).namelist() == names
    for reader, extract in EXTRACT.items():
        target = folder / f"{reader} with backslashes"
        target.mkdir()
        extract(archive, target)
        found = {name.replace("\\", "/"): content for name, content in tree(target).items()}
        assert found == {name.replace("\\", "/"): page.read_bytes() for name in names}, f"{reader}: {found.keys()}"


def check_counts():
    archive = folder / "count.zip"
    for count in (65534, 65535, 65536):
        write(archive, "--empty", count)
        for reader, names in LIST.items():
            assert names(archive) == [str(i) for i in range(count)], f"{reader}: {count} entries"
        print(f"{count} entries: all readers agree")


def check_sizes():
    deflated = folder / "deflated.bmp"
    stored = folder / "stored.jpg"
    for page, start in ((deflated, b"BM"), (stored, b"\xff\xd8\xff\xe0")):
        page.write_bytes(start)
        os.truncate(page, (4 << 30) + 12345)
    archive = folder / "sizes.zip"
    pages = (deflated, stored, folder / "page0")
    write(archive, *(word for page in pages for word in (page.name, windows_path(page))))
    for reader, command in STREAM.items():
        for page in pages:
            words = [word.format(archive=archive, name=page.name) for word in command]
            with subprocess.Popen(words, stdout=subprocess.PIPE) as stream:
                run("cmp", "-", page, stdin=stream.stdout)
            assert stream.returncode == 0, f"{reader}: {page.name}"
        print(f"{reader}: reads pages of more than 4 GiB")


shutil.rmtree(folder, ignore_errors=True)
folder.mkdir(parents=True)
check_contents()
check_backslashes()
if "READERS_AT_LIMITS" in os.environ:
    check_counts()
    check_sizes()
shutil.rmtree(folder)
