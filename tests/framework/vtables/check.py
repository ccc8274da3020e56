#!/usr/bin/env python3
"""Compares the tables of virtual operations and the order of fields with expected.txt, as the Microsoft C++ ABI
lays them out.

Hosts and components are built by different compilers and meet through these tables alone, so a slot that moves
calls the wrong operation without any compiler or linker noticing. Of the fields only the order counts.

    check.py --clang clang++ --mingw x86_64-w64-mingw32-g++ -I DIR...   exits with 1 and a diff on a difference
    check.py ... --print                                                prints the layouts as they are now
"""
import argparse
import difflib
import os
import re
import subprocess
import sys

HERE = os.path.dirname(os.path.abspath(__file__))


def system_includes(mingw):
    """The directories in which the cross-compiler finds its libraries' headers."""
    report = subprocess.run([mingw, "-E", "-v", "-x", "c++", os.devnull], check=True, text=True,
                            stdout=subprocess.DEVNULL, stderr=subprocess.PIPE,
                            env={**os.environ, "LC_ALL": "C"}).stderr
    listed = report.split("#include <...> search starts here:")[1].split("End of search list.")[0].split()
    # gcc's own intrinsics mean nothing to clang, which has its own.
    own = [path for path in listed if os.path.exists(os.path.join(path, "x86intrin.h"))]
    own += [path + "-fixed" for path in own]
    return [path for path in listed if path not in own]


def dump(options):
    command = [options.clang, "--target=x86_64-pc-windows-msvc", "-std=gnu++20", "-w"]
    # The libraries' headers are mingw's: clang has to look like gcc to them, with Microsoft's ABI beneath.
    command += ["-U_MSC_VER", "-fgnuc-version=12.2.0", "-D__MINGW32__", "-D__MINGW64__", "-D__declspec=__declspec"]
    command += ["-DUNICODE", "-D_UNICODE", "-DNOMINMAX", "-DWIN32_LEAN_AND_MEAN"]
    command += [f"-D{library}_API=" for library in ("SORVANEBASE", "SORVANECOMMON", "BXIMAGE")]
    for path in system_includes(options.mingw):
        command += ["-isystem", path]
    command += [f"-I{path}" for path in options.include]
    for layouts in ("vtable", "record"):
        command += ["-Xclang", f"-fdump-{layouts}-layouts"]
    command += ["-S", "-o", os.devnull, os.path.join(HERE, "contracts.cpp")]
    result = subprocess.run(command, text=True, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    if result.returncode:
        sys.exit(result.stderr)
    return result.stdout


def tables(text):
    """A heading per table, and slot and operation of each entry."""
    found = {}
    for match in re.finditer(r"^VFTable for (.*) \(\d+ entr\w+\)\.\n((?:.+\n)*)", text, re.MULTILINE):
        classes = re.findall(r"'([^']+)'", match[1])
        entries = re.findall(r"^ *\d+ \| (.*)$", match[2], re.MULTILINE)
        owner = entries[0].removesuffix(" RTTI")
        if owner.startswith("std::"):
            continue
        # A class that has tables of several bases is listed once for each of them.
        heading = owner if owner == classes[0] else f"{owner} through {classes[0]}"
        operations = [re.sub(r" \[T = [^]]+\]| \[scalar deleting\]", "", entry) for entry in entries[1:]]
        if owner == "bxbase::ReferencedImpl":
            heading = f"bxbase::ReferencedImpl<{classes[-2]}> through {classes[0]}"
        found[heading] = [f"{slot:4} {operation}" for slot, operation in enumerate(operations)]
    return found


def fields(text):
    """A heading per class that has fields of its own in the contract, and its fields with those of its bases."""
    found = {}
    for match in re.finditer(r"^\*\*\* Dumping AST Record Layout\n((?:.*\|.*\n)*)", text, re.MULTILINE):
        lines = re.findall(r"^ *\d+ \| ( *)(.*)$", re.sub(r"\b(class|struct) ", "", match[1]), re.MULTILINE)
        owner = lines[0][1]
        if not owner.startswith(("ExportUtils::", "bxbase::ReferencedImpl<", "ExportToDirectoryData",
                                 "ExportToMailData", "SorvaneMail", "MailAttachment")):
            continue
        # Two blanks deeper for everything that lies inside the line before; what lies inside a field is its own
        # business, what lies inside a base belongs to the class.
        inside = 2
        own = found[f"{owner}, fields in order"] = []
        for indent, line in lines[1:]:
            if len(indent) > inside:
                continue
            if re.search(r"\((primary |virtual )?base\)", line):
                inside = len(indent) + 2
            elif not line.startswith("("):
                inside = len(indent)
                own.append(f"     {line}")
    return found


def layouts(text):
    """Tables and fields in the form of expected.txt."""
    return "".join(f"{heading}\n" + "".join(f"{line}\n" for line in lines) + "\n"
                   for heading, lines in sorted({**tables(text), **fields(text)}.items()))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--clang", required=True)
    parser.add_argument("--mingw", required=True)
    parser.add_argument("-I", dest="include", action="append", default=[])
    parser.add_argument("--print", action="store_true")
    options = parser.parse_args()

    actual = layouts(dump(options))
    if options.print:
        print(actual, end="")
        return
    with open(os.path.join(HERE, "expected.txt"), encoding="utf-8") as file:
        expected = file.read()
    if actual == expected:
        return
    sys.stdout.writelines(difflib.unified_diff(expected.splitlines(True), actual.splitlines(True),
                                               "the contract", "the headers", n=12))
    sys.exit(1)


if __name__ == "__main__":
    main()
