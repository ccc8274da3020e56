#!/usr/bin/python3
"""Measures the ZIP export against other archivers; bench/zip calls it with what it needs.

Every archiver packs the same folders of pages, in turns; each time is that of the whole process. Ratios are taken
within a round and then their median, so that a machine that grows slower hits both sides.
"""
import argparse
import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time
import zipfile
import zlib
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
OURS = "scanexport"
SETS = (("tiff", "Uncompressed TIFF, grey scans"), ("jpeg", "JPEG, colour scans"),
        ("mixed", "Mixed office pages: TIFF (G4, LZW, uncompressed), JPEG, PNG, PDF"))


class BenchmarkError(Exception):
    pass


class Run:
    """A program that ran to its end: how long it took, and the most memory that it had, in bytes.

    The resident memory is exact and has the parts of the program and of Wine that other processes share; the
    private memory is looked at now and then, and only on demand, because looking takes time of its own.
    """

    def __init__(self, command, folder, watch_memory=False):
        self.private = 0
        with tempfile.TemporaryFile() as output:
            start = time.perf_counter()
            process = subprocess.Popen(command, cwd=folder, stdin=subprocess.DEVNULL, stdout=output,
                                       stderr=subprocess.STDOUT)
            ended = 0
            while watch_memory and not ended:
                self._look_at(process.pid)
                time.sleep(0.005)
                ended, status, usage = os.wait4(process.pid, os.WNOHANG)
            if not ended:
                _, status, usage = os.wait4(process.pid, 0)
            self.seconds = time.perf_counter() - start
            process.returncode = os.waitstatus_to_exitcode(status)
            self.resident = usage.ru_maxrss * 1024
            if process.returncode != 0:
                output.seek(0)
                raise BenchmarkError(f"{' '.join(map(str, command))} ended with {process.returncode}:\n"
                                     + output.read().decode(errors="replace"))

    def _look_at(self, pid):
        for line in Path(f"/proc/{pid}/status").read_text().splitlines():
            if line.startswith("RssAnon:"):
                self.private = max(self.private, int(line.split()[1]) * 1024)


class Archivers:
    """The commands that are compared, as they would be typed in the folder of the pages."""

    def __init__(self, build, seven_zip):
        self.wine = [ROOT / "cmake" / "wine-run.sh", build]
        self.program = build / "release" / "bin" / "scanexport.exe"
        self.seven_zip = seven_zip
        self.names = [OURS, "zip -6", "7z", "bsdtar", "7za.exe"]
        for path in (self.program, seven_zip):
            if not path.is_file():
                raise BenchmarkError(f"There is no {path}.")
        for tool in ("zip", "7z", "bsdtar", "unzip"):
            if not shutil.which(tool):
                raise BenchmarkError(f"{tool} is missing.")

    def command(self, name, archive, pages):
        if name == OURS:
            return [*self.wine, self.program, "--to-zip", f"Z:{archive}", "--prefix", "Page", f"Z:{pages}"]
        if name == "zip -6":
            return ["zip", "-q", "-6", "-r", archive, "."]
        if name == "7z":
            return ["7z", "a", "-tzip", archive, "."]
        if name == "bsdtar":
            return ["bsdtar", "--format", "zip", "-cf", archive, "."]
        return [*self.wine, self.seven_zip, "a", "-tzip", f"Z:{archive}", "."]

    def prepare(self, archive):
        """Makes the disk idle, and starts the Wine session, should it have ended meanwhile."""
        archive.unlink(missing_ok=True)
        os.sync()
        self.run_in_wine("cmd.exe", "/c", "exit")

    def run(self, name, archive, pages, watch_memory=False):
        self.prepare(archive)
        return Run(self.command(name, archive, pages), pages, watch_memory)

    def run_in_wine(self, *command):
        return Run([*self.wine, *command], ROOT)


def checksum(path):
    return path.stat().st_size, zlib.crc32(path.read_bytes())


def check(archive, name, expected):
    """The archive holds the pages, all of them, and nothing else."""
    with zipfile.ZipFile(archive) as opened:
        found = sorted((entry.file_size, entry.CRC) for entry in opened.infolist() if not entry.is_dir())
    if found != expected:
        raise BenchmarkError(f"The archive of {name} has {len(found)} entries that are not the {len(expected)} pages.")
    Run(["unzip", "-tqq", archive], ROOT)


def megabytes(count):
    return count / 1e6


def memory_text(run):
    return f"{megabytes(run.resident):.0f} MB resident, {megabytes(run.private):.0f} MB of it private"


