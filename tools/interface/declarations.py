"""Reads the declarations of exported calls from C++ headers.

A header is cut into tokens; a declaration is `Result APIName(...);`. So line breaks, blanks and comments do not count,
and nothing beyond what stands in the list of parameters is understood of C++.
"""

import re

TOKEN = re.compile(r'"(?:[^"\\]|\\.)*"|\'(?:[^\'\\]|\\.)*\'|[A-Za-z_]\w*|\d[\w.]*|::|->|[^\s\w]')
COMMENT = re.compile(r'//[^\n]*|/\*.*?\*/|("(?:[^"\\\n]|\\.)*")', re.DOTALL)
OPENING = {'(': ')', '{': '}', '[': ']', '<': '>'}


class SourceError(Exception):
    """What stands in a source is not what the reader knows."""


def tokens_of(text):
    return TOKEN.findall(COMMENT.sub(lambda match: match.group(1) or ' ', text))


def end_of_group(tokens, start):
    """The place of the bracket that closes the one at `start`. Angle brackets do not count."""
    depth = 0
    for place in range(start, len(tokens)):
        if tokens[place] in '({[':
            depth += 1
        elif tokens[place] in ')}]':
            depth -= 1
            if depth == 0:
                return place
    raise SourceError(f'no end of the group behind {" ".join(tokens[max(0, start - 2):start + 1])}')


def split_at_commas(tokens):
    """The parts between commas that stand in no bracket, angle brackets included."""
    parts, part, depth = [], [], 0
    for token in tokens:
        depth += (token in OPENING) - (token in OPENING.values())
        if token == ',' and depth == 0:
            parts.append(part)
            part = []
        else:
            part.append(token)
    return parts + [part] if part else parts


def spell(tokens):
    """One spelling of a type or value, whatever its blanks were."""
    text = ''
    for token in tokens:
        if text and re.match(r'\w', token) and (re.search(r'[\w*&>]$', text)):
            text += ' '
        elif text.endswith(','):
            text += ' '
        text += token
    return text


def parameter_of(tokens):
    default = None
    if '=' in tokens:
        equals = tokens.index('=')
        default = spell(tokens[equals + 1:])
        tokens = tokens[:equals]
    if len(tokens) < 2 or not re.fullmatch(r'[A-Za-z_]\w*', tokens[-1]):
        raise SourceError(f'a parameter without type or name: {spell(tokens)}')
    return {'name': tokens[-1], 'type': spell(tokens[:-1]), 'default': default}


def declarations_in(text):
    """Each call declared in a header: its name and its parameters with name, type and default, in order."""
    tokens = tokens_of(text)
    calls = []
    for place in range(len(tokens) - 2):
        if tokens[place] == 'Result' and tokens[place + 1].startswith('API') and tokens[place + 2] == '(':
            end = end_of_group(tokens, place + 2)
            parameters = [parameter_of(part) for part in split_at_commas(tokens[place + 3:end])]
            calls.append({'name': tokens[place + 1], 'parameters': parameters})
    return calls


def signature(call):
    """The declaration in one spelling."""
    parameters = [f"{p['type']} {p['name']}" + (f" = {p['default']}" if p['default'] is not None else '')
                  for p in call['parameters']]
    return f"{call['name']}({', '.join(parameters)})"
