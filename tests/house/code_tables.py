"""What the tables of the code say: switches, exit codes, registry values, ini keys. A table that is not found where it is
expected is an error, never an empty answer."""
import re

NOT_GIVEN = ''  # the three ways of not giving a value are one: "", N/A, <ERROR>
_CONSTANTS = {'MissingValue': NOT_GIVEN, 'NotApplicable': NOT_GIVEN, '""': NOT_GIVEN, 'NotRead': NOT_GIVEN}


class NotFound(Exception):
    """A table, or what a call reads, could not be told."""


def _all(pattern, text, what, flags=re.S):
    found = re.findall(pattern, text, flags)
    if not found:
        raise NotFound('%s: not found; the check no longer fits the code' % what)
    return found


def switches(source):
    """The switches as a person writes them: text and argument."""
    rows = _all(r'constexpr Switch (\w+)\{\s*"([^"]+)",\s*"([^"]*)"', source, 'table of switches')
    listed = _all(r'Switch\* All\[\] = \{(.*?)\};', source, 'list of switches')[0]
    if sorted(re.findall(r'&(\w+)', listed)) != sorted(name for name, _, _ in rows):
        raise NotFound('core/switches.h: "All" does not list every switch')
    return {text + argument for _, text, argument in rows}


def exit_codes(source):
    return {int(code) for _, code in _all(r'constexpr int (\w+) = (\d+);', source, 'table of exit codes')}


class Value:
    """A registry value of the record, with the ini key that it is copied from."""

    def __init__(self, key, name, rest):
        self.key, self.name = key, name
        closedown = re.search(r'AtClosedown::(\w+)', rest)
        self.closedown = closedown.group(1) if closedown else 'Stays'
        self.ini = None
        origin = re.match(r',\s*\{\s*"(\w+)"(?:,\s*("\w+"|nullptr))?(?:,\s*("[^"]*"|MissingValue))?'
                          r'(?:,\s*Need::(\w+))?(?:,\s*Form::(\w+))?\s*\}', rest)
        if origin:
            section, given, default, need, form = origin.groups()
            key = name if given in (None, 'nullptr') else given.strip('"')
            self.ini = IniKey('application', section, key, _default(default or 'MissingValue', form == 'Truth'),
                              (need or 'Required') == 'Required')


class IniKey:
    def __init__(self, ini, section, key, default, required):
        self.ini, self.section, self.key, self.default, self.required = ini, section, key, default, required


def _default(text, truth):
    """The default as documents tell it; None for one that the code does not spell out."""
    value = _CONSTANTS.get(text, text.strip('"') if text.startswith('"') else None)
    return 'false' if truth and value == NOT_GIVEN else value


def _body(source, namespace):
    return _all(r'namespace %s \{(.*?)\n\}  // namespace %s' % (namespace, namespace), source, namespace)[0]


def _names(source):
    """The names that stand under more than one key."""
    return dict(re.findall(r'constexpr const char\* (\w+) = "([^"]*)";', _body(source, 'ValueName')))


def values(source):
    """{constant: Value} of base/product_record.h."""
    names = _names(source)
    rows = _all(r'constexpr RecordValue (\w+)\{\s*RecordKey::(\w+),\s*(?:"([^"]+)"|ValueName::(\w+))(.*?)\};', source,
                'table of registry values')
    if len(rows) != source.count('constexpr RecordValue '):
        raise NotFound('base/product_record.h: a registry value that is not written like the others')
    return {row[0]: Value(row[1], row[2] or names[row[3]], row[4]) for row in rows}


def component_fields(cpp, header, record_header):
    """(names of the values of a component's key, its sub-keys, its ini keys)"""
    shared = _names(record_header)
    own = {constant: literal or shared[other] for constant, literal, other in
           re.findall(r'constexpr const char\* (\w+) = (?:"([^"]*)"|ValueName::(\w+));', _body(header, 'ComponentValue'))}
    rows = _all(r'\{(?:"(\w+)"|ComponentValue::(\w+)), &Component::\w+((?:, [^,{}]+)*)\}', cpp, 'table of a component')
    names = {literal or own[constant]: rest.split(', ')[1:] for literal, constant, rest in rows}
    keys = []
    for name, rest in names.items():
        if rest[:1] == ['Origin::Ini']:
            default = rest[1] if len(rest) > 1 else '""'
            keys.append(IniKey('component', '', name, _default(default, 'Form::Truth' in rest), 'Need::Required' in rest))
    sub_keys = _all(r'return componentKey \+ "\\\\(\w+)"', cpp, 'sub-keys of a component')
    return set(names) | set(own.values()), set(sub_keys), keys


