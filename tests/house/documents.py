#!/usr/bin/env python3
"""What users are told equals what the code's tables say: switches, exit codes, ini keys with their defaults, names of registry
values, numbers of errors. A table of a document that is not found is a failure."""
import re
import sys

import code_tables
import error_numbers
import pages
import tree

GUIDE, INI, REGISTRY = 'docs/operators-guide.md', 'docs/ini-reference.md', 'docs/registry-reference.md'

_MARKED = re.compile(r'`([^`]+)`')


def part(text, heading):
    """What stands under a heading, its sub-headings left out; None when there is no such heading."""
    found = re.search(r'^#+ %s\n(.*?)(?=^#|\Z)' % re.escape(heading), text, re.S | re.M)
    return found.group(1) if found else None


def rows_of(document, text, heading, head):
    """The rows of all tables under a heading whose first column has that head, as {head of the column: cell}."""
    tables = [table for table in pages.tables(part(text, heading) or '') if table[0][1][0] == head]
    rows = [dict(zip(table[0][1], cells)) for table in tables for _, cells in table[1:]]
    if not rows:
        raise code_tables.NotFound('%s: no table "%s" under "%s"' % (document, head, heading))
    return rows


def names_of(rows, column):
    return {name for row in rows for name in _MARKED.findall(row[column])}


def differences(document, what, told, known):
    """Both ways: what the document alone has, and what the code alone has."""
    return (['%s: %s `%s` is not in the code' % (document, what, one) for one in sorted(map(str, set(told) - set(known)))] +
            ['%s: %s `%s` is missing' % (document, what, one) for one in sorted(map(str, set(known) - set(told)))])


def switch_problems(guide, source, core):
    """`core` are (path, text) pairs of the code that may look for a switch."""
    known = code_tables.switches(source)
    told = names_of(rows_of(GUIDE, guide, 'Starting it', 'switch'), 'switch')
    found = differences(GUIDE, 'switch', told, known)
    for path, text in core:
        found += ['%s: "%s" is spelt again: use the table of core/switches.h' % (path, spelt)
                  for spelt in re.findall(r'"(/(?:\w+|\?)=?)"', text)]
    return found


def exit_code_problems(guide, source, core):
    known = code_tables.exit_codes(source)
    told = [int(row['code']) for row in rows_of(GUIDE, guide, 'Exit codes', 'code')]
    found = differences(GUIDE, 'exit code', told, known)
    for path, text in core:
        found += ['%s: an exit code as a number: use core/exit_codes.h' % path
                  for _ in re.findall(r'exitCode = [1-9]|return \{?\d+, restart', text)]
    return found


KEYS = (  # the key as the code names it, the heading of its values
    ('Installation', 'Software\\Tarvel\\Installation'),
    ('Products', 'Software\\Tarvel\\Installation\\Products'),
    ('Product', 'Products\\\\<product>'),
)
COMPONENT = 'Products\\\\<product>\\\\<component>'


def registry_problems(text, values, component, closedown):
    """`values` and `component` as code_tables gives them; `closedown` is the text of the procedure that resets values."""
    found = []
    for key, heading in KEYS:
        rows = rows_of(REGISTRY, text, heading, 'value')
        told = {name: row['cleared'] for row in rows for name in _MARKED.findall(row['value'])}
        known = {value.name: (constant, value) for constant, value in values.items() if value.key == key}
        found += differences(REGISTRY, 'under "%s" the value' % heading, told, known)
        for name in sorted(set(told) & set(known)):
            constant, value = known[name]
            for word, end in (('emptied', 'Emptied'), ('removed', 'Removed')):
                cleared = re.search(word + r'\b[^;.]*\bat closedown', told[name]) is not None
                by_hand = re.search(r'Value::%s\b' % constant, closedown) is not None
                if cleared != (value.closedown == end) and not (cleared and by_hand):
                    found.append('%s: `%s` is%s %s at closedown' % (REGISTRY, name, '' if value.closedown == end else ' not', word))
    names, sub_keys, _ = component
    for column, known in (('value', names), ('sub-key', sub_keys)):
        told = names_of(rows_of(REGISTRY, text, COMPONENT, column), column)
        found += differences(REGISTRY, "the component's " + column, told, known)
    return found


