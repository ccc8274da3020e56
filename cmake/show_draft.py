#!/usr/bin/env python3
"""Prints the header fields of a mail message and the sizes and names of its attachments: show_draft.py FILE"""
import email
import email.policy
import sys

with open(sys.argv[1], "rb") as file:
    message = email.message_from_binary_file(file, policy=email.policy.default)
print(f"Draft: {sys.argv[1]}")
for name, value in message.items():
    print(f"  {name}: {value}")
for part in message.iter_attachments():
    print(f"{len(part.get_payload(decode=True)):9}  {part.get_filename()}")
