"""Reads registries as text: the hives of a Wine prefix that has been stopped, and what `reg export` writes."""
import re

_VALUE = re.compile(r'^(?:@|"((?:[^"\\]|\\.)*)")=(.*)$', re.DOTALL)
_ESCAPE = re.compile(r'\\(x[0-9a-fA-F]{1,4}|[0-7]{1,3}|.)', re.DOTALL)
_PLAIN = {'n': '\n', 'r': '\r', 't': '\t', '0': '\0', 'a': '\a', 'b': '\b', 'f': '\f', 'v': '\v', 'e': '\x1b'}


def _unescape(text):
    def one(match):
        code = match.group(1)
        if code[0] == 'x' and len(code) > 1:
            return chr(int(code[1:], 16))
        return chr(int(code, 8)) if code.isdigit() else _PLAIN.get(code, code)
    return _ESCAPE.sub(one, text)


def _data(text, encoding):
    """A value as str (texts), int (numbers) or bytes (anything else)."""
    text = text.strip()
    if text.startswith('dword:'):
        return int(text[6:], 16)
    kind = re.match(r'(?:str(?:\(\w+\))?:)?"(.*)"$', text, re.DOTALL)
    if kind:
        return _unescape(kind.group(1))
    raw = bytes(int(byte, 16) for byte in re.findall(r'[0-9a-fA-F]{2}(?=,|$)', text.split(':', 1)[1]))
    is_text = re.match(r'hex\([12]\):', text)
    return raw.decode(encoding).rstrip('\0') if is_text else raw


def _escape(text):
    return text.replace('\\', '\\\\').replace('"', '\\"')


def _written(data):
    if isinstance(data, int):
        return 'dword:%08x' % data
    if isinstance(data, str) and data.isprintable():
        return '"%s"' % _escape(data)
    raw = data if isinstance(data, bytes) else data.encode('latin-1', 'replace') + b'\0'
    return ('hex:' if isinstance(data, bytes) else 'hex(1):') + ','.join('%02x' % byte for byte in raw)


class Registry:
    """Keys are paths from the hive's root (`Software\\Wine`); letter case does not matter."""

    def __init__(self, text, key_name, encoding='utf-16-le'):
        """`key_name` gives the key's path for what stands between a header's brackets."""
        self._keys = {}
        values = {}
        for line in text.replace('\\\n', '').split('\n'):
            if line.startswith('[-'):
                self._remove(key_name(line[2:line.rindex(']')]).lower())
            elif line.startswith('['):
                name = key_name(line[1:line.rindex(']')])
                values = self._keys.setdefault(name.lower(), (name, {}))[1]
            elif match := _VALUE.match(line):
                name = _unescape(match.group(1) or '')
                values.pop(name.lower(), None)
                if match.group(2).strip() != '-':
                    values[name.lower()] = (name, _data(match.group(2), encoding))

    def _remove(self, key):
        self._keys = {name: entry for name, entry in self._keys.items()
                      if name != key and not name.startswith(key + '\\')}

    @classmethod
    def of_hive(cls, file):
        with open(file, encoding='utf-8', errors='surrogateescape') as text:
            return cls(text.read(), _unescape)

    @classmethod
    def of_export(cls, file):
        """Both forms of a .reg file: the newer one in UTF-16, and the older one in the machine's own characters."""
        with open(file, 'rb') as raw:
            data = raw.read()
        unicode = data.startswith(b'\xff\xfe')
        text = data.decode('utf-16' if unicode else 'latin-1').replace('\r\n', '\n')
        return cls(text, lambda name: name.partition('\\')[2], 'utf-16-le' if unicode else 'latin-1')

    @classmethod
    def of_exports(cls, *files):
        """What several such files hold together."""
        whole = cls('', str)
        for file in files:
            whole._keys.update(cls.of_export(file)._keys)
        return whole

    def text(self, leave_out=lambda key: False):
        """The older form of a .reg file, of the whole or without the keys that `leave_out` tells."""
        lines = ['REGEDIT4']
        for key, values in self._keys.values():
            if not leave_out(key):
                lines.append('[HKEY_LOCAL_MACHINE\\%s]' % key)
                lines += ['"%s"=%s' % (_escape(name), _written(data)) for name, data in values.values()]
        return '\n'.join(lines) + '\n'

    def exists(self, key):
        return key.lower() in self._keys or bool(self.children(key))

    def keys(self):
        """All keys, each as it was written."""
        return [name for name, _ in self._keys.values()]

    def get(self, key, value, default=None):
        entry = self._keys.get(key.lower())
        return entry[1].get(value.lower(), ('', default))[1] if entry else default

    def values(self, key):
        """{name: data} of a key, {} when it is not there."""
        entry = self._keys.get(key.lower())
        return {name: data for name, data in entry[1].values()} if entry else {}

    def children(self, key):
        """The names of the keys directly below a key."""
        prefix = key.lower() + '\\'
        below = (name[len(prefix):] for lower, (name, _) in self._keys.items() if lower.startswith(prefix))
        return sorted({rest.split('\\')[0] for rest in below}, key=str.lower)
