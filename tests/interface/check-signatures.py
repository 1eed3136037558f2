#!/usr/bin/env python3
"""Fails when an exported call is declared otherwise than a reference says, or is not in it.

usage: check-signatures.py HEADER_FOLDER REFERENCE
Ends with 77, for "skipped", when there is no reference.
"""

import os
import pathlib
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.realpath(__file__)), '../../tools/interface'))
from declarations import declarations_in, signature  # noqa: E402


def main():
    headers, reference = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    if not reference.exists():
        print('skipped: no reference of the signatures beside the checkout')
        sys.exit(77)
    wanted = {call['name']: signature(call) for call in declarations_in(reference.read_text())}
    declared = [call for path in sorted(headers.glob('*.h')) for call in declarations_in(path.read_text())]
    differing = 0
    for call in declared:
        if signature(call) != wanted.get(call['name']):
            differing += 1
            print(f'declared {signature(call)}\nwanted   {wanted.get(call["name"])}')
    print(f'{len(declared)} of {len(wanted)} calls declared, {differing} of them otherwise')
    sys.exit(1 if differing or not declared else 0)


main()
