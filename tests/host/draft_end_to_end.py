#!/usr/bin/env python3
"""Exports pages to e-mail as a person without a mail client does: with scanexport, DraftMail and the system's MAPI32.DLL.

draft_end_to_end.py FOLDER WINE_RUN SCANEXPORT: has a Wine prefix in FOLDER, whose mail client becomes DraftMail.
"""
import pathlib
import shutil
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).parents[1] / "draftmail"))
from draftcheck import Prefix, Tool, check, expect_draft, only_draft_in  # noqa: E402

prefix = Prefix(sys.argv[2], sys.argv[1])
pages = prefix.folder / "Naskenovan\u00e9 \u00fa\u010dty"
TIFF = bytes(range(256)) * 2000
JPEG = bytes(reversed(range(256))) * 30
SUBJECT = "Faktury \u0159\u00edjen, \u20ac a \u4e2d"


def expect(code, output, errors, *words):
    """Runs scanexport."""
    done = subprocess.run([*prefix.wine_run, sys.argv[3], *words], capture_output=True, text=True, timeout=100,
                          stdin=subprocess.DEVNULL)
    check(f"{words}: errors", done.stderr.replace("\r", ""), errors)
    check(f"{words}: output", done.stdout.replace("\r", ""), output)
    check(f"{words}: exit code", done.returncode, code)


def expect_message(page_name, *words):
    drafts = prefix.empty_drafts()
    expect(0, "", "", *words, "--to-mail", "--subject", SUBJECT, Tool.path(pages))
    attachments = [(f"{page_name}-1.tif", TIFF), (f"{page_name}-2.jpg", JPEG)]
    expect_draft(words, only_draft_in(drafts), SUBJECT, " ", attachments)


try:
    # Left over from a run before.
    prefix(sys.argv[3], "--unregister-draft-mail", check=False)
    prefix("reg.exe", "delete", r"HKCR\.eml", "/f", check=False)
    shutil.rmtree(pages, ignore_errors=True)
    pages.mkdir()
    (pages / "str\u00e1nka 2.tif").write_bytes(TIFF)
    (pages / "str\u00e1nka 10.jpg").write_bytes(JPEG)

    before = prefix.clients()
    for _ in range(2):
        expect(0, "DraftMail is your mail client now. Messages become files in the folder Drafts among your "
               "documents.\n", "", "--register-draft-mail")

    expect_message("Page", "--lang", "en")
    expect_message("Strana", "--lang", "cs")
    expect_message("Page", "--lang", "en", "--max-size=1", "--yes")

    drafts = prefix.empty_drafts()
    expect(1, "", "scanexport: The pages exceed the limit of 1 KB for one e-mail, and the answer was No; --yes or "
           "--max-size 0 sends them.\n", "--lang=en", "--to-mail", "--max-size=1", Tool.path(pages))
    check("drafts without consent", drafts.exists(), False)

    expect(0, "DraftMail is no longer registered. Programs use the mail client from before, or a newer one, if any.\n", "",
           "--unregister-draft-mail")
    check("clients after unregistering", prefix.clients(), before)
    expect(1, "", "scanexport: DraftMail is not registered.\n", "--unregister-draft-mail")
finally:
    prefix.end()
