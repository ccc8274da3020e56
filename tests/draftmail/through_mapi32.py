#!/usr/bin/env python3
"""Sends mail as any program does, through Wine's own MAPI32.DLL to the registered client, and reads the draft.

through_mapi32.py FOLDER WINE_RUN TOOL UTF8_TOOL DLL: has a Wine prefix of its own in FOLDER, because the registration
and the program for mail messages are the whole prefix's.
"""
import pathlib
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).parent))
from draftcheck import Prefix, Tool, check, expect_draft, only_draft_in  # noqa: E402

prefix = Prefix(sys.argv[2], sys.argv[1])
tool = Tool([*prefix.wine_run, sys.argv[3]])
utf8_tool = Tool([*prefix.wine_run, sys.argv[4]])
dll = tool.path(sys.argv[5])
record = prefix.folder / "opened.txt"
source = prefix.folder / "source"

NOT_FOUND = 11
ACCESS_DENIED = 6
JPEG = bytes(range(256)) * 100


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
    prefix.empty_drafts()
    check(function, sender(function, subject, " ", name, tool.path(source)), 0)
    draft = only_draft_in(drafts)
    expect_draft(function, draft, subject, " ", [(name, JPEG)])
    return draft


def expect_sent(sender, function, subject, name):
    record.unlink(missing_ok=True)
    draft = expect_draft_of(sender, function, subject, name)
    path = "C:\\" + str(draft.relative_to(prefix.drive_c)).replace("/", "\\")
    check(f"{function}: opened", opened_draft(), path + "\n")


try:
    source.write_bytes(JPEG)
    drafts = prefix.empty_drafts()
    # Left over from a run before.
    prefix("reg.exe", "delete", r"HKCR\.eml", "/f", check=False)

    before = prefix.clients()
    check("register", tool("register", dll), 0)

    # Nobody sees this prefix's windows: a message about the missing program would stay there for ever.
    expect_draft_of(tool, "send", "No program for messages", "Page-1.jpg")

    prefix.empty_drafts()
    check("documents", tool("documents", "First.jpg", tool.path(source), "Second.jpg", tool.path(source)), 0)
    expect_draft("documents", only_draft_in(drafts), "", "", [("First.jpg", JPEG), ("Second.jpg", JPEG)])

    prefix("reg.exe", "add", r"HKCR\.eml", "/ve", "/d", "TestMailProgram", "/f")
    prefix("reg.exe", "add", r"HKCR\TestMailProgram\shell\open\command", "/ve", "/f",
           "/d", f'"{tool.path(sys.argv[3])}" opened "{tool.path(record)}" "%1"')
    expect_sent(tool, "send", "Invoices caf\u00e9", "Page-1.jpg")
    expect_sent(utf8_tool, "send", "Faktury \u0159\u00edjen \u4e2d", "P\u0159\u00edloha.jpg")
    expect_sent(tool, "sendw", "Faktury \u0159\u00edjen", "P\u0159\u00edloha \u4e2d.jpg")

    check("missing attachment", tool("send", "S", " ", "a.jpg", tool.path(prefix.folder / "none")), NOT_FOUND)
    check("drafts after a failure", len(list(drafts.iterdir())), 1)
    prefix.empty_drafts().write_bytes(b"a file in the place of the folder")
    check("no folder for drafts", tool("send", "S", " ", "a.jpg", tool.path(source)), ACCESS_DENIED)

    check("unregister", tool("unregister"), 0)
    check("clients after unregistering", prefix.clients(), before)
finally:
    prefix.end()
