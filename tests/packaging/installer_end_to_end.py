#!/usr/bin/env python3
"""Installs, updates, uses and uninstalls the program as people do, and compares registry and files with those before.

installer_end_to_end.py FOLDER WINE_RUN CMAKE SETTINGS: has a Wine prefix in FOLDER, which is made afresh.
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).parents[1] / "draftmail"))
from draftcheck import Prefix, Tool, check  # noqa: E402

sources = pathlib.Path(__file__).resolve().parents[2]
folder = pathlib.Path(sys.argv[1]).resolve()
wine_run, cmake, settings = sys.argv[2:]
DEADLINE = 120
UNINSTALL_KEY = r"HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall\ScanHost"
MAIL_CLIENT_KEY = r"HKLM\Software\Clients\Mail\DraftMail"
SETTINGS_KEY = r"HKCU\Software\Sorvane"

# What the system does when programs run or end, installed or not.
OF_THE_SYSTEM = (
    # Wine's desktop describes the screen when the first window appears.
    r"HKLM\System\CurrentControlSet\Control\Class\{4D36E968-E325-11CE-BFC1-08002BE10318}",
    r"HKLM\System\CurrentControlSet\Control\Class\{4D36E96E-E325-11CE-BFC1-08002BE10318}",
    # Wine's consoles remember how they were shown.
    r"HKCU\Console",
    # An uninstaller runs from a copy, because a program cannot remove its own file. The copy is left to the system,
    # which notes here that it is to go at the next start.
    r"HKLM\System\CurrentControlSet\Control\Session Manager",
    r"\Temp\~nsu",
)


def wait_until(what, condition):
    end = time.monotonic() + DEADLINE
    while not condition():
        if time.monotonic() > end:
            raise SystemExit(f"{what}: not within {DEADLINE} s")
        time.sleep(0.1)


def make_installer(name, version, files):
    overrides = folder / f"{name}.cmake"
    overrides.write_text(f'''include("{settings}")
set(VERSION "{version}")
set(INSTALLER "{name}.exe")
set(PROGRAM_FILES "{";".join(map(str, files))}")
''')
    subprocess.run([cmake, "-D", f"SETTINGS={overrides}", "-D", f"OUTPUT={folder / name}",
                    "-P", sources / "cmake" / "MakeInstaller.cmake"], check=True)
    return folder / name / f"{name}.exe"


def start(program, *words):
    return subprocess.Popen([*prefix.wine_run, str(program), *words], stdin=subprocess.DEVNULL,
                            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def run(program, *words, code=0):
    check(f"{program} {words}: exit code", start(program, *words).wait(DEADLINE), code)


def is_running(program):
    """What runs cannot be opened for writing. Here nothing is appended, and any complaint counts."""
    return subprocess.run([*prefix.wine_run, "cmd.exe", "/c", f"type nul >>{of_windows(program)}"],
                          stdin=subprocess.DEVNULL, capture_output=True).stderr != b""


def start_program(name):
    process = start(installed / name)
    wait_until(f"{name} runs", lambda: is_running(installed / name))
    return process


def close_program(process, name):
    def is_closed():
        subprocess.run([*prefix.wine_run, "taskkill.exe", "/im", name], stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL, stdin=subprocess.DEVNULL)
        return process.poll() is not None
    wait_until(f"{name} closes", is_closed)
    check(f"{name}: exit code", process.returncode, 0)


def uninstall(*words):
    """As the system does: the uninstaller ends at once and goes on from its copy."""
    run(installed / "Uninstall.exe", "/S", *words)
    for copy in temporary_files.glob("~nsu*/*.exe"):
        wait_until("the uninstaller ends", lambda: not is_running(copy))


def registered(key, name):
    """The value; None when there is none."""
    # In the code page of Wine's consoles.
    done = subprocess.run([*prefix.wine_run, "reg.exe", "query", key, "/v", name], capture_output=True,
                          encoding="cp437", stdin=subprocess.DEVNULL)
    found = re.search(r"REG_\w+\s+(.*?)\s*$", done.stdout)
    return found[1] if done.returncode == 0 else None


def of_windows(path):
    return "C:\\" + str(path.relative_to(prefix.drive_c)).replace("/", "\\")


def files_below(path):
    return sorted(str(each.relative_to(path)) for each in path.rglob("*") if not each.is_dir())


def snapshot():
    """Everything in registry and files. The registry is written when Wine's session ends."""
    prefix.end()
    subprocess.run(["wineserver", "-w"], env={**os.environ, "WINEPREFIX": str(root)})
    found = {}
    for name, hive in (("user.reg", "HKCU"), ("system.reg", "HKLM")):
        key = None
        for line in (root / name).read_text(encoding="utf-8", errors="surrogateescape").splitlines():
            if line.startswith("["):
                key = hive + "\\" + line[1:].rsplit("]", 1)[0].replace("\\\\", "\\")
                found[key] = ""
            elif key and line and not line.startswith("#time="):
                found[key] += line + "\n"
    for path in prefix.drive_c.rglob("*"):
        status = path.lstat()
        found[of_windows(path)] = "folder" if path.is_dir() else f"{status.st_size} bytes of {status.st_mtime_ns} ns"
    return found


def changes(before, after):
    return sorted(name for name in before.keys() | after.keys() if before.get(name) != after.get(name)
                  and not any(place in name for place in OF_THE_SYSTEM))