def arguments(text, at):
    """The arguments of the call whose opening bracket is at `at`."""
    depth, start, found = 0, at + 1, []
    for i in range(at, len(text)):
        if text[i] in '([{':
            depth += 1
        elif text[i] in ')]}':
            depth -= 1
        if depth == 0 or depth == 1 and text[i] == ',':
            found.append(' '.join(text[start:i].split()))
            start = i + 1
        if depth == 0:
            return found
    return found


# Where the file of a call is not written in it, and where its key is handed in: who hands it in, or nobody where the
# keys are those of a table, of a person or of a list.
_INI_OF = {'run.applicationIni()': 'application', 'applicationIni': 'application', 'run.productIni()': 'product'}
_INI_OF_FILE = {'core/discovery.cpp': 'application', 'exec/pre_install.cpp': 'product', 'env/drive_mapping.cpp': 'product',
                'exec/condition_text.cpp': 'component', 'exec/copy_targets.cpp': 'component',
                'core/component_data.cpp': 'component'}
_HANDED_IN = {('core/identify.cpp', 'key'): 'OfProduct', ('core/store_product.cpp', 'key'): 'RequiredProductKey',
              ('env/drive_mapping.cpp', 'key'): 'Setting'}
_OF_TABLE_OR_LIST = {('base/component.cpp', 'field.value'), ('core/store_product.cpp', 'value.iniKey()'),
                     ('env/multi_disk.cpp', 'value.iniKey()'), ('core/identify.cpp', 'value.iniKey()'),
                     ('core/resume.cpp', 'value.iniKey()'),
                     ('env/shares.cpp', 'key'), ('env/forced_removal.cpp', 'entry'),
                     ('core/store_component.cpp', 'component'), ('exec/condition_text.cpp', 'key + std::to_string(number)'),
                     ('exec/copy_targets.cpp', 'NumberedTarget(number)')}


def ini_keys(files, known):
    """The keys that code reads by name. `files` are (path, text) pairs, `known` the registry values."""
    return [key for path, text in files for key in _keys_of_file(path, text, known)]


def _keys_of_file(path, text, known):
    def resolved(expression):
        literal = re.fullmatch(r'"([^"]*)"', expression)
        constant = re.search(r'constexpr const char\* %s = "([^"]*)"' % re.escape(expression), text)
        local = re.search(r'std::string %s = "([^"]*)"' % re.escape(expression), text)
        value = re.fullmatch(r'Value::(\w+)\.name|Value::(\w+), .*', expression)
        if literal or constant or local:
            return (literal or constant or local).group(1)
        if expression == 'ComponentValue::OlderCondition':
            return 'Condition'
        return known[value.group(1)].name if value and value.group(1) in known else None

    for call in re.finditer(r'\bmodINI::GetIniString\(', text):
        ini, section, key, default, *missing = arguments(text, call.end() - 1)
        if (path, key) in _OF_TABLE_OR_LIST and resolved(key) is None:
            continue
        where = _INI_OF.get(ini) or _INI_OF_FILE.get(path)
        handed_in = _HANDED_IN.get((path, key))
        for name, given, told in _callers(text, handed_in) if handed_in else [(key, default, missing)]:
            if handed_in and (path, name) in _OF_TABLE_OR_LIST:
                continue
            if where is None or resolved(name) is None:
                raise NotFound('%s: which key GetIniString(%s, %s, %s) reads could not be told; enter it in '
                               'tests/house/code_tables.py' % (path, ini, section, name))
            yield IniKey(where, '' if where == 'component' else resolved(section) or '*', resolved(name),
                         _default(given or default, False), 'IsLogged' in str(told) + str(missing if handed_in else ''))


def _callers(text, function):
    """(key, default, whether missing is told) of the calls of a helper that reads one key."""
    for call in re.finditer(r'(?<!std::string )\b%s\(' % function, text):
        _, key, *rest = arguments(text, call.end() - 1)
        yield key, next((part for part in rest if part.startswith('"')), None), [part for part in rest if 'Missing::' in part]
