#!/usr/bin/env python3
"""Audits what the shipped 32-bit program asks of the system that loads it.

  imports.py PROGRAM.EXE   checks the program against imports.tsv beside this file
  imports.py --self-test   checks that the audit finds what it is there to find

A function that an old system lacks keeps the whole program from starting there, whether it is ever called or not. So
every import is listed in imports.tsv with the first system of the Windows 95 family and of the NT family that exports
it, and everything else fails: a DLL, name or ordinal that is not listed, a listed one above the floor, a listed one that
is no longer imported, and a file that old systems would refuse for its headers. What is newer than the floor is loaded
at run time instead (platform/win32/system_library.h).
"""
import pathlib
import struct
import subprocess
import sys
import tempfile

LIST = pathlib.Path(__file__).with_name("imports.tsv")

# Systems of each family, oldest first. 95OSR2 is a later edition of Windows 95 that cannot be had as an update; SP is
# some service pack; 98* is 98, or 95 with a redistributable. "-" (never in this family) and any other mark fail.
WINDOWS_95_FAMILY = ["95", "95OSR2", "98*", "98", "ME"]
NT_FAMILY = ["NT3", "NT4", "NT4SP", "2000", "2000SP", "XP", "XPSP", "2003", "2003SP"]

# The newest marks that the floor (Windows 95, NT 3.51) allows. The C runtime is the exception: neither system has it
# out of the box, both get the whole library from one redistributable that such machines were given with Windows
# Installer or Internet Explorer.
FLOOR = ("95", "NT3")
FLOOR_OF = {"msvcrt.dll": ("98*", "NT4")}

PE32 = 0x10B
I386 = 0x14C
SUBSYSTEM_VERSION = (4, 0)
IMPORTS, DELAY_IMPORTS = 1, 13  # places in the table of data directories
OPTIONAL_SUBSYSTEM_VERSION, OPTIONAL_DLL_CHARACTERISTICS, OPTIONAL_DIRECTORIES = 48, 70, 96


class Image:
    """The headers and imports of a PE32 file."""

    def __init__(self, data):
        self.data = data
        header = self.number("<I", 0x3C)
        if data[:2] != b"MZ" or data[header : header + 4] != b"PE\0\0":
            raise ValueError("not a Windows program")
        self.optional = header + 24
        self.sections = self.optional + self.number("<H", header + 20)
        self.section_count = self.number("<H", header + 6)
        if (self.number("<H", header + 4), self.number("<H", self.optional)) != (I386, PE32):
            raise ValueError("not a 32-bit program (PE32 for i386)")
        self.subsystem_version = struct.unpack_from("<HH", data, self.optional + OPTIONAL_SUBSYSTEM_VERSION)
        self.dll_characteristics = self.number("<H", self.optional + OPTIONAL_DLL_CHARACTERISTICS)

    def number(self, form, offset):
        return struct.unpack_from(form, self.data, offset)[0]

    def directory(self, index):
        return struct.unpack_from("<II", self.data, self.optional + OPTIONAL_DIRECTORIES + 8 * index)

    def offset(self, address):
        for i in range(self.section_count):
            size, start, raw_size, raw = struct.unpack_from("<IIII", self.data, self.sections + 40 * i + 8)
            if start <= address < start + max(size, raw_size):
                return raw + address - start
        raise ValueError(f"address {address:#x} lies in no section")

    def text(self, address):
        start = self.offset(address)
        return self.data[start : self.data.index(b"\0", start)].decode("latin-1")

    def imports(self):
        """Yields (dll, name) in lower case and as it stands; an import by number has the name "#number"."""
        descriptor = self.offset(self.directory(IMPORTS)[0])
        while True:
            names, _, _, dll, addresses = struct.unpack_from("<5I", self.data, descriptor)
            if dll == 0:
                return
            thunk = self.offset(names or addresses)
            while value := self.number("<I", thunk):
                by_number = value & 0x80000000
                yield self.text(dll).lower(), f"#{value & 0xFFFF}" if by_number else self.text(value + 2)
                thunk += 4
            descriptor += 20


def read_list(text):
    rows = {}
    for number, line in enumerate(text.splitlines(), 1):
        if not line or line.startswith("#"):
            continue
        fields = line.split("\t")
        if len(fields) != 4 or (fields[0], fields[1]) in rows:
            raise ValueError(f"{LIST.name} line {number} is not a row of its own: dll, function, first 9x, first NT")
        rows[fields[0], fields[1]] = (fields[2], fields[3])
    return rows


def above_floor(dll, first_systems):
    floor = FLOOR_OF.get(dll, FLOOR)
    for family, first, newest in zip((WINDOWS_95_FAMILY, NT_FAMILY), first_systems, floor):
        if first not in family or family.index(first) > family.index(newest):
            return True
    return False


def header_findings(image):
    if image.subsystem_version != SUBSYSTEM_VERSION:
        yield "subsystem version is %d.%d, must be 4.0 (linker option --major-subsystem-version)" % image.subsystem_version
    if image.dll_characteristics != 0:
        yield f"DllCharacteristics are {image.dll_characteristics:#x}, must be 0 (--disable-dynamicbase, --disable-nxcompat)"
    if image.directory(DELAY_IMPORTS) != (0, 0):
        yield "there are delay imports"


