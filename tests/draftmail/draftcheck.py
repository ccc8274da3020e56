"""Running draft_tool, and reading drafts with Python's email package."""
import email
import email.policy
import os
import re
import subprocess

os.environ["LC_ALL"] = "C.UTF-8"
# What the fields of a draft look like whatever is in it.
SENT_BY_NOBODY = re.compile(rb"X-Unsent: 1\r\nDate: [A-Z][a-z]{2}, \d{1,2} [A-Z][a-z]{2} \d{4} \d\d:\d\d:\d\d [+-]\d{4}\r\n"
                            rb"Message-ID: <[0-9a-f]{32}@draftmail\.invalid>\r\n")


def check(what, found, expected):
    if found != expected:
        raise SystemExit(f"{what}: {found!r:.1000} instead of {expected!r:.1000}")


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
            check(f"{case}: defects of {name}", list(value.defects), [])
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
        check(f"{case}: disposition of {name}", part.get_content_disposition(), "attachment")
        # Not with check(), which would print megabytes.
        if part.get_payload(decode=True) != data:
            raise SystemExit(f"{case}: {name} differs")
