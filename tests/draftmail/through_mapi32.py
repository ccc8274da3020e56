#!/usr/bin/env python3
"""Sends mail as any program does, through Wine's own MAPI32.DLL to the registered client, and reads the draft.

through_mapi32.py FOLDER WINE_RUN TOOL UTF8_TOOL DLL: has a Wine prefix of its own in FOLDER, because the registration
and the program for mail messages are the whole prefix's.
"""
import os
import pathlib
import shutil
import subprocess
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).parent))
from draftcheck import Tool, check, expect_draft, only_draft_in  # noqa: E402

folder = pathlib.Path(sys.argv[1]).resolve()
wine_run = [sys.argv[2], str(folder)]
tool = Tool([*wine_run, sys.argv[3]])
utf8_tool = Tool([*wine_run, sys.argv[4]])
dll = tool.path(sys.argv[5])
drive_c = folder / "wine-null" / "drive_c"
record = folder / "opened.txt"

NOT_FOUND = 11
ACCESS_DENIED = 6
JPEG = bytes(range(256)) * 100


def wine(*words, check=True):
    subprocess.run([*wine_run, *words], check=check, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=100)


def registered_clients():
    exported = folder / "clients.reg"
    exported.unlink(missing_ok=True)
    wine("reg.exe", "export", r"HKLM\Software\Clients", tool.path(exported), "/y")
    return exported.read_bytes()


def opened_draft():
    """The path that the program for mail messages was given; the system starts it on its own."""
    deadline = time.monotonic() + 60
    while not (record.exists() and record.read_text().endswith("\n")):
        if time.monotonic() > deadline:
            raise SystemExit("no program was started to open the draft")
        time.sleep(0.02)
    return record.read_text()


def expect_draft_of(sender, function, subject, name):
    """Sends a message and returns the path of its draft."""
    shutil.rmtree(drafts, ignore_errors=True)
    check(function, sender(function, subject, " ", name, tool.path(source)), 0)
    draft = only_draft_in(drafts)
    expect_draft(function, draft, subject, " ", [(name, JPEG)])
    return draft


def expect_sent(sender, function, subject, name):
    record.unlink(missing_ok=True)
    draft = expect_draft_of(sender, function, subject, name)
    check(f"{function}: opened", opened_draft(), "C:\\" + str(draft.relative_to(drive_c)).replace("/", "\\") + "\n")


source = folder / "source"
try:
    # Makes the prefix if there is none yet.
    wine("cmd.exe", "/c", "exit")
    source.write_bytes(JPEG)
    (documents,) = (path for path in drive_c.glob("users/*/Documents") if path.parent.name != "Public")
    check("documents outside of the prefix", documents.is_symlink(), False)
    drafts = documents / "Drafts"
    drafts.unlink(missing_ok=True) if drafts.is_file() else shutil.rmtree(drafts, ignore_errors=True)
    # Left over from a run before.
    wine("reg.exe", "delete", r"HKCR\.eml", "/f", check=False)

    before = registered_clients()
    check("register", tool("register", dll), 0)

    # Nobody sees this prefix's windows: a message about the missing program would stay there for ever.
    expect_draft_of(tool, "send", "No program for messages", "Page-1.jpg")

    wine("reg.exe", "add", r"HKCR\.eml", "/ve", "/d", "TestMailProgram", "/f")
    wine("reg.exe", "add", r"HKCR\TestMailProgram\shell\open\command", "/ve", "/f",
         "/d", f'"{tool.path(sys.argv[3])}" opened "{tool.path(record)}" "%1"')
    expect_sent(tool, "send", "Invoices caf\u00e9", "Page-1.jpg")
    expect_sent(utf8_tool, "send", "Faktury \u0159\u00edjen \u4e2d", "P\u0159\u00edloha.jpg")
    expect_sent(tool, "sendw", "Faktury \u0159\u00edjen", "P\u0159\u00edloha \u4e2d.jpg")

    check("missing attachment", tool("send", "S", " ", "a.jpg", tool.path(folder / "none")), NOT_FOUND)
    check("drafts after a failure", len(list(drafts.iterdir())), 1)
    shutil.rmtree(drafts)
    drafts.write_bytes(b"a file in the place of the folder")
    check("no folder for drafts", tool("send", "S", " ", "a.jpg", tool.path(source)), ACCESS_DENIED)

    check("unregister", tool("unregister"), 0)
    check("clients after unregistering", registered_clients(), before)
finally:
    subprocess.run(["wineserver", "-k"], env={**os.environ, "WINEPREFIX": str(folder / "wine-null")})
