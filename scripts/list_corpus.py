#!/usr/bin/env python3
# SPDX-License-Identifier: AGPL-3.0-or-later
"""Lists the files of a folder that carry more than pages.

    scripts/list_corpus.py FOLDER [--output docs/CORPUS.md]

Outlines, links, form fields, page labels, attachments, named destinations, optional content, tags and
signatures are what page operations can lose. Each file is read with `qpdf --json`; files that need
a password or that qpdf cannot read are counted and left out. The result is a page of Markdown,
which scripts/second_opinion.py reads and tests/pdfcore/fidelity/tst_fidelity_corpus.cpp agrees with.
"""

import argparse
import json
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent

TIME_LIMIT = 60
MAX_DEPTH = 60

FEATURES = ("outline", "page links", "web links", "fields", "labels", "attachments",
            "destinations", "optional content", "tags", "signatures")

REFERENCE = re.compile(r"^\d+ \d+ R$")


class Unreadable(Exception):
    """Why a file cannot be looked at."""


class Document:
    """The objects of a file as `qpdf --json` prints them."""

    def __init__(self, path):
        try:
            done = subprocess.run(
                ["qpdf", "--json=2", "--json-key=qpdf", "--json-key=pages", "--", str(path)],
                stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=TIME_LIMIT, check=False)
        except subprocess.TimeoutExpired:
            raise Unreadable("qpdf does not end in time") from None
        if b"invalid password" in done.stderr:
            raise Unreadable("needs a password")
        try:
            data = json.loads(done.stdout)
        except ValueError:
            raise Unreadable("qpdf cannot read it") from None
        if "pages" not in data or "qpdf" not in data:
            raise Unreadable("qpdf cannot read it")
        self.objects = data["qpdf"][1]
        self.pages = [self.dictionary(page["object"]) for page in data["pages"]]
        trailer = self.objects.get("trailer", {}).get("value", {})
        self.catalogue = self.dictionary(trailer.get("/Root"))

    def value(self, item):
        """What a reference leads to: the item itself when it is none, None for nothing."""
        for _ in range(MAX_DEPTH):
            if not (isinstance(item, str) and REFERENCE.match(item)):
                return item
            entry = self.objects.get("obj:" + item, {})
            item = entry["value"] if "value" in entry else entry.get("stream", {}).get("dict")
        return None

    def dictionary(self, item):
        value = self.value(item)
        return value if isinstance(value, dict) else {}

    def array(self, item):
        value = self.value(item)
        return value if isinstance(value, list) else []

    def get(self, item, *keys):
        """The value at the end of a path of keys; None where it breaks off."""
        for key in keys:
            item = self.dictionary(item).get(key)
        return self.value(item)

    def has_names(self, tree):
        """Whether a name tree has at least one entry."""
        waiting, seen = [tree], set()
        while waiting:
            node = waiting.pop()
            if isinstance(node, str):
                if node in seen:
                    continue
                seen.add(node)
            if len(self.array(self.get(node, "/Names"))) > 1:
                return True
            waiting += self.array(self.get(node, "/Kids"))
        return False

    def inherited(self, field, key):
        for _ in range(MAX_DEPTH):
            if self.get(field, key) is not None:
                return self.get(field, key)
            field = self.get(field, "/Parent")
        return None

    def annotations(self):
        for page in self.pages:
            for annotation in self.array(page.get("/Annots")):
                yield self.dictionary(annotation)

    def features(self):
        """What the file carries; a subset of FEATURES."""
        root = self.catalogue
        found = set()
        for annotation in self.annotations():
            kind = self.get(annotation, "/Subtype")
            if kind == "/Widget":
                found.add("fields")
                if (self.inherited(annotation, "/FT") == "/Sig"
                        and isinstance(self.inherited(annotation, "/V"), dict)):
                    found.add("signatures")
            elif kind == "/FileAttachment":
                found.add("attachments")
            elif kind == "/Link":
                action = self.get(annotation, "/A", "/S")
                if self.get(annotation, "/Dest") is not None or action == "/GoTo":
                    found.add("page links")
                elif action == "/URI":
                    found.add("web links")
        checks = {
            "outline": isinstance(self.get(root, "/Outlines", "/First"), dict),
            "fields": bool(self.array(self.get(root, "/AcroForm", "/Fields"))),
            "labels": isinstance(self.get(root, "/PageLabels"), dict),
            "attachments": self.has_names(self.dictionary(self.get(root, "/Names")).get(
                "/EmbeddedFiles")),
            "destinations": bool(self.dictionary(self.get(root, "/Dests"))) or self.has_names(
                self.dictionary(self.get(root, "/Names")).get("/Dests")),
            "optional content": bool(self.array(self.get(root, "/OCProperties", "/OCGs"))),
            "tags": isinstance(self.get(root, "/StructTreeRoot"), dict),
        }
        found.update(name for name, is_there in checks.items() if is_there)
        return found


def page(rows, skipped, total):
    """The page of Markdown."""
    lines = [
        "# Sample files that carry more than pages",
        "",
        "Written by `scripts/list_corpus.py`; run it again instead of editing this page.",
        "",
        f"Of {total} files in the folder of sample files, which is not a part of this repository, "
        f"{len(rows)}",
        "carry at least one of the following. Files without pages are not among them.",
        "",
        "| Carried | Files |",
        "|---|---|",
    ]
    lines += [f"| {name} | {sum(name in found for _, _, found in rows)} |" for name in FEATURES]
    lines += ["", "| Not looked at | Files |", "|---|---|"]
    lines += [f"| {reason} | {count} |" for reason, count in sorted(skipped.items())]
    lines += ["", "| File | Pages | " + " | ".join(FEATURES) + " |",
              "|---" * (len(FEATURES) + 2) + "|"]
    for name, pages, found in rows:
        marks = " | ".join("x" if feature in found else "" for feature in FEATURES)
        lines.append(f"| {name} | {pages} | {marks} |")
    return "\n".join(lines) + "\n"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--output", type=pathlib.Path, default=ROOT / "docs" / "CORPUS.md")
    arguments = parser.parse_args()
    paths = sorted(arguments.folder.rglob("*.pdf"),
                   key=lambda path: path.relative_to(arguments.folder).as_posix())
    if not paths:
        sys.exit(f"{arguments.folder} holds no PDF files")
    rows, skipped = [], {}
    for path in paths:
        try:
            document = Document(path)
        except Unreadable as reason:
            skipped[str(reason)] = skipped.get(str(reason), 0) + 1
            continue
        found = document.features()
        if not document.pages:
            skipped["has no pages"] = skipped.get("has no pages", 0) + 1
        elif found:
            rows.append((path.relative_to(arguments.folder).as_posix(), len(document.pages), found))
    arguments.output.write_text(page(rows, skipped, len(paths)), encoding="utf-8")
    print(f"{len(rows)} of {len(paths)} files are in {arguments.output}")


if __name__ == "__main__":
    main()
