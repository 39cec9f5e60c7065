#!/usr/bin/env python3
"""Includes point down the layers and never up or in circles, and the Windows headers stay behind the boundary."""
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
    'app/qxia': {'app/qxia', 'platform/simulated', 'platform/faults', 'core', 'env', 'exec', 'base', 'ports'},
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


def _includes(text):
    """(line, bracket, what is included) of each include."""
    return [(text.count('\n', 0, match.start(2)) + 1, *match.groups()) for match in _INCLUDE.finditer(text)]


def _problem_of(layer, bracket, included):
    if bracket == '<':
        if included in TOO_NEW and layer not in HOST:
            return 'the Windows program does without <%s>' % included
        if included.endswith('.h') and layer not in WINDOWS + HOST:
            return 'headers of the system stay behind the boundary (use a port, or the C++ form of a C header)'
        return None
    target = layer_of(included)
    if '/' not in included:
        return 'includes are written from the root of the project'
    return None if target in LAYERS[layer] else '%s may not include %s' % (layer, target or included.split('/')[0])


def problems(path, text):
    """What is wrong with one file's includes, one text each."""
    layer = layer_of(path)
    found = [(line, included, _problem_of(layer, bracket, included))
             for line, bracket, included in (_includes(text) if layer else ())]
    return ['%s:%d: "%s": %s' % (path, line, included, problem) for line, included, problem in found if problem]


def _topic(path):
    """x.h and x.cpp are one."""
    return re.sub(r'\.(h|cpp)$', '', path)


def circles(files):
    """The circles that includes make among (path, text) pairs, one text each."""
    edges = {}  # a topic: the topics that it includes, and where
    for path, text in files:
        for line, _, included in _includes(text):
            if _topic(included) != _topic(path):
                edges.setdefault(_topic(path), {}).setdefault(_topic(included), '%s:%d' % (path, line))
    found, done = [], set()

    def follow(topic, way):
        if topic in way:
            circle = way[way.index(topic):] + [topic]
            found.append('%s: a circle of includes, %s: move what both ends need to a file of its own'
                         % (edges[way[-1]][topic], ' -> '.join(circle)))
        elif topic not in done:
            for included in sorted(edges.get(topic, ())):
                follow(included, way + [topic])
            done.add(topic)

    for topic in sorted(edges):
        follow(topic, [])
    return found


def main():
    files = [(path, tree.read(path)) for path in tree.cpp_files()]
    found = [problem for path, text in files for problem in problems(path, text)] + circles(files)
    print('\n'.join(found) or 'includes: clean')
    return 1 if found else 0


if __name__ == '__main__':
    sys.exit(main())
