#!/usr/bin/env python3
# SPDX-License-Identifier: AGPL-3.0-or-later
"""Checks the entries of translation catalogues (Qt .ts files).

Reports and fails on an entry whose translation lost or gained a place marker ("%1", "%n"), and,
in catalogues that must be complete, on an entry that is missing or unfinished.
"""

import argparse
import re
import sys
import xml.etree.ElementTree as ElementTree

PLACE_MARKER = re.compile(r"%(?:L?\d{1,2}|L?n)")


def translations(message):
    """Returns the texts of a message: one, or one per plural form."""
    translation = message.find("translation")
    forms = translation.findall("numerusform")
    return [form.text or "" for form in forms] or [translation.text or ""]


def markers(text):
    return sorted(set(PLACE_MARKER.findall(text)))


def check(path, must_be_complete):
    problems = []
    for context in ElementTree.parse(path).getroot().iter("context"):
        for message in context.iter("message"):
            source = message.findtext("source")
            where = f"{path}: {context.findtext('name')}: {source!r}"
            state = message.find("translation").get("type", "finished")
            texts = translations(message)
            if must_be_complete and (state != "finished" or not all(t.strip() for t in texts)):
                problems.append(f"{where}: not translated")
            for text in filter(None, texts):
                # A plural form for exactly one thing may do without the number.
                expected = set(markers(source)) - ({"%n"} if len(texts) > 1 else set())
                found = set(markers(text)) - ({"%n"} if len(texts) > 1 else set())
                if expected != found:
                    problems.append(f"{where}: place markers differ in {text!r}")
    return problems


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("catalogues", nargs="+")
    parser.add_argument("--complete", action="append", default=[])
    arguments = parser.parse_args()
    problems = []
    for path in arguments.catalogues:
        problems += check(path, path in arguments.complete)
    print("\n".join(problems), file=sys.stderr, end="\n" if problems else "")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
