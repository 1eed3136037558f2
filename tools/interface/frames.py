"""Reads from the definition of an exported call how it is framed.

Each definition builds one of the frames of src/frame/APICall.h from the call's name and its arguments in order. The
frame is the family of the call; the marks of the arguments say which are results and which stand in the journal. A
frame or mark that is not listed here is an error, so that nothing is described by guess.
"""

import re

from declarations import SourceError, end_of_group, spell, split_at_commas, tokens_of

FAMILIES = {
    'ModifyingCall': 'modifying',
    'HistoryCall': 'history-level',
    'NewHistoryCall': 'history-level',
    'ReadOnlyCall': 'read-only',
    'UnjournaledCall': 'unjournaled',
    'ModifyOrComputeCall': 'both-way',
}
JOURNAL_TYPES = {
    'modifying': ['QRV'],
    'history-level': ['QRV'],
    'read-only': ['QRVReadOnly'],
    'unjournaled': [],
    'both-way': ['QRV', 'QRVReadOnly'],
}
JOURNAL_CONSTANTS = {'kJournalChange': 'QRV', 'kJournalQuery': 'QRVReadOnly', 'kJournalPick': 'QRVJournalPick'}
# What a mark makes of a result before the work: emptied, set to 0, or kept to be appended to.
RESULT_MARKS = {'Out': 'emptied', 'OutCount': 'zeroed', 'Append': 'kept'}


def bodies_in(text):
    """The tokens of the body of each exported call defined in a source, by name."""
    tokens = tokens_of(text)
    bodies = {}
    for place in range(len(tokens) - 2):
        if tokens[place] == 'Result' and tokens[place + 1].startswith('API') and tokens[place + 2] == '(':
            begin = end_of_group(tokens, place + 2) + 1
            if begin < len(tokens) and tokens[begin] == '{':
                bodies[tokens[place + 1]] = tokens[begin:end_of_group(tokens, begin)]
    return bodies


def literals(tokens):
    return [token[1:-1] for token in tokens if token.startswith('"')]


def names_behind(argument, body):
    """What an argument of JournaledAs may stand for: itself, or the texts among which a constant of the body chooses."""
    if literals(argument):
        return literals(argument)
    for place in range(len(body) - 1):
        if body[place] == argument[0] and body[place + 1] == '=':
            return literals(body[place:body.index(';', place)])
    raise SourceError(f'no name behind {spell(argument)}')


def read_name(tokens, body):
    """The name of a call, and what CallName says about its journal line: its names and its type."""
    name = literals(tokens)[0]
    journal = {'names': [name]}
    for place, token in enumerate(tokens):
        if token == 'JournaledAs':
            journal['names'] = names_behind(tokens[place + 2:end_of_group(tokens, place + 1)], body)
        elif token == 'JournaledUnder':
            journal['types'] = [JOURNAL_CONSTANTS[tokens[place + 2]]]
        elif token == 'Unjournaled':
            journal = {'names': []}
    return name, journal


def read_argument(tokens):
    """The parameters that an argument of a frame names, each with the mark that it carries or None."""
    text = spell(tokens)
    if re.fullmatch(r'\w+', text):
        return [(text, None)]
    if text == 'NoHistory{}':
        return []
    marked = re.fullmatch(r'(\w+)\{(.*)\}', text)
    if marked and marked.group(1) == 'TwoHistories':
        return [(name, None) for name in marked.group(2).split(', ')]
    if marked and marked.group(1) in RESULT_MARKS:
        return [(marked.group(2), RESULT_MARKS[marked.group(1)])]
    raise SourceError(f'an argument of a frame that is not known: {text}')


def frame_of(name, body):
    """The family of a call, its journal, and the arguments that it gives to its frame with their marks, in order."""
    places = [place for place, token in enumerate(body) if token in FAMILIES]
    if len(places) != 1:
        raise SourceError(f'{name} is to have one frame and has {len(places)}')
    frame = body[places[0]]
    family = FAMILIES[frame]
    arguments = split_at_commas(body[places[0] + 2:end_of_group(body, places[0] + 1)])
    if frame == 'ModifyOrComputeCall':
        arguments = arguments[1:]
    journal = {'names': []}
    if frame != 'UnjournaledCall':
        framed, journal = read_name(arguments[0], body)
        if framed != name:
            raise SourceError(f'{name} is framed as {framed}')
        arguments = arguments[1:]
    if journal['names']:
        journal.setdefault('types', JOURNAL_TYPES[family])
    history = read_argument(arguments[0])
    return {
        'family': family,
        'journal': journal if journal['names'] else None,
        'histories': [parameter for parameter, _ in history],
        'marks': dict(pair for argument in arguments for pair in read_argument(argument)),
    }
