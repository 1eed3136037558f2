#!/usr/bin/env python3
"""Fails unless the library shows exactly what its installed headers declare.

Every call of the interface is there and no other; what else is seen is a class or function of the library's own that
a header marks. Nothing of the standard library or of the libraries used is.

usage: check-exports.py LIBRARY INTERFACE_JSON HEADER_FOLDER
"""

import json
import pathlib
import re
import subprocess
import sys

MARKED_CLASS = re.compile(r'(?:class|struct) QRV_API (\w+)')
MARKED_FUNCTION = re.compile(r'^QRV_API .*?([\w=*]+)(?=\()', re.MULTILINE)
# The class or function that a demangled symbol belongs to.
OURS = re.compile(r'(?:typeinfo (?:name )?for |vtable for )?QRV::(operator[^(]+|\w+)')


def main():
    library, interface, headers = sys.argv[1:4]
    calls = {call['name'] for call in json.loads(pathlib.Path(interface).read_text())['functions']}
    text = '\n'.join(header.read_text() for header in pathlib.Path(headers).glob('*.h'))
    functions = set(MARKED_FUNCTION.findall(text))
    marked = functions.union(MARKED_CLASS.findall(text))
    listing = subprocess.run(['nm', '-DC', '--defined-only', library], capture_output=True, text=True, check=True)
    symbols = [re.sub(r'^[0-9a-f]* *[A-Za-z] ', '', line) for line in listing.stdout.splitlines()]

    seen, strays = set(), []
    for symbol in symbols:
        ours = OURS.match(symbol)
        name = ours.group(1) if ours else None
        if name is None or name not in marked or name.startswith('API') and name not in calls:
            strays.append(symbol)
        else:
            seen.add(name)
    for symbol in strays:
        print(f'not meant to be seen: {symbol}')
    missing = sorted((calls | functions) - seen)  # a class may be inline as a whole
    for name in missing:
        print(f'declared and not in the library: {name}')
    print(f'{len(symbols)} symbols, {len(calls)} calls')
    sys.exit(1 if strays or missing or not symbols or not calls else 0)


main()
