"""Running draft_tool in a Wine prefix, and reading drafts with Python's email package."""
import email
import email.header
import email.policy
import os
import pathlib
import re
import shutil
import subprocess

os.environ["LC_ALL"] = "C.UTF-8"
# What the fields of a draft look like whatever is in it.
SENT_BY_NOBODY = re.compile(rb"X-Unsent: 1\r\nDate: [A-Z][a-z]{2}, \d{1,2} [A-Z][a-z]{2} \d{4} \d\d:\d\d:\d\d [+-]\d{4}\r\n"
                            rb"Message-ID: <[0-9a-f]{32}@draftmail\.invalid>\r\n")

# Of the parameter "name". Encoded words between quotes are in no standard, but it is there that mail programs look for
# a name that they do not find in the standard's form. Python reads them too, and calls them defects.
KNOWN_DEFECTS = ("encoded word inside quoted string", "missing trailing whitespace after encoded-word")


def check(what, found, expected):
    if found != expected:
        raise SystemExit(f"{what}: {found!r:.1000} instead of {expected!r:.1000}")


class Prefix:
    """A Wine prefix in a folder of its own, for what is the whole prefix's: mail client, documents, programs for files."""

    def __init__(self, wine_run, folder):
        self.folder = pathlib.Path(folder).resolve()
        self.wine_run = [wine_run, str(self.folder)]
        self.drive_c = self.folder / "wine-null" / "drive_c"
        # Makes the prefix if there is none yet.
        self("cmd.exe", "/c", "exit")
        (self.documents,) = (path for path in self.drive_c.glob("users/*/Documents") if path.parent.name != "Public")
        check("documents outside of the prefix", self.documents.is_symlink(), False)

    def __call__(self, *words, check=True):
        subprocess.run([*self.wine_run, *words], check=check, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                       timeout=100)

    def empty_drafts(self):
        """Returns the folder that drafts go to, which is not there."""
        drafts = self.documents / "Drafts"
        drafts.unlink(missing_ok=True) if drafts.is_file() else shutil.rmtree(drafts, ignore_errors=True)
        return drafts

    def clients(self):
        """The registry's part about programs like the mail client."""
        exported = self.folder / "clients.reg"
        exported.unlink(missing_ok=True)
        self("reg.exe", "export", r"HKLM\Software\Clients", Tool.path(exported), "/y")
        return exported.read_bytes()

    def end(self):
        subprocess.run(["wineserver", "-k"], env={**os.environ, "WINEPREFIX": str(self.folder / "wine-null")})


class Tool:
    """Calls draft_tool; a call returns the code that it printed."""

    def __init__(self, program):
        self.program = program

    @staticmethod
    def path(path):
        return str(path) if os.name == "nt" else "Z:" + str(path).replace("/", "\\")

    def __call__(self, *words):
        done = subprocess.run([*self.program, *words], capture_output=True, text=True, timeout=100)
        if done.returncode:
            raise SystemExit(f"draft_tool {words!r:.1000} ended with {done.returncode}:\n{done.stderr}")
        return int(done.stdout)


def only_draft_in(folder):
    found = list(folder.iterdir())
    if len(found) != 1 or found[0].suffix != ".eml":
        raise SystemExit(f"{folder} holds {found} instead of one draft")
    return found[0]


def expect_draft(case, path, subject, note, attachments):
    content = path.read_bytes()
    if not SENT_BY_NOBODY.match(content):
        raise SystemExit(f"{case}: the draft begins with {content[:300]!r}")
    check(f"{case}: line ends", re.sub(rb"\r\n", b"", content).translate(None, b"\r\n"), content.replace(b"\r\n", b""))
    longest = max(len(line) for line in content.split(b"\r\n"))
    if longest > 76:
        raise SystemExit(f"{case}: a line has {longest} columns")

    message = email.message_from_bytes(content, policy=email.policy.default)
    for part in message.walk():
        check(f"{case}: defects", part.defects, [])
        for name, value in part.items():
            known = KNOWN_DEFECTS if name == "Content-Type" else ()
            check(f"{case}: defects of {name}", [str(each) for each in value.defects if str(each) not in known], [])
    check(f"{case}: subject", message["Subject"], subject or None)
    check(f"{case}: version", message["MIME-Version"], "1.0")
    check(f"{case}: sender", message["From"], None)
    text, *parts = message.iter_parts() if attachments else [message]
    check(f"{case}: type of the note", text.get_content_type(), "text/plain")
    lines = note.replace("\r\n", "\n").replace("\r", "\n")
    found = text.get_payload(decode=True).decode().replace("\r\n", "\n")
    # A message of nothing but its note ends with a line's end.
    check(f"{case}: note", found, lines if attachments or found == lines else lines + "\n")
    # get_filename() would take blanks off their ends.
    found = [part["Content-Disposition"].params["filename"] for part in parts]
    check(f"{case}: names", found, [name for name, _ in attachments])
    for part, (name, data) in zip(parts, attachments):
        check(f"{case}: name for other readers", part["Content-Type"].params["name"], name)
        check(f"{case}: disposition of {name}", part.get_content_disposition(), "attachment")
        # Not with check(), which would print megabytes.
        if part.get_payload(decode=True) != data:
            raise SystemExit(f"{case}: {name} differs")