def measure_set(archivers, pages, archive, rounds, title):
    expected = sorted(checksum(path) for path in pages.iterdir())
    seconds = {name: [] for name in archivers.names}
    sizes = {}
    for number in range(rounds):
        first = number % len(archivers.names)
        for name in archivers.names[first:] + archivers.names[:first]:
            seconds[name].append(archivers.run(name, archive, pages).seconds)
            if name not in sizes:
                check(archive, name, expected)
                sizes[name] = archive.stat().st_size
        print(f"{pages.name}, round {number + 1} of {rounds}, seconds: "
              + ", ".join(f"{name} {values[-1]:.2f}" for name, values in seconds.items()), file=sys.stderr)
    memory = archivers.run(OURS, archive, pages, watch_memory=True)
    archive.unlink()

    total = sum(size for size, _ in expected)
    print(f"\n{title}: {len(expected)} pages, {megabytes(total):.1f} MB; medians of {rounds}")
    print("                seconds     MB/s  time to ours  archive MB  ours to it")
    for name in archivers.names:
        median = statistics.median(seconds[name])
        line = f"{name:12} {median:10.2f} {megabytes(total) / median:8.1f}"
        ratio = statistics.median(theirs / ours for theirs, ours in zip(seconds[name], seconds[OURS]))
        print(f"{line} {ratio:13.2f} {megabytes(sizes[name]):11.2f} {sizes[OURS] / sizes[name]:11.4f}")
    print(f"Memory of {OURS} at its peak: {memory_text(memory)}", flush=True)


def measure_starts(archivers, page, archive, rounds):
    """What any run pays before its first page, and what ours pays for component, dialog and archive."""
    page_folder = archive.parent / "one"
    page_folder.mkdir()
    os.link(page, page_folder / page.name)
    for name in archivers.names:
        archivers.run(name, archive, page_folder)
        check(archive, name, [checksum(page)])

    commands = {"Wine's cmd.exe": ["cmd.exe", "/c", "exit"], f"{OURS} --version": [archivers.program, "--version"]}
    starts = {name: [] for name in (*commands, f"{OURS}, one page")}
    for _ in range(max(9, rounds)):
        for name, command in commands.items():
            archivers.prepare(archive)
            starts[name].append(archivers.run_in_wine(*command).seconds)
        starts[f"{OURS}, one page"].append(archivers.run(OURS, archive, page_folder).seconds)
    one_page = archivers.run(OURS, archive, page_folder, watch_memory=True)
    archive.unlink()
    print("From start to end: " + "; ".join(f"{name} {1000 * statistics.median(values):.0f} ms"
                                            for name, values in starts.items()))
    print(f"Memory of {OURS} with one page: {memory_text(one_page)}", flush=True)
    return statistics.median(starts[f"{OURS}, one page"])


def measure_counts(archivers, sources, archive, counts, rounds, one_page):
    """Pages are links to a few files, so that the disk's cache holds them however many there are."""
    runs = {}
    memory = {}
    for count in counts:
        print(f"{count} small pages", file=sys.stderr)
        pages = archive.parent / f"count {count}"
        pages.mkdir()
        for number in range(count):
            os.link(sources[number % len(sources)], pages / f"Scan {number + 1:05}.jpg")
        runs[count] = [archivers.run(OURS, archive, pages).seconds for _ in range(max(3, rounds))]
        memory[count] = archivers.run(OURS, archive, pages, watch_memory=True)
        check(archive, OURS, sorted(checksum(path) for path in pages.iterdir()))
        archive.unlink()
        shutil.rmtree(pages)

    size = statistics.mean(path.stat().st_size for path in sources)
    print(f"\n{OURS} with small pages, JPEG of {size / 1024:.0f} KiB")
    print("   pages   seconds  ms a page  the same without the start  memory at its peak")
    for count in counts:
        median = statistics.median(runs[count])
        net = 1000 * (median - one_page) / max(1, count - 1)
        print(f"{count:8} {median:9.2f} {1000 * median / count:10.3f} {net:27.3f}  {memory_text(memory[count])}")


def parse_options():
    parser = argparse.ArgumentParser(prog="bench/zip", description="Measures the ZIP export against other archivers.")
    parser.add_argument("--pages", type=int, default=200, help="pages of each set (default %(default)s)")
    parser.add_argument("--rounds", type=int, default=3, help="how often each is measured (default %(default)s)")
    parser.add_argument("--counts", type=lambda text: [int(count) for count in text.split(",")],
                        default=[100, 1000, 10000], help="numbers of small pages (default 100,1000,10000)")
    parser.add_argument("--build", type=Path, required=True, help=argparse.SUPPRESS)
    parser.add_argument("--7za", dest="seven_zip", type=Path, required=True, help=argparse.SUPPRESS)
    parser.add_argument("folder", type=Path, help=argparse.SUPPRESS)
    options = parser.parse_args()
    if options.pages < 1 or options.rounds < 1 or min(options.counts) < 1:
        parser.error("numbers start at 1")
    return options


def main():
    options = parse_options()
    archivers = Archivers(options.build, options.seven_zip)
    archive = options.folder / "pages.zip"
    print("Drawing the pages", file=sys.stderr)
    # In a process of its own: the memory of a program that this one starts is never counted as less than its own.
    subprocess.run([sys.executable, ROOT / "bench" / "zip_pages.py", options.folder, str(options.pages)], check=True)
    small = sorted((options.folder / "small").iterdir())

    one_page = measure_starts(archivers, small[0], archive, options.rounds)
    for name, title in SETS:
        measure_set(archivers, options.folder / name, archive, options.rounds, title)
    measure_counts(archivers, small, archive, options.counts, options.rounds, one_page)


if __name__ == "__main__":
    try:
        main()
    except (BenchmarkError, OSError, subprocess.CalledProcessError, zipfile.BadZipFile) as error:
        sys.exit(f"bench/zip: {error}")
