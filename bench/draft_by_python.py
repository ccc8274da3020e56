#!/usr/bin/python3
"""Writes a draft with all files of a folder as its attachments and prints how many seconds Python's email package took.

draft_by_python.py PAGES DRAFT
"""
import email.generator
import email.message
import email.policy
import os
import sys
import time
from pathlib import Path

pages = sorted(Path(sys.argv[1]).iterdir())
start = time.perf_counter()
message = email.message.EmailMessage(policy=email.policy.SMTP)
message["X-Unsent"] = "1"
message["Subject"] = "Pages"
message.set_content(" ")
for page in pages:
    message.add_attachment(page.read_bytes(), maintype="image", subtype="tiff", filename=page.name)
with open(sys.argv[2], "wb") as draft:
    email.generator.BytesGenerator(draft).flatten(message)
    # The mail client waits for the disk as well.
    draft.flush()
    os.fsync(draft.fileno())
print(f"{time.perf_counter() - start:.6f}")
