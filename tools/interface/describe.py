#!/usr/bin/env python3
"""Describes the exported interface: one JSON file, and the same as C++ for the programs that call everything.

usage: describe.py SOURCE_FOLDER JSON CPP_HEADER

Each function has
  name, header, family  modifying, history-level, read-only, both-way (computes or modifies) or unjournaled, by its frame
  journal               null, or the names and the types under which its lines are written
  parameters            in order: name, type as declared, value (the type without const, reference and pointer),
                        default (null without one) and
    direction           in, out or in-out
    nullable            a pointer: null where it is not given or not wanted
    history             an id of a History, which the frame looks for
    journaled           stands in the journal line, where the order is the same
    before              of a result, what it holds before the work: emptied, zeroed, or kept as the host passed it;
                        null where the frame does not say
"""

import json
import pathlib
import re
import sys

from declarations import SourceError, declarations_in
from frames import bodies_in, frame_of


def value_of(declared):
    return re.sub(r'^const |[&*]$|\* const$', '', re.sub(r'^const |[&]$', '', declared))


def describe_parameter(parameter, frame):
    declared = parameter['type']
    nullable = declared.endswith(('*', '* const'))
    journaled = frame['journal'] is not None and frame['marks'].get(parameter['name'], 'none') is None
    writable = not declared.startswith('const ') and declared.endswith(('&', '*')) or declared == 'const char*&'
    if not writable:
        direction = 'in'
    else:
        direction = 'in-out' if journaled else 'out'
    return {
        'name': parameter['name'],
        'type': declared,
        'value': 'const char*' if 'char*' in declared else value_of(declared),
        'direction': direction,
        'nullable': nullable,
        'default': parameter['default'],
        'history': parameter['name'] in frame['histories'],
        'journaled': journaled,
        'before': frame['marks'].get(parameter['name']) if direction == 'out' else None,
    }


def check(call):
    """What the names and the journal promise."""
    name, family = call['name'], call['family']
    if family in ('modifying', 'history-level', 'both-way') and name.endswith('ReadOnly'):
        raise SourceError(f'{name} changes something')
    if family == 'read-only' and not name.endswith('ReadOnly'):
        raise SourceError(f'{name} changes nothing and does not say so')
    if call['journal']:
        missing = [p['name'] for p in call['parameters'] if p['direction'] == 'in' and not p['journaled']]
        if missing:
            raise SourceError(f'the journal of {name} leaves out {", ".join(missing)}')


def describe_call(declared, frame, header):
    unknown = set(frame['marks']) - {p['name'] for p in declared['parameters']}
    if unknown:
        raise SourceError(f'the frame of {declared["name"]} names {", ".join(sorted(unknown))}')
    order = [p['name'] for p in declared['parameters'] if p['name'] in frame['marks']]
    if order != list(frame['marks']):
        raise SourceError(f'the frame of {declared["name"]} names its arguments out of order')
    call = {
        'name': declared['name'],
        'header': header,
        'family': frame['family'],
        'journal': frame['journal'],
        'parameters': [describe_parameter(parameter, frame) for parameter in declared['parameters']],
    }
    check(call)
    return call


def describe(source):
    bodies = {}
    for path in sorted(source.glob('api/*.cpp')):
        bodies.update(bodies_in(path.read_text()))
    calls = []
    for path in sorted(source.glob('api/*.h')):
        for declared in declarations_in(path.read_text()):
            if declared['name'] not in bodies:
                raise SourceError(f'{declared["name"]} is declared and nowhere defined')
            frame = frame_of(declared['name'], bodies[declared['name']])
            calls.append(describe_call(declared, frame, path.name))
    return sorted(calls, key=lambda call: call['name'])


def cpp_list(kind, items):
    return f'std::array<{kind}, {len(items)}>{{{{{", ".join(items)}}}}}' if items else f'std::array<{kind}, 0>{{}}'


def cpp_call(call):
    def word(text):
        return 'n' + ''.join(part.capitalize() for part in text.split('-'))

    names = [f'"{name}"' for name in (call['journal'] or {'names': []})['names']]
    parameters = [f'Parameter{{"{p["name"]}", nDirection::{word(p["direction"])}, nBefore::{word(p["before"] or "unsaid")}}}'
                  for p in call['parameters']]
    return f'''struct {call["name"]}Call
{{
    static constexpr auto kFunction = &QRV::{call["name"]};
    static constexpr std::string_view kName = "{call["name"]}";
    static constexpr nFamily kFamily = nFamily::{word(call["family"])};
    static constexpr auto kScriptNames = {cpp_list("std::string_view", names)};
    static constexpr auto kParameters = {cpp_list("Parameter", parameters)};
}};
'''


def cpp_header(calls):
    lines = ['/// Made from the sources of the library when it is built.', '#pragma once', '',
             '#include "interface/ExportedCall.h"', '', '#include <QRV/API.h>', '', 'namespace tools', '{']
    lines += [cpp_call(call) for call in calls]
    listed = ',\n                               '.join(call['name'] + 'Call' for call in calls)
    lines += [f'using ExportedCalls = CallList<{listed}>;', '} // namespace tools', '']
    return '\n'.join(lines)


def write_if_other(path, text):
    """Leaves a file that says so already, so that nothing is built anew for it."""
    if not path.exists() or path.read_text() != text:
        path.write_text(text)


def main():
    source, json_path, cpp_path = (pathlib.Path(argument) for argument in sys.argv[1:4])
    try:
        calls = describe(source)
    except SourceError as error:
        sys.exit(f'{sys.argv[0]}: {error}')
    write_if_other(json_path, json.dumps({'functions': calls}, indent=1) + '\n')
    write_if_other(cpp_path, cpp_header(calls))


if __name__ == '__main__':
    main()
