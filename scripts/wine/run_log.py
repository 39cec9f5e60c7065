"""Reads the program's HTML log back as rows, and finds out from it and the registry how each component fared."""
import re
from collections import namedtuple

from machine import PRODUCTS

Row = namedtuple('Row', 'time type text')  # type: 'Action', 'Warning', 'ERROR' or ''
Removal = namedtuple('Removal', 'component verdict reason')
Outcome = namedtuple('Outcome', 'component kind sequence verdict reason')

_ROW = re.compile(r'^<TABLE cellpadding="0" border="0"><TR valign="top"><TD width="150">(.*?)</TD>'
                  r'<TD width="120">(.*?)</TD><TD width="550">(.*)</TD></TR></TABLE>$')


def read_log(file):
    """The log's rows. A line of another form is a broken log and raises ValueError."""
    rows = []
    with open(file, encoding='latin-1', newline='\r\n') as lines:
        for number, line in enumerate(lines, 1):
            text = line.removesuffix('\r\n')
            match = _ROW.match(text)
            if not match and text != ' ':
                raise ValueError('%s, line %d is no log entry: %r' % (file, number, text))
            if match:
                kind = re.sub(r'<[^>]*>|\*', '', match.group(2)).strip()
                rows.append(Row(match.group(1), kind, match.group(3)))
    return rows


def _sections(rows):
    """The rows of each component's turn, by the component's name."""
    sections, current = {}, None
    for row in rows:
        started = re.match(r'Next component is (.+) v\.', row.text)
        if started:
            current = sections.setdefault(started.group(1), [])
        elif row.text.startswith('Last Sequence was'):
            current = None
        if current is not None:
            current.append(row)
    return sections


def _plain(text):
    return re.sub(r'\s+', ' ', re.sub(r'<[^>]*>|\*\*\*', ' ', re.sub(r'<BR>Source:.*', '', text))).strip()


def _first(rows, pattern):
    return next((_plain(row.text) for row in rows if re.search(pattern, row.text)), '')


def _judge(rows, record, reasons):
    """Verdict and reason of one component, from its turn in the log, its record and the run's reasons of failure."""
    if not rows:
        return 'not reached', ''
    if reasons:
        return 'FAILED', record.get('Message') or _first(rows, 'Unrecognised file type') or reasons[0]
    if record.get('Process Return') == 'Abort':
        return 'ABORTED', record.get('Message', '')
    same = _first(rows, 'its version is the same or higher')
    if same:
        return 'already there', same
    copied = re.search(r'Executing CopyOp to path (.*)', _first(rows, r'^Executing CopyOp to path '))
    if copied and _first(rows, r'^Finished CopyOp'):
        return 'ok', 'copied to ' + copied.group(1)
    if not _first(rows, r'^(Executing|Running) '):
        held_back = [row for row in rows if row.type == 'Warning']
        return 'held back', _plain(held_back[0].text) if held_back else _first(rows, 'not be installed')
    odd = re.search(r'gave a return number of (-?\d+)', ' '.join(row.text for row in rows if row.type == 'Warning'))
    if odd:
        return 'ok, warning', 'return number ' + odd.group(1)
    if record.get('Process Return') == 'Pass':
        return 'ok', 'reported "Pass" itself'
    return 'ok', _first(rows, 'will be uninstalled first')


def outcomes(registry, rows, product):
    """How each component of a product fared, in the order of the sequence."""
    key = PRODUCTS + '\\' + product
    sections = _sections(rows)
    failures = (registry.get(key, 'Abort Reason') or '').split('\r\n')
    result = []
    for component in registry.children(key):
        record = registry.values(key + '\\' + component)
        mine = [text for text in failures if text.startswith('Installation of %s failed' % component)]
        kind = record.get('Install', '').rpartition('.')[2]
        verdict, reason = _judge(sections.get(component, []), record, mine)
        result.append(Outcome(component, kind, int(record.get('SequenceNumber', 0)), verdict, reason))
    return sorted(result, key=lambda outcome: outcome.sequence)


# What a component's turn in the log of an uninstall says, and what that makes of the component. The first that is found counts.
_REMOVALS = (
    (r'is not set to run as part of the uninstall', 'left out'),
    (r'Another product is using this component', 'kept'),
    (r'is not currently installed', 'not there'),
    (r'was removed by an earlier uninstall', 'not there'),
    (r'No uninstallation command found', 'no command'),
    (r'Uninstallation of .* failed', 'FAILED'),
    (r'^Uninstall Command = ', 'removed'),
    (r'^Deleting\.\.\.', 'removed'),
)


def removals(rows):
    """What an uninstall did with each component, in its order."""
    result = []
    for component, section in _sections(rows).items():
        said = ((_first(section, pattern), verdict) for pattern, verdict in _REMOVALS)
        reason, verdict = next(((text, verdict) for text, verdict in said if text), ('', '?'))
        result.append(Removal(component, verdict, reason.removeprefix('Uninstall Command = ')))
    return result