def elsewhere_problems(text, files):
    """Names of values outside the records: `files` are (path, text) pairs, in which each of them is spelt."""
    told = names_of(rows_of(REGISTRY, text, 'Elsewhere', 'key'), 'value')
    known = {name for _, source in files for name in re.findall(r'^ +\{"([A-Z][\w ]*)", (?:\{|account|"1")', source, re.M)}
    if not known:
        raise code_tables.NotFound('no table of values of the system was found in the code')
    spelt = {name for _, source in files for name in re.findall(r'"([A-Z][\w ]*)"', source)}
    return differences(REGISTRY, 'elsewhere the value', told, known | (told & spelt))


INI_TABLES = (  # heading, head of the first column, ini file, section; None: the key's cell names it
    ('[Product]', 'key', 'application', 'Product'),
    ('[Config]', 'key', 'application', 'Config'),
    ('Product ini', 'section and key', 'product', None),
    ('[PreInstallActions]', 'key', 'product', '*'),
    ('[Connection]', 'key', 'product', 'Connection'),
    ('Component ini', 'key', 'component', ''),
)
# What a person reads for a key that is not given: each means one of "", N/A and <ERROR>.
NOT_GIVEN_IN_WORDS = ('', 'none', 'empty', 'required', 'unknown', 'any machine', '`N/A`', '`<ERROR>`',
                      'the folder part of the `[Actions]` path', 'see [there](#copy-operations)')
# Defaults that stand elsewhere in the code than where the key is read: the file, and what it says.
DEFAULTS_ELSEWHERE = {
    'EndMessage': ('exec/captions.cpp', r'\{1008, "([^"]*)"\}'),
    'NumberOfLoops': ('exec/msi_run.cpp', r'constexpr int DefaultLoops = (\d+);'),
    'LogFilePath': ('base/log_setup.cpp', r'DefaultLogFolder = "([^"]*)"'),
}
# Kept as the ini says it and asked only whether it is true.
TRUTHS = ('Upgrade', 'CanUninstall')
# Told when it is missing by whoever needs it.
TOLD_OTHERWISE = {('product', 'General', 'Version'), ('product', '*', 'Install')}
# Lists of the reader's own names, and what nothing reads.
NOT_READ_BY_NAME = {('product', 'Product', 'Name'), ('product', 'Actions', '')}


def told_keys(text):
    """{(ini, section, key): (default, when missing)} of the document."""
    told = {}
    for heading, head, ini, section in INI_TABLES:
        for row in rows_of(INI, text, heading, head):
            for name in _MARKED.findall(row[head]):
                own = re.fullmatch(r'\[(\w+)\] ?(\w*)', name)
                place = (ini, own.group(1), own.group(2)) if section is None and own else (ini, section, name)
                told[place] = (row['default'], row.get('when missing', ''))
    return told


def _numbered(key):
    """A key without its number: of `Condition1`, `Condition2` and so on one is enough."""
    return re.sub(r'\d+$', '', key)


def _shown(places):
    return {'[%s] %s of the %s ini' % (section, key, ini) for ini, section, key in places}


def default_problem(key, default, read):
    """What is wrong with the default that the document tells of a key; `read` reads a file of the code."""
    if key.key in DEFAULTS_ELSEWHERE:
        path, pattern = DEFAULTS_ELSEWHERE[key.key]
        found = re.search(pattern, read(path))
        known = found.group(1).replace('\\\\', '\\') if found else None
    else:
        known = 'false' if key.key in TRUTHS and key.default == code_tables.NOT_GIVEN else key.default
    plain = default.strip('`')
    same = known is not None and (plain.lower() == known.lower() or
                                  known == code_tables.NOT_GIVEN and default in NOT_GIVEN_IN_WORDS)
    return None if same else 'its default is `%s`, not `%s`' % (known, plain)


def ini_problems(text, keys, read):
    """`keys` are all that the code reads by name."""
    told = {place: what for place, what in told_keys(text).items() if place not in NOT_READ_BY_NAME}
    known = {}
    for key in keys:
        known.setdefault((key.ini, key.section, _numbered(key.key)), []).append(key)
    # One product ini may name what the application ini names too; the code reads both through one row.
    for section, name in (('Product', 'PreviousVolumeName'), ('Product', 'NextVolumeName')):
        if ('application', section, name) in known:
            known.setdefault(('product', section, name), known[('application', section, name)])
    found = differences(INI, 'the key', _shown({(i, s, _numbered(k)) for i, s, k in told}), _shown(known))
    for place, (default, missing) in sorted(told.items()):
        for key in known.get(place, []):
            problem = default_problem(key, default, read)
            if problem and not any(default_problem(other, default, read) is None for other in known[place]):
                found.append('%s: [%s] %s: %s' % (INI, place[1], place[2], problem))
        required = place in TOLD_OTHERWISE or any(key.required for key in known.get(place, []))
        if missing and required != (re.match(r'\**Required', missing) is not None):
            found.append('%s: [%s] %s: the log %s when it is missing; say "%s"' % (
                INI, place[1], place[2], *(('tells', 'Required') if required else ('does not tell', 'Optional'))))
    return sorted(set(found))


