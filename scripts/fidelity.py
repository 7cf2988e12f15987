#!/usr/bin/env python3
# SPDX-License-Identifier: AGPL-3.0-or-later
"""Compares what page operations keep of a document: this program and other tools.

    scripts/fidelity.py [--program BUILD/benchmarks/write_pages] [--output docs/FIDELITY.md]

Every tool makes the same page lists of the same two sample documents. What came of it is held
against the sources by write_pages --compare, and measured once more by programs that have nothing
to do with either: mutool, pdfinfo, pdfdetach and pdftotext. The result is a page of Markdown; what
was found wrong is printed.
"""

import argparse
import pathlib
import re
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent

SCENARIOS = (
    ("Nothing changed", "M1-8"),
    ("Order reversed", "M8-1"),
    ("Pages deleted", "M2 M4-5 M7"),
    ("A page repeated", "M1-8 M1"),
    ("Two documents joined", "M1-8 O1-8"),
    ("Two documents in turn", "M1 O1 M2 O2 M3 O3 M4 O4"),
)

FILES = {"M": "MAIN.pdf", "O": "OTHER.pdf"}


def run(*command):
    """Runs a command and returns its exit code and what it printed, errors left out."""
    done = subprocess.run([str(word) for word in command], stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL, check=False)
    return done.returncode, done.stdout.decode("utf-8", "replace")


def pages_of(words):
    """The pages of a list as pairs of letter and number."""
    pages = []
    for word in words.split():
        first, _, last = word[1:].partition("-")
        first, last = int(first), int(last or first)
        step = 1 if last >= first else -1
        pages += [(word[0], number) for number in range(first, last + step, step)]
    return pages


def runs_of(words):
    """The same with neighbours of one document together: pairs of letter and numbers."""
    runs = []
    for letter, number in pages_of(words):
        if runs and runs[-1][0] == letter:
            runs[-1][1].append(number)
        else:
            runs.append((letter, [number]))
    return runs


class Tools:
    """The ways to write a list of pages. Each method returns whether it worked."""

    def __init__(self, program, folder):
        self.program = program
        self.folder = folder

    def source(self, letter):
        return self.folder / FILES[letter]

    def quillora(self, words, output):
        return run(self.program, "--save", self.folder, words, output)[0] == 0

    def qpdf(self, words, output):
        command = ["qpdf", self.source(words[0]), "--pages"]
        for letter, numbers in runs_of(words):
            command += [self.source(letter), ",".join(map(str, numbers))]
        return run(*command, "--", output)[0] in (0, 3)

    def mutool(self, words, output):
        command = ["mutool", "merge", "-o", output]
        for letter, numbers in runs_of(words):
            command += [self.source(letter), ",".join(map(str, numbers))]
        return run(*command)[0] == 0 and output.exists()

    def pdfunite(self, words, output):
        """Whole documents as they are; otherwise their pages, which pdfseparate takes apart.

        There is nothing to unite in one document alone.
        """
        parts = []
        for letter, numbers in runs_of(words):
            if numbers == list(range(1, 9)):
                parts.append(self.source(letter))
                continue
            for number in numbers:
                part = self.folder / f"part-{letter}{number}.pdf"
                run("pdfseparate", "-f", number, "-l", number, self.source(letter), part)
                parts.append(part)
        if len(parts) == 1:
            return False
        return run("pdfunite", *parts, output)[0] == 0

    def all(self):
        return (("Quillora", self.quillora), ("qpdf --pages", self.qpdf),
                ("mutool merge", self.mutool), ("pdfunite", self.pdfunite))


def comparison(program, folder, words, output):
    """Feature -> (number of problems, first problem)."""
    code, text = run(program, "--compare", folder, words, output)
    if code != 0:
        sys.exit(f"{program} cannot compare {output}")
    found = {}
    for line in text.splitlines():
        feature, count, first = line.split("\t")
        found[feature] = (int(count), first)
    return found


