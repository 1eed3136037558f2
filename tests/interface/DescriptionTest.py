#!/usr/bin/env python3
"""Tests of the description of the interface on small sources, and of what it refuses to guess."""

import os
import pathlib
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.realpath(__file__)), '../../tools/interface'))
from declarations import SourceError, declarations_in, signature  # noqa: E402
from describe import describe  # noqa: E402

DECLARED = '''
/// Result APICommented(int n);
QRV_API Result APIMix(std::uint64_t nHistoryID, const std::vector<std::pair<int, Point3d>>& aPairs = {}, // a, b
                      const char* const path, std::uint64_t& nID, std::vector<double>* pSizes = nullptr,
                      float f = 1.0f);
'''
FRAMED = '''
Result APIMix(std::uint64_t nHistoryID, const std::vector<std::pair<int, Point3d>>& aPairs, const char* const path,
              std::uint64_t& nID, std::vector<double>* pSizes, float f)
{
    const char* pName = pSizes ? "APIMixSized" : "APIMix";
    return ModifyingCall(CallName("APIMix").JournaledAs(pName).JournaledUnder(kJournalPick), nHistoryID, aPairs, path,
                         %s, f)
        .Run([&](History& history, Result& result) { return Mix(history, aPairs, "(", result); });
}
'''


def described(declared, framed):
    with tempfile.TemporaryDirectory() as folder:
        api = pathlib.Path(folder, 'api')
        api.mkdir()
        pathlib.Path(api, 'Calls.h').write_text(declared)
        pathlib.Path(api, 'Calls.cpp').write_text(framed)
        return describe(pathlib.Path(folder))


class Description(unittest.TestCase):
    def test_tells_a_call_from_its_declaration_and_its_frame(self):
        call, = described(DECLARED, FRAMED % 'Out{nID}')
        self.assertEqual(call['family'], 'modifying')
        self.assertEqual(call['journal'], {'names': ['APIMixSized', 'APIMix'], 'types': ['QRVJournalPick']})
        rows = [(p['name'], p['value'], p['direction'], p['nullable'], p['default'], p['journaled'], p['before'])
                for p in call['parameters']]
        self.assertEqual(rows, [
            ('nHistoryID', 'std::uint64_t', 'in', False, None, True, None),
            ('aPairs', 'std::vector<std::pair<int, Point3d>>', 'in', False, '{}', True, None),
            ('path', 'const char*', 'in', True, None, True, None),
            ('nID', 'std::uint64_t', 'out', False, None, False, 'emptied'),
            ('pSizes', 'std::vector<double>', 'out', True, 'nullptr', False, None),
            ('f', 'float', 'in', False, '1.0f', True, None)])
        self.assertEqual([p['name'] for p in call['parameters'] if p['history']], ['nHistoryID'])

    def test_takes_a_result_that_is_journaled_for_one_that_goes_both_ways(self):
        call, = described(DECLARED, FRAMED % 'nID')
        self.assertEqual(call['parameters'][3]['direction'], 'in-out')

    def test_refuses_what_it_would_have_to_guess(self):
        wrong = {
            'a mark that is not known': FRAMED % 'Perhaps{nID}',
            'an argument that is no parameter': FRAMED % 'nOther',
            'arguments out of order': (FRAMED % 'nID').replace('aPairs, path', 'path, aPairs'),
            'no frame': FRAMED.replace('ModifyingCall', 'AnyCall') % 'nID',
            'two frames': (FRAMED % 'nID').replace('return Mix', 'return ReadOnlyCall("APIMix", 0)'),
            'the name of another call': (FRAMED % 'nID').replace('CallName("APIMix")', 'CallName("APIMax")'),
            'a change that is called a query': (FRAMED % 'nID').replace('ModifyingCall', 'ReadOnlyCall'),
            'an argument left out of the journal': (FRAMED % 'nID').replace('path,\n', ''),
            'no definition': '',
        }
        for what, framed in wrong.items():
            with self.subTest(what), self.assertRaises(SourceError):
                described(DECLARED, framed)

    def test_compares_declarations_by_types_names_and_defaults_alone(self):
        def only(text):
            return signature(declarations_in(text)[0])

        self.assertEqual(only(DECLARED), only(DECLARED.replace('QRV_API ', '').replace(', // a, b\n  ', ',')))
        for old, new in (('f = 1.0f', 'f'), ('&', ''), ('nID', 'id'), ('const char* const', 'const char*')):
            self.assertNotEqual(only(DECLARED), only(DECLARED.replace(old, new)))


unittest.main()