KNOWN_KEYS = 'app/qxia/check/known_keys.cpp'
_SECTIONS = {'ComponentSection': '', 'ActionSection': '*'}


def known_key_problems(source, keys):
    """What `qxia check` takes for a key, and for one that is told when it is missing, is what the code reads."""
    rows = re.findall(r'\{(Application|Product|Component), ("\w+"|\w+), "(\w+)"(?:, (\w+))?', source)
    listed = {(ini.lower(), _SECTIONS.get(section, section.strip('"')), key): need or 'Optional' for ini, section, key, need in rows}
    known = {(key.ini, key.section, _numbered(key.key)): key.required for key in keys}
    for name in ('PreviousVolumeName', 'NextVolumeName'):
        known[('product', 'Product', name)] = False
    both = set(listed) - NOT_READ_BY_NAME
    found = differences(KNOWN_KEYS, 'the key', _shown(both), _shown(known))
    for place in sorted(both & set(known)):
        required = known[place] or place == ('product', 'General', 'Version')
        if required != (listed[place] != 'Optional'):
            found.append('%s: [%s] %s: the log %s when it is missing' % (
                KNOWN_KEYS, place[1], place[2], 'tells' if required else 'does not tell'))
    return found


def number_problems(documents, known):
    """Numbers of errors that a document names and nothing knows; `documents` are (path, text) pairs."""
    found = []
    for path, text in documents:
        told = {int(number) for number in re.findall(r'(?<![\d.,-])(6[01]\d\d|70\d\d|8024)(?![\d.,]\d|\d)', text)}
        ranges = {int(n) for pair in re.findall(r'\b(\d{4}) to (\d{4})\b', text) for n in pair}
        found += ['%s: no error has the number %d' % (path, number) for number in sorted(told - ranges - known)]
    return found


def block_problems(guide, known):
    """The guide's table of errors: every number of the program is in one of its rows."""
    rows = rows_of(GUIDE, guide, 'Error numbers', 'numbers')
    blocks = [[int(n) for n in re.findall(r'\d{4}', row['numbers'])] for row in rows]
    return ['%s: no row of "Error numbers" holds %d' % (GUIDE, number) for number in sorted(known)
            if not any(block[0] <= number <= block[-1] for block in blocks if block)]


def problems(read, list_files):
    code = [(path, read(path)) for path in list_files(*error_numbers.CODE) if path.endswith('.cpp')]
    core = [(path, text) for path, text in code if path.startswith('core/')]
    guide, registry = read(GUIDE), read(REGISTRY)
    header = read('base/product_record.h')
    values = code_tables.values(header)
    component = code_tables.component_fields(read('base/component.cpp'), read('base/component.h'), header)
    keys = [value.ini for value in values.values() if value.ini] + component[2] + code_tables.ini_keys(code, values)
    numbers = {row[0] for row in error_numbers.helps(read(error_numbers.HELP))}
    documents = [(path, read(path)) for path in list_files('docs/*.md') if path != error_numbers.PAGE]
    return (switch_problems(guide, read('core/switches.h'), core) +
            exit_code_problems(guide, read('core/exit_codes.h'), core) +
            registry_problems(registry, values, component, read('core/closedown.cpp') + read('env/add_remove_programs.cpp')) +
            elsewhere_problems(registry, code + [('base/product_record.h', header)]) +
            ini_problems(read(INI), keys, read) + known_key_problems(read(KNOWN_KEYS), keys) + number_problems(documents, numbers) + block_problems(guide, numbers))


def main():
    try:
        found = problems(tree.read, tree.files)
    except code_tables.NotFound as missing:
        found = [str(missing)]
    print('\n'.join(found) or 'documents: clean')
    return 1 if found else 0


if __name__ == '__main__':
    sys.exit(main())
