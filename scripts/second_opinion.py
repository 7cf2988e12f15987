#!/usr/bin/env python3
# SPDX-License-Identifier: AGPL-3.0-or-later
"""Looks at saved files with programs that have nothing to do with this one.

    scripts/second_opinion.py FOLDER [--program BUILD/benchmarks/write_pages] [FILE...]

FOLDER holds the files that docs/CORPUS.md lists. Of each of them (or of the named ones) all pages
are saved, once as they are and once backwards. What mutool, pdfinfo, pdfdetach and pdftotext say of
the file that was written is held against what they say of its source. Every difference is printed,
and the totals at the end. A difference is a reason to look closer; it may be the file or the tool
that is wrong.
"""

import argparse
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent

TIME_LIMIT = 60
INFO = ("Title", "Subject", "Keywords", "Author", "Creator", "Tagged", "Form", "JavaScript")


def run(*command):
    """What a command prints, errors left out; None when it does not end in time."""
    try:
        done = subprocess.run([str(word) for word in command], stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL, timeout=TIME_LIMIT, check=False)
    except subprocess.TimeoutExpired:
        return None
    return done.stdout.decode("utf-8", "replace")


def listed():
    """File -> number of pages, from the table."""
    found = {}
    for line in (ROOT / "docs" / "CORPUS.md").read_text(encoding="utf-8").splitlines():
        cells = [cell.strip() for cell in line.strip("|").split("|")]
        if cells[0].endswith(".pdf"):
            found[cells[0]] = int(cells[1])
    return found


# Each of these returns a list of lines. `number` tells where a page of the file comes in the source.

def outline(path, _, number):
    """Titles with levels and pages."""
    lines = []
    for line in (run("mutool", "show", path, "outline") or "").splitlines():
        lines.append(re.sub(r"#page=(\d+)", lambda found: f"#page={number(int(found.group(1)))}",
                            line))
    return lines


def destinations(path, _, number):
    lines = []
    for line in (run("pdfinfo", "-dests", path) or "").splitlines():
        found = re.match(r" *(\d+) (\[.*)", line)
        if found:
            lines.append(f"{number(int(found.group(1)))} {found.group(2)}")
    return sorted(lines)


def information(path, *_):
    text = run("pdfinfo", path) or ""
    return [line for line in text.splitlines() if line.split(":")[0] in INFO]


def sizes(path, count, number):
    lines = []
    for line in (run("pdfinfo", "-box", "-f", 1, "-l", count, path) or "").splitlines():
        found = re.match(r"Page +(\d+) (.*)", line)
        if found:
            lines.append((number(int(found.group(1))), found.group(2)))
    return [f"{page} {rest}" for page, rest in sorted(lines)]


def attachments(path, *_):
    lines = (run("pdfdetach", "-list", path) or "").splitlines()
    return sorted(re.sub(r"^\d+: ", "", line) for line in lines)


def text(path, count, number):
    pages = (run("pdftotext", "-layout", path, "-") or "").split("\f")[:-1]
    by_page = sorted((number(index + 1), words) for index, words in enumerate(pages))
    return [f"{page} {words}" for page, words in by_page] if len(pages) == count else pages


CHECKS = (
    ("outline (mutool show outline)", outline),
    ("named destinations (pdfinfo -dests)", destinations),
    ("information (pdfinfo)", information),
    ("page sizes (pdfinfo -box)", sizes),
    ("attachments (pdfdetach -list)", attachments),
    ("text (pdftotext)", text),
)


def difference(before, after):
    """The first line that is not the same; None when there is none."""
    for index in range(max(len(before), len(after))):
        was = before[index] if index < len(before) else "nothing"
        now = after[index] if index < len(after) else "nothing"
        if was != now:
            return f"line {index + 1} of {len(before)}/{len(after)}: {was!r} became {now!r}"
    return None


def compare(program, source, count, folder):
    """Pairs of check and difference for one file."""
    shutil.copyfile(source, folder / "MAIN.pdf")
    output = folder / "output.pdf"
    before = {}
    for order, words, number in (("unchanged", f"M1-{count}", lambda page: page),
                                 ("reversed", f"M{count}-1", lambda page: count + 1 - page)):
        output.unlink(missing_ok=True)
        run(program, "--save", folder, words, output)
        if not output.exists():
            yield order, "save", "no file was written"
            continue
        for name, check in CHECKS:
            if name not in before:
                before[name] = check(folder / "MAIN.pdf", count, lambda page: page)
            found = difference(before[name], check(output, count, number))
            if found:
                yield order, name, found


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("files", nargs="*")
    parser.add_argument("--program", type=pathlib.Path,
                        default=ROOT / "build" / "dev" / "benchmarks" / "write_pages")
    arguments = parser.parse_args()
    if not arguments.program.exists():
        sys.exit(f"{arguments.program} is missing; build the target write_pages first")
    counts = listed()
    files = arguments.files or list(counts)
    totals = {}
    different = 0
    with tempfile.TemporaryDirectory() as folder:
        for name in files:
            found = list(compare(arguments.program.resolve(), arguments.folder / name,
                                 counts[name], pathlib.Path(folder)))
            different += bool(found)
            for order, check, line in found:
                print(f"{name}: {order}: {check}: {line[:400]}", flush=True)
                totals[check] = totals.get(check, 0) + 1
    print(f"{len(files)} files, {len(files) - different} of them without any difference")
    for check, count in sorted(totals.items()):
        print(f"{count:6} {check}")


if __name__ == "__main__":
    main()
