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


def _data(text):
    """A value as str (texts), int (numbers) or bytes (anything else)."""
    text = text.strip()
    if text.startswith('dword:'):
        return int(text[6:], 16)
    kind = re.match(r'(?:str(?:\(\w+\))?:)?"(.*)"$', text, re.DOTALL)
    if kind:
        return _unescape(kind.group(1))
    raw = bytes(int(byte, 16) for byte in re.findall(r'[0-9a-fA-F]{2}(?=,|$)', text.split(':', 1)[1]))
    is_text = re.match(r'hex\([12]\):', text)
    return raw.decode('utf-16-le').rstrip('\0') if is_text else raw


class Registry:
    """Keys are paths from the hive's root (`Software\\Wine`); letter case does not matter."""

    def __init__(self, text, key_name):
        """`key_name` gives the key's path for what stands between a header's brackets."""
        self._keys = {}
        values = None
        for line in text.replace('\\\n', '').split('\n'):
            if line.startswith('['):
                name = key_name(line[1:line.rindex(']')])
                values = self._keys.setdefault(name.lower(), (name, {}))[1]
            elif values is not None and (match := _VALUE.match(line)):
                name = _unescape(match.group(1) or '')
                values[name.lower()] = (name, _data(match.group(2)))

    @classmethod
    def of_hive(cls, file):
        with open(file, encoding='utf-8', errors='surrogateescape') as text:
            return cls(text.read(), _unescape)

    @classmethod
    def of_export(cls, file):
        with open(file, encoding='utf-16', newline='\r\n') as text:
            return cls(text.read().replace('\r\n', '\n'), lambda name: name.partition('\\')[2])

    def exists(self, key):
        return key.lower() in self._keys or bool(self.children(key))

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