prefix_folder = folder / "prefix"
root = prefix_folder / "wine-null"
subprocess.run(["wineserver", "-k"], env={**os.environ, "WINEPREFIX": str(root)}, stderr=subprocess.DEVNULL)
shutil.rmtree(folder, ignore_errors=True)
folder.mkdir(parents=True)
prefix = Prefix(wine_run, prefix_folder)
home = prefix.documents.parent
local_data = home / "AppData" / "Local"
(temporary_files,) = home.glob("[Tt]emp")
send_to_menu = home / "AppData" / "Roaming" / "Microsoft" / "Windows" / "SendTo"
send_to = send_to_menu / "Send scanned pages.lnk"
czech_send_to = send_to_menu / "Odeslat naskenovan\u00e9 strany.lnk"
installed = local_data / "Programs" / "ScanHost"
try:
    program_files = [pathlib.Path(name) for name in
                     re.search(r'PROGRAM_FILES "(.*)"', pathlib.Path(settings).read_text())[1].split(";")]
    retired = folder / "Retired.dll"
    shutil.copy(next(file for file in program_files if file.name == "BXImage.dll"), retired)
    older = make_installer("older", "0.9.8", [*program_files, retired])
    newer = make_installer("newer", "1.2.3", program_files)
    expected = sorted(["Uninstall.exe", *(file.name for file in program_files),
                       *(f"lang/{file.name}" for file in (sources / "host" / "lang").iterdir())])
    page = folder / "page.tif"
    page.write_bytes(b"page")
    before = snapshot()

    # A folder with a file of somebody else's that has the name of one of ours.
    taken = home / "taken"
    taken.mkdir()
    (taken / "toolkit.dll").write_text("somebody else's")
    run(older, "/S", f"/D={of_windows(taken)}", code=2)
    check("files in a taken folder", files_below(taken), ["toolkit.dll"])
    check("content of a taken file", (taken / "toolkit.dll").read_text(), "somebody else's")
    shutil.rmtree(taken)
    check("changes after an installation that was refused", changes(before, snapshot()), [])

    run(older, "/S", "/SENDTO", "/LANG=cs")
    check("files of the older version", files_below(installed), sorted([*expected, retired.name]))
    check("older version", registered(UNINSTALL_KEY, "DisplayVersion"), "0.9.8")
    check("target in the send-to menu",
          of_windows(installed / "ScanHost.exe").encode() in czech_send_to.read_bytes(), True)

    run(installed / "scanexport.exe", "--register-draft-mail")
    run(installed / "scanexport.exe", "--to-dir", Tool.path(folder / "exported"), Tool.path(page))
    common_data = prefix.drive_c / "ProgramData"
    attachments = [temporary_files / "Sorvane" / "ScanHost" / "run" / "attachment.tif",
                   common_data / "Sorvane-ScanHost-user" / "run" / "attachment.tif"]
    for attachment in attachments:
        attachment.parent.mkdir(parents=True)
        attachment.write_bytes(b"page")

    # While the program runs, nothing is changed.
    program = start_program("ScanHost.exe")
    run(newer, "/S", code=2)
    run(installed / "Uninstall.exe", "/S", "/SETTINGS", f"_?={of_windows(installed)}", code=2)
    check("files while the program runs", files_below(installed), sorted([*expected, retired.name]))
    check("version while the program runs", registered(UNINSTALL_KEY, "DisplayVersion"), "0.9.8")
    check("entry in the send-to menu while the program runs", czech_send_to.exists(), True)
    close_program(program, "ScanHost.exe")

    run(newer, "/S")
    check("files of the newer version", files_below(installed), expected)
    check("newer version", registered(UNINSTALL_KEY, "DisplayVersion"), "1.2.3")
    check("entries in the send-to menu after an update in another language",
          [send_to.exists(), czech_send_to.exists()], [True, False])
    check("mail client after the update", registered(MAIL_CLIENT_KEY, "DLLPath"),
          of_windows(installed / "DraftMail.dll"))

    # To another folder.
    left = installed
    installed = home / "Skenov\u00e1n\u00ed"
    run(newer, "/S", f"/D={of_windows(installed)}")
    check("the folder from before", left.exists(), False)
    check("files in the other folder", files_below(installed), expected)
    check("mail client in the other folder", registered(MAIL_CLIENT_KEY, "DLLPath"),
          of_windows(installed / "DraftMail.dll"))

    note = installed / "lang" / "note.txt"
    note.write_text("somebody else's")
    uninstall()
    left = snapshot()
    places = (of_windows(installed), SETTINGS_KEY, of_windows(local_data / "Sorvane"),
              of_windows(temporary_files / "Sorvane"), of_windows(common_data / "Sorvane-ScanHost-user"))
    check("what is left besides settings, log, temporary files and somebody else's file",
          [name for name in changes(before, left) if not name.startswith(places)], [])
    check("files left in the folder", files_below(installed), ["lang/note.txt"])
    check("settings are left", any(name.startswith(SETTINGS_KEY) for name in left), True)
    check("temporary files are left", [attachment.exists() for attachment in attachments], [True, True])
    note.unlink()

    installed = home / "AppData" / "Local" / "Programs" / "ScanHost"
    run(newer, "/S")
    check("the entry in the send-to menu, which nobody wished for", send_to.exists(), False)
    uninstall("/SETTINGS")
    for path in (home / "Skenov\u00e1n\u00ed" / "lang", home / "Skenov\u00e1n\u00ed"):
        path.rmdir()
    check("traces", changes(before, snapshot()), [])
finally:
    prefix.end()