def import_findings(imported, rows):
    for dll, name in sorted(imported):
        if (dll, name) not in rows:
            yield f"{dll} {name} is not listed in {LIST.name}: load it at run time, or list it with its first systems"
        elif above_floor(dll, rows[dll, name]):
            yield "%s %s is above the floor: first in %s and %s" % (dll, name, *rows[dll, name])
    for dll, name in sorted(rows.keys() - imported):
        yield f"{dll} {name} is listed in {LIST.name} and unused"


def audit(data, rows):
    try:
        image = Image(data)
        return [*header_findings(image), *import_findings(set(image.imports()), rows)]
    except (ValueError, struct.error) as problem:
        return [f"cannot be audited: {problem}"]


# --- the test of the audit itself -------------------------------------------------------------------------------------

POSIX_COMPILER = "i686-w64-mingw32-g++-posix"
LINK = ("-O2 -static -s -Wl,--major-os-version=4,--minor-os-version=0,--major-subsystem-version=4,"
        "--minor-subsystem-version=0,--disable-dynamicbase,--disable-nxcompat").split()
SOURCE = """#include <cstdio>
#include <string>
int main(int, char** arguments) { return std::puts((std::string("at ") + arguments[0]).c_str()); }
"""


def build_posix_program():
    """A program of strings only, in the thread model that must not be used."""
    with tempfile.TemporaryDirectory() as folder:
        source, program = pathlib.Path(folder, "posix.cpp"), pathlib.Path(folder, "posix.exe")
        source.write_text(SOURCE)
        subprocess.run([POSIX_COMPILER, "-std=c++20", "-o", program, source, *LINK], check=True)
        return program.read_bytes()


def patched(data, offset, replacement):
    return data[:offset] + replacement + data[offset + len(replacement) :]


def cases(data):
    """(what is wrong, program, list, text that the only finding must hold; None where there must be none)."""
    image = Image(data)
    rows = {entry: FLOOR for entry in image.imports()}
    sleep, c_runtime = ("kernel32.dll", "Sleep"), ("msvcrt.dll", "malloc")
    at = image.optional
    names = image.number("<I", image.offset(image.directory(IMPORTS)[0]))
    first = next(image.imports())
    without_first = {entry: systems for entry, systems in rows.items() if entry != first}

    def raised(entry, *systems):
        return {**rows, entry: systems}

    yield "nothing", data, rows, None
    yield "C runtime as a redistributable", data, raised(c_runtime, "98*", "NT4"), None
    for systems in ("98", "NT3"), ("95OSR2", "NT3"), ("98*", "NT3"), ("-", "NT3"), ("95", "NT4"), ("95", "NT4SP"), ("95", "?"):
        yield f"first in {systems}", data, raised(sleep, *systems), "Sleep is above the floor"
    yield "C runtime of 98", data, raised(c_runtime, "98", "NT4"), "malloc is above the floor"
    yield "name not listed", data, without_first, f"{first[1]} is not listed"
    yield "unused row", data, {**rows, ("ws2_32.dll", "send"): FLOOR}, "ws2_32.dll send is listed"
    by_number = patched(data, image.offset(names), struct.pack("<I", 0x80000007))
    yield "import by number", by_number, without_first, "#7 is not listed"
    yield "subsystem 5.1", patched(data, at + OPTIONAL_SUBSYSTEM_VERSION, b"\5\0\1\0"), rows, "subsystem version is 5.1"
    yield "relocatable", patched(data, at + OPTIONAL_DLL_CHARACTERISTICS, b"\x40\0"), rows, "DllCharacteristics are 0x40"
    delay = at + OPTIONAL_DIRECTORIES + 8 * DELAY_IMPORTS
    yield "delay imports", patched(data, delay, b"\0\x10\0\0\x20\0\0\0"), rows, "delay imports"
    yield "64-bit headers", patched(data, at, b"\x0b\x02"), rows, "not a 32-bit program"
    yield "cut short", data[: at + 60], rows, "cannot be audited"


def self_test():
    try:
        data = build_posix_program()
    except (OSError, subprocess.CalledProcessError) as problem:
        print(f"The self-test needs {POSIX_COMPILER} (package g++-mingw-w64-i686-posix): {problem}")
        return 1
    failures = []
    if not any("GetTickCount64 is not listed" in finding for finding in audit(data, read_list(LIST.read_text()))):
        failures.append("a program in the posix thread model passes")
    for what, program, rows, expected in cases(data):
        findings = audit(program, rows)
        good = findings == [] if expected is None else len(findings) == 1 and expected in findings[0]
        if not good:
            failures.append(f"{what}: expected {expected!r}, found {findings}")
    print("\n".join(failures) or "The import audit finds what it must.")
    return 1 if failures else 0


def main(arguments):
    if arguments == ["--self-test"]:
        return self_test()
    if len(arguments) != 1 or arguments[0].startswith("-"):
        print(__doc__)
        return 2
    try:
        findings = audit(pathlib.Path(arguments[0]).read_bytes(), read_list(LIST.read_text()))
    except (OSError, ValueError) as problem:
        findings = [f"cannot be audited: {problem}"]
    for finding in findings:
        print(f"{arguments[0]}: {finding}")
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