def second_opinion(words, output):
    """Measure -> figure, by programs that are neither this one nor its checks."""
    _, outline = run("mutool", "show", output, "outline")
    _, names = run("pdfinfo", "-dests", output)
    _, info = run("pdfinfo", output)
    _, files = run("pdfdetach", "-list", output)
    _, text = run("pdftotext", output, "-")
    marks = []
    for page in text.split("\f"):
        found = re.search(r"\b(MAIN|OTHER)-(\d)\b", page)
        marks.append((found.group(1)[0], int(found.group(2))) if found else None)

    def entry(name):
        found = re.search(rf"^{name}: +(.*)$", info, re.MULTILINE)
        return found.group(1) if found else "none"

    return {
        "Pages in their order (pdftotext)":
            "yes" if marks[:len(pages_of(words))] == pages_of(words) else "no",
        "Outline entries (mutool show outline)": len(re.findall(r"@|Part|Web|Else", outline)),
        "Named destinations (pdfinfo -dests)": len(re.findall(r'^ *\d+ \[', names, re.MULTILINE)),
        "Attachments (pdfdetach -list)":
            (re.search(r"^(\d+) embedded", files) or [None, "none"])[1],
        "Title (pdfinfo)": entry("Title"),
        "Form (pdfinfo)": entry("Form"),
        "Tagged (pdfinfo)": entry("Tagged"),
        "Metadata stream (pdfinfo)": entry("Metadata Stream"),
        "File size in bytes": output.stat().st_size,
    }


def table(header, rows):
    lines = ["| " + " | ".join(header) + " |", "|" + "---|" * len(header)]
    lines += ["| " + " | ".join(str(cell) for cell in row) + " |" for row in rows]
    return lines


def version(*command):
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
    found = re.search(r"\d+\.\d[\d.]*", done.stdout.decode("utf-8", "replace"))
    return found.group(0) if found else "unknown"


def results(program, folder):
    """Scenario -> tool -> (comparison, second opinion), None for a tool that failed."""
    run(program, "--samples", folder)
    tools = Tools(program, folder).all()
    found = {}
    for scenario, words in SCENARIOS:
        found[scenario] = {}
        for number, (name, write) in enumerate(tools):
            output = folder / f"output-{number}.pdf"
            output.unlink(missing_ok=True)
            found[scenario][name] = None
            if write(words, output):
                found[scenario][name] = (comparison(program, folder, words, output),
                                         second_opinion(words, output))
    return found


def page(found):
    names = list(next(iter(found.values())))
    lines = [
        "# What page operations keep",
        "",
        "Written by `scripts/fidelity.py`; run it again instead of editing this page.",
        "",
        "Each tool made the same page lists of the same two documents, which carry everything that",
        "the rows name. \"yes\" means that the checks of the tests found nothing missing, nothing",
        "wrong and nothing left behind; a number is the number of places where they did. The checks",
        "know what Quillora promises, which is more than the other tools do. \"–\" stands where a tool",
        "cannot make the list.",
        "",
        f"Peers: qpdf {version('qpdf', '--version')}, mutool {version('mutool', '-v')}, "
        f"pdfunite {version('pdfunite', '-v')}.",
    ]
    for scenario, words in SCENARIOS:
        tools = found[scenario]
        present = [result for result in tools.values() if result]
        lines += ["", f"## {scenario}", "", f"`{words}`", ""]
        rows = []
        for feature in present[0][0]:
            cells = []
            for name in names:
                count = tools[name][0][feature][0] if tools[name] else None
                cells.append("–" if count is None else "yes" if count == 0 else f"no ({count})")
            rows.append([feature] + cells)
        lines += table(["Checked by the tests' own checks"] + names, rows)
        rows = []
        for measure in present[0][1]:
            rows.append([measure] + [tools[name][1][measure] if tools[name] else "–"
                                     for name in names])
        lines += [""] + table(["Measured by others"] + names, rows)
    return "\n".join(lines) + "\n"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--program", type=pathlib.Path,
                        default=ROOT / "build" / "dev" / "benchmarks" / "write_pages")
    parser.add_argument("--output", type=pathlib.Path, default=ROOT / "docs" / "FIDELITY.md")
    arguments = parser.parse_args()
    if not arguments.program.exists():
        sys.exit(f"{arguments.program} is missing; build the target write_pages first")
    with tempfile.TemporaryDirectory() as folder:
        found = results(arguments.program.resolve(), pathlib.Path(folder))
    arguments.output.write_text(page(found), encoding="utf-8")
    for scenario, tools in found.items():
        for name, result in tools.items():
            for feature, (count, first) in (result[0] if result else {}).items():
                if count:
                    print(f"{scenario}: {name}: {feature}: {first}")


if __name__ == "__main__":
    main()
