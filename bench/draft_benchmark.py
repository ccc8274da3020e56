#!/usr/bin/python3
"""Measures how fast the mail client writes drafts against Python's email package; bench/draft calls it.

Both write the same pages into the same folder, in turns, each in a process of its own that tells how long the writing
took, so that Wine's and Python's start do not count. Ratios are taken within a round and then their median, so that a
machine that grows slower hits both sides.
"""
import argparse
import email
import email.policy
import os
import shutil
import statistics
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
KIB = 1024


class BenchmarkError(Exception):
    pass


def seconds_of(command):
    # What was written before must not be on its way to the disk while this one writes.
    os.sync()
    done = subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, text=True)
    if done.returncode != 0:
        raise BenchmarkError(f"{' '.join(map(str, command))} ended with {done.returncode}:\n{done.stderr}")
    return float(done.stdout)


def check(draft, pages):
    """The draft holds the pages, all of them, and nothing else."""
    with draft.open("rb") as opened:
        message = email.message_from_binary_file(opened, policy=email.policy.default)
    found = {part.get_filename(): part.get_payload(decode=True) for part in message.iter_attachments()}
    if found != {page.name: page.read_bytes() for page in pages.iterdir()}:
        raise BenchmarkError("The attachments of the draft are not the pages.")


def measure(options, count, size):
    pages = options.folder / "pages"
    drafts = options.folder / "drafts"
    by_python = options.folder / "python.eml"
    pages.mkdir()
    for number in range(count):
        (pages / f"Page-{number + 1:04}.tif").write_bytes(os.urandom(size))
    wine_run = ROOT / "cmake" / "wine-run.sh"
    program = options.build / "release" / "bin" / "DraftBenchmark.exe"

    ours = []
    pythons = []
    for number in range(options.rounds):
        drafts.mkdir()
        ours.append(seconds_of([wine_run, options.build, program, f"Z:{pages}", f"Z:{drafts}"]))
        (draft,) = drafts.iterdir()
        if number == 0:
            check(draft, pages)
        shutil.rmtree(drafts)
        pythons.append(seconds_of([sys.executable, ROOT / "bench" / "draft_by_python.py", pages, by_python]))
        by_python.unlink()
        print(f"round {number + 1} of {options.rounds}: {ours[-1]:.3f} s, Python {pythons[-1]:.3f} s", file=sys.stderr)
    shutil.rmtree(pages)

    megabytes = count * size / 1e6
    ratio = statistics.median(theirs / own for theirs, own in zip(pythons, ours))
    print(f"{count:8} {size // KIB:10} {megabytes / statistics.median(ours):15.0f} "
          f"{megabytes / statistics.median(pythons):13.0f} {ratio:16.1f}", flush=True)


def main():
    parser = argparse.ArgumentParser(prog="bench/draft", description="Measures the mail client's writing of drafts.")
    parser.add_argument("--pages", type=int, default=1000, help="pages of 100 KiB (default %(default)s)")
    parser.add_argument("--rounds", type=int, default=5, help="how often each is measured (default %(default)s)")
    parser.add_argument("--build", type=Path, required=True, help=argparse.SUPPRESS)
    parser.add_argument("folder", type=Path, help=argparse.SUPPRESS)
    options = parser.parse_args()
    if options.pages < 1 or options.rounds < 1:
        parser.error("numbers start at 1")
    print("Drafts with pages of random bytes; MB of pages a second, medians")
    print("   pages   KiB each   DraftMail MB/s   Python MB/s   time to DraftMail's")
    measure(options, options.pages, 100 * KIB)
    measure(options, 4, 50_000 * KIB)


if __name__ == "__main__":
    try:
        main()
    except (BenchmarkError, OSError) as error:
        sys.exit(f"bench/draft: {error}")
