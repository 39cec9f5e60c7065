#!/usr/bin/env python3
"""Includes point down the layers and never up, and the Windows headers stay behind the boundary."""
import re
import sys

import tree

_INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.MULTILINE)

# Each layer, and the layers that it may include. `ports` are the headers directly in platform/.
LAYERS = {
    'ports': {'ports'},
    'platform/win32': {'platform/win32', 'ports'},
    'platform/simulated': {'platform/simulated', 'ports'},
    'platform/faults': {'platform/faults', 'ports'},
    'base': {'base', 'ports'},
    'exec': {'exec', 'base', 'ports'},
    'env': {'env', 'exec', 'base', 'ports'},
    'core': {'core', 'env', 'exec', 'base', 'ports'},
    'app/windows': {'app/windows', 'platform/win32', 'core', 'env', 'exec', 'base', 'ports'},
    'app/qxia': {'app/qxia', 'platform/simulated', 'core', 'env', 'exec', 'base', 'ports'},
}

# The only includes that point up: (the file that includes, what it includes), where the work itself goes that way.
UPWARD = {
    ('exec/msi_run.cpp', 'env/uninstall_component.h'),  # a newer package has the older one uninstalled first,
    ('exec/msi_run.cpp', 'env/install_type.h'),  # and the kind of install is put back after it
    ('exec/disk_space.cpp', 'env/shares.h'),  # a copy target may lie on a share
}

# What may include headers of the system: those of Windows, or of the host.
WINDOWS = ('platform/win32', 'app/windows')
HOST = ('platform/simulated', 'platform/faults', 'app/qxia')
# Not to be had on every system, or too large, for what becomes part of the Windows program.
TOO_NEW = {'filesystem', 'thread', 'mutex', 'fstream', 'iostream', 'future', 'condition_variable'}


def layer_of(path):
    """The layer that a file belongs to, or None for what is free to include anything (the tests)."""
    if re.fullmatch(r'platform/[^/]+', path):
        return 'ports'
    return next((layer for layer in LAYERS if path.startswith(layer + '/')), None)


def _problem_of(path, layer, bracket, included):
    if bracket == '<':
        if included in TOO_NEW and layer not in HOST:
            return 'the Windows program does without <%s>' % included
        if included.endswith('.h') and layer not in WINDOWS + HOST:
            return 'headers of the system stay behind the boundary (use a port, or the C++ form of a C header)'
        return None
    target = layer_of(included)
    if '/' not in included:
        return 'includes are written from the root of the project'
    if target in LAYERS[layer] or (path, included) in UPWARD:
        return None
    return '%s may not include %s' % (layer, target or included.split('/')[0])


def problems(path, text):
    """What is wrong with one file's includes, one text each."""
    layer = layer_of(path)
    found = []
    for match in _INCLUDE.finditer(text) if layer else ():
        problem = _problem_of(path, layer, match.group(1), match.group(2))
        if problem:
            line = text.count('\n', 0, match.start(2)) + 1
            found.append('%s:%d: "%s": %s' % (path, line, match.group(2), problem))
    return found


def main():
    found = [problem for path in tree.cpp_files() for problem in problems(path, tree.read(path))]
    print('\n'.join(found) or 'includes: clean')
    return 1 if found else 0


if __name__ == '__main__':
    sys.exit(main())
