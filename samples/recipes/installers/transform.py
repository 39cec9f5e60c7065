#!/usr/bin/env python3
"""Makes a transform (.mst) that gives properties of a Windows Installer package other values.

usage: transform.py PACKAGE.msi TRANSFORM.mst NAME=value ...

The properties must be in the package's table Property. A transform is a structured storage whose streams hold the
changed rows, their strings and a summary; makers of packages have tools for it (msitran, Orca), which Linux lacks.
"""
import struct
import subprocess
import sys

SECTOR, SMALL = 512, 64  # bytes of a sector, and of one of the small streams' stream
FREE, END, FAT = 0xffffffff, 0xfffffffe, 0xfffffffd
TRANSFORM = bytes.fromhex('82100c00 00000000 c0000000 00000046')  # the class of the storage
SUMMARY = bytes.fromhex('e0859ff2 f94f6810 ab910800 2b27b3d9')  # the format of a summary
LETTERS = '0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz._'


def table_stream(name):
    """The name of a table's stream: a mark, and two letters in each character."""
    codes = [LETTERS.index(letter) for letter in name]
    pairs = [codes[at:at + 2] for at in range(0, len(codes), 2)]
    return '\u4840' + ''.join(chr(0x3800 + pair[0] + (pair[1] << 6) if len(pair) == 2 else 0x4800 + pair[0])
                              for pair in pairs)


def padded(data, size, fill=b'\0'):
    return data + fill * (-len(data) % size)


def text_property(text):
    data = text.encode('cp1252') + b'\0'
    return padded(struct.pack('<II', 30, len(data)) + data, 4)


def summary(template, revision):
    """The summary stream: code page, title, template, revision, the oldest installer that knows the form, no checks."""
    values = ((1, struct.pack('<II', 2, 1252)), (2, text_property('Transform')), (7, text_property(template)),
              (9, text_property(revision)), (14, struct.pack('<II', 3, 200)), (16, struct.pack('<II', 3, 0)))
    index, data = b'', b''
    for number, value in values:
        index += struct.pack('<II', number, 8 + 8 * len(values) + len(data))
        data += value
    section = struct.pack('<II', 8 + len(index) + len(data), len(values)) + index + data
    return struct.pack('<HHI', 0xfffe, 0, 0x00020005) + bytes(16) + struct.pack('<I', 1) + SUMMARY + struct.pack('<I', 48) + section


def changed_properties(properties):
    """The streams of a transform: rows of Property whose second column is new, and the strings that they name."""
    strings = [text for pair in properties.items() for text in pair]
    pool = struct.pack('<HH', 1252, 0) + b''.join(struct.pack('<HH', len(text), 1) for text in strings)
    rows = b''.join(struct.pack('<HHH', 2, 2 * row + 1, 2 * row + 2) for row in range(len(properties)))
    return {table_stream('_StringPool'): pool, table_stream('_StringData'): ''.join(strings).encode('cp1252'),
            table_stream('Property'): rows}


def chained(first, count):
    """The entries of an allocation table for that many sectors in a row."""
    return list(range(first + 1, first + count)) + [END] if count else []


def directory(streams, places, small_size):
    """The storage and its streams, each the right-hand neighbour of the one before it: shorter names come first."""
    names = sorted(streams, key=lambda name: (len(name), name.upper()))
    entries = [('Root Entry', 5, 1, TRANSFORM, 0 if not small_size else places[None], small_size, FREE)]
    for at, name in enumerate(names, 1):
        entries.append((name, 2, FREE, bytes(16), places[name], len(streams[name]), at + 1 if at < len(names) else FREE))
    data = b''
    for name, kind, child, form, start, size, right in entries:
        text = name.encode('utf-16-le')
        data += struct.pack('<64sHBBIII16sI16xIQ', text, len(text) + 2, kind, 1, FREE, right, child, form, 0, start, size)
    unused = struct.pack('<64sHBBIII16sI16xIQ', b'', 0, 0, 0, FREE, FREE, FREE, bytes(16), 0, 0, 0)
    return padded(data, SECTOR, b'') + unused * (-len(entries) % (SECTOR // 128))


def storage(streams):
    """A structured storage of small streams: header, allocation table, directory, the small streams' own table and bytes."""
    places, small, small_table = {}, b'', []
    for name, data in streams.items():
        places[name] = len(small) // SMALL
        small_table += chained(places[name], -(-len(data) // SMALL))
        small += padded(data, SMALL)
    small = padded(small, SECTOR)
    small_table = padded(struct.pack('<%dI' % len(small_table), *small_table), SECTOR, b'\xff')
    directories = 128 * (len(streams) + 1 + -(len(streams) + 1) % 4) // SECTOR
    places[None] = 1 + directories + len(small_table) // SECTOR
    sizes = (directories, len(small_table) // SECTOR, len(small) // SECTOR)
    table, first = [FAT], 1
    for size in sizes:
        table += chained(first, size)
        first += size
    table = padded(struct.pack('<%dI' % len(table), *table), SECTOR, b'\xff')
    header = bytes.fromhex('d0cf11e0a1b11ae1') + bytes(16) + struct.pack(
        '<HHHHHHIIIIIIIIIII', 0x3e, 3, 0xfffe, 9, 6, 0, 0, 0, 1, 1, 0, 4096, 1 + directories, sizes[1], END, 0, 0)
    header = header[:SECTOR] + b'\xff' * (SECTOR - len(header))
    return header + table + directory(streams, places, len(small)) + small_table + small


def property_of(package, name):
    table = subprocess.run(['msiinfo', 'export', package, 'Property'], capture_output=True, text=True, check=True).stdout
    rows = dict(line.split('\t', 1) for line in table.splitlines()[3:])
    if name not in rows:
        sys.exit('%s: its table Property has no %s' % (package, name))
    return rows[name]


def main(package, transform, *changes):
    properties = dict(change.split('=', 1) for change in changes)
    for name in properties:
        property_of(package, name)
    product = property_of(package, 'ProductCode') + property_of(package, 'ProductVersion')
    streams = changed_properties(properties)
    streams['\5SummaryInformation'] = summary(';1033', product + ';' + product + ';')
    with open(transform, 'wb') as file:
        file.write(storage(streams))


main(*sys.argv[1:])
