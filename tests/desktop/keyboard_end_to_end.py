#!/usr/bin/env python3
"""Uses ScanHost as a person without a mouse does: chooses DraftMail, adds pages, exports them to each target, sees an
export fail, stops one, and leaves. What arrives is compared with the pages byte for byte.

keyboard_end_to_end.py FOLDER WINE_RUN SCANHOST KEY_PRESSER: has a Wine prefix in FOLDER, whose mail client becomes
DraftMail.
"""
import os
import pathlib
import shutil
import subprocess
import sys
import time
import zipfile

sys.path.insert(0, str(pathlib.Path(__file__).parents[1] / "draftmail"))
from draftcheck import Prefix, Tool, check, expect_draft, only_draft_in  # noqa: E402

SECONDS = 60
LIST = "SysListView32"
BAR = "ToolbarWindow32"


class Keyboard:
    """A keyboard, and eyes for the window that gets what is pressed."""

    def __init__(self, command):
        self.presser = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE)

    def end(self):
        self.presser.stdin.close()
        self.presser.wait(SECONDS)

    def order(self, words):
        self.presser.stdin.write(f"{words}\n".encode())
        self.presser.stdin.flush()
        answer = self.presser.stdout.readline().decode().rstrip("\r\n")
        if not answer:
            raise SystemExit(f"key_presser has ended at: {words}")
        return answer.replace("\x1e", "\n").split("\x1f")[:-1]

    def press(self, *keys):
        for key in keys:
            self.order("press " + key.replace("+", " "))

    def expect(self, title, focus, *texts, entered=None):
        """Waits for the window with that title, with the focus in a control of that class, in which `entered` stands, if
        anything, and for controls whose texts begin so."""
        until = time.monotonic() + SECONDS
        while True:
            found_title, found_focus, found_entered, *found = self.order("look")
            if ((found_title, found_focus) == (title, focus) and entered in (None, found_entered)
                    and all(any(text.startswith(wanted) for text in found) for wanted in texts)):
                return
            if time.monotonic() > until:
                raise SystemExit(f"waited in vain for {(title, focus, entered, *texts)!r}; there is "
                                 f"{(found_title, found_focus, found_entered, *found)!r:.2000}")
            time.sleep(0.02)

    def type(self, title, text):
        """Types over what stands in an edit of that window. Each key must arrive, so the text is waited for."""
        self.expect(title, "Edit")
        self.press("CTRL+A")
        self.order("type " + text)
        self.expect(title, "Edit", entered=text)


def write(path, size, seed):
    path.parent.mkdir(exist_ok=True)
    path.write_bytes(bytes((seed + i * i // 7) % 256 for i in range(size)))
    return path


def expect_files(what, found, expected):
    """Compares contents by name; not with check(), which would print them."""
    check(f"{what}: names", sorted(found), sorted(expected))
    for name, data in expected.items():
        if found[name] != data:
            raise SystemExit(f"{what}: {name} differs")


def files_of(folder):
    return {path.name: path.read_bytes() for path in folder.iterdir()}


folder = pathlib.Path(sys.argv[1]).resolve() / "desk"
shutil.rmtree(folder, ignore_errors=True)
folder.mkdir(parents=True)
first = write(folder / "incoming/first.tif", 50_000, 1)
second = write(folder / "incoming/the second.jpg", 3_000, 2)
scans = [write(folder / f"scans/{number}.pdf", 1_000 * number, number) for number in (1, 2, 10)]
write(folder / "scans/notes.txt", 10, 0)
contents = [page.read_bytes() for page in (first, second, *scans)]
ends = ["tif", "jpg", "pdf", "pdf", "pdf"]
# So much that nobody is too slow to stop it.
large = write(folder / "large/1.pdf", 1, 0)
large.write_bytes(os.urandom(8_000_000))
for number in range(2, 401):
    (large.parent / f"{number}.pdf").hardlink_to(large)

prefix = Prefix(sys.argv[2], sys.argv[1])
# Left over from a run before.
prefix("reg.exe", "delete", r"HKCU\Software\Sorvane", "/f", check=False)
prefix("reg.exe", "delete", r"HKCU\Software\Clients\Mail", "/f", check=False)
prefix("reg.exe", "delete", r"HKCR\.eml", "/f", check=False)
drafts = prefix.empty_drafts()
program = subprocess.Popen([*prefix.wine_run, sys.argv[3], "--lang", "en"], stdin=subprocess.DEVNULL)
keyboard = Keyboard([*prefix.wine_run, sys.argv[4]])
press, expect = keyboard.press, keyboard.expect


def choose_draft_mail():
    expect("ScanHost", LIST, "0 pages")
    press("ALT+T", "S")
    expect("Settings", "ComboBox")
    press("ALT+M", "D")
    expect("Settings", "ComboBox", entered="DraftMail")
    press("ENTER")
    expect("ScanHost", LIST)


def look_at_what_it_is():
    press("ALT+H", "A")
    expect("ScanHost", "Button", "ScanHost ", entered="OK")
    press("ESC")
    expect("ScanHost", LIST)


def add_files():
    press("CTRL+O")
    expect("Add files", "Edit")
    press("ESC")
    expect("ScanHost", LIST, "0 pages")
    press("ALT+F", "F")
    keyboard.type("Add files", f'"{Tool.path(first)}" "{Tool.path(second)}"')
    press("ENTER")
    expect("ScanHost", LIST, "2 pages")


def add_folder(path, count):
    press("CTRL+SHIFT+O")
    keyboard.type("Add folder", Tool.path(path))
    press("ENTER")
    expect("ScanHost", LIST, f"{count} pages")


def add_folder_with_something_else():
    press("ALT+F", "O")
    keyboard.type("Add folder", Tool.path(first.parent.parent / "scans"))
    press("ENTER")
    expect("ScanHost", "Button", "1 item was not added:")
    press("ENTER")
    expect("ScanHost", LIST, "5 pages")


def directory_dialog(path):
    title = "Export to folder"
    keyboard.type(title, Tool.path(path))
    press("TAB", "TAB")
    keyboard.type(title, "Page")
    press("ENTER")


def close_result(title, *texts):
    expect(title, "Button", *texts, entered="Close")
    press("ENTER")


def export_to_directory():
    press("CTRL+1")
    directory_dialog(folder / "all")
    close_result("Export to folder", "5 pages have been exported.")
    expect("ScanHost", LIST, "5 pages")
    names = [f"Page{number:04}.{end}" for number, end in enumerate(ends, 1)]
    expect_files("directory", files_of(folder / "all"), dict(zip(names, contents)))


def overwrite_in_directory():
    press("HOME", "SHIFT+RIGHT")
    expect("ScanHost", LIST, "5 pages, 2 selected")
    names = ["Page0001.tif", "Page0002.jpg"]
    for name in names:
        (folder / "all" / name).write_bytes(b"old")
    press("CTRL+1")
    directory_dialog(folder / "all")
    for name in names:
        expect("ScanHost", "Button", "The file already exists:\n\u201c" + Tool.path(folder / "all" / name))
        press("Y")
    close_result("Export to folder", "2 pages have been exported.")
    expect("ScanHost", LIST, "5 pages, 2 selected")
    for name, data in zip(names, contents):
        check(f"{name} is overwritten", (folder / "all" / name).read_bytes() == data, True)


def export_selected_to_zip():
    press("HOME", "SHIFT+RIGHT")
    expect("ScanHost", LIST, "5 pages, 2 selected")
    press("ALT+X", "3")
    title = "Export to ZIP file"
    expect(title, "Button", entered="OK")
    press("TAB", "TAB")
    keyboard.type(title, Tool.path(folder / "two.zip"))
    press("TAB")
    keyboard.type(title, "Scan")
    press("ENTER")
    close_result("Export to ZIP", "2 pages have been exported.")
    expect("ScanHost", LIST, "5 pages, 2 selected")
    with zipfile.ZipFile(folder / "two.zip") as archive:
        check("archive", archive.testzip(), None)
        expect_files("archive", {name: archive.read(name) for name in archive.namelist()},
                     {"Scan1.tif": contents[0], "Scan2.jpg": contents[1]})


def export_to_mail():
    press("END")
    expect("ScanHost", LIST, "5 pages, 1 selected")
    press("F6")
    expect("ScanHost", BAR)
    press("RIGHT", "ENTER")
    title = "Send as e-mail"
    expect(title, "Button", entered="OK")
    press("TAB", "TAB")
    keyboard.type(title, "Five pages")
    press("ENTER")
    close_result(title, "5 pages have been exported.")
    expect("ScanHost", BAR)
    press("F6")
    expect("ScanHost", LIST, "5 pages, 1 selected")
    names = [f"Page-{number}.{end}" for number, end in enumerate(ends, 1)]
    expect_draft("draft", only_draft_in(drafts), "Five pages", " ", list(zip(names, contents)))


def fail():
    scans[0].unlink()
    press("CTRL+1")
    directory_dialog(folder / "failed")
    expect("Export to folder", "Button", "Page 3 could not be exported.\nThe file or folder does not exist.",
           entered="Close")
    press("ALT+C", "ESC")
    expect("ScanHost", LIST, "5 pages, 1 selected")

    # What was copied can be pasted.
    press("CTRL+2")
    expect("Send as e-mail", "Button")
    press("TAB", "TAB")
    expect("Send as e-mail", "Edit")
    press("CTRL+A", "CTRL+V")
    expect("Send as e-mail", "Edit", entered="Page 3 could not be exported.")
    press("ESC")
    expect("ScanHost", LIST)


def remove_all():
    press("MENU", "R")
    expect("ScanHost", LIST, "4 pages")
    press("CTRL+A", "DEL")
    expect("ScanHost", LIST, "0 pages")


def stop():
    add_folder(large.parent, 400)
    press("CTRL+3")
    title = "Export to ZIP file"
    expect(title, "Button", entered="OK")
    press("TAB", "TAB")
    keyboard.type(title, Tool.path(folder / "stopped.zip"))
    press("ENTER")
    expect("Export to ZIP", "Button", "Page ", entered="Stop")
    press("ESC")
    close_result("Export to ZIP", "The export was stopped.")
    expect("ScanHost", LIST, "400 pages")
    # It has the pages up to there.
    with zipfile.ZipFile(folder / "stopped.zip") as archive:
        names = [f"{number:03}.pdf" for number in range(1, len(archive.namelist()) + 1)]
        check("stopped before the end", 0 < len(names) < 400, True)
        expect_files("stopped archive", {name: archive.read(name) for name in archive.namelist()},
                     dict.fromkeys(names, large.read_bytes()))


try:
    for task in (choose_draft_mail, look_at_what_it_is, add_files, add_folder_with_something_else, export_to_directory,
                 overwrite_in_directory, export_selected_to_zip, export_to_mail, fail, remove_all, stop):
        task()
    press("ALT+F4")
    check("exit code", program.wait(SECONDS), 0)
finally:
    keyboard.end()
    prefix.end()
