#!/usr/bin/env python3
# SPDX-License-Identifier: AGPL-3.0-or-later
"""Makes the PNG icons of the program from their SVG sources.

    scripts/make_icons.py               write the PNGs that are missing or out of date
    scripts/make_icons.py --check       fail if a PNG is missing, out of date or not in res.qrc
    scripts/make_icons.py --sheet FILE  write a picture that shows the whole family

The sources lie in res/svg/ and are drawn on a square as large as the icon's base size, so that
straight strokes meet the pixel grid at 1x; res/svg/README.md has the rules. Every icon is made at
1x, 2x ("@2x") and 3x ("@3x"). Needs rsvg-convert (librsvg) and nothing else outside Python.
"""

import argparse
import base64
import re
import struct
import subprocess
import sys
import zlib
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path
from xml.sax.saxutils import escape

RES = Path(__file__).resolve().parent.parent / "res"
SVG = RES / "svg"
QRC = RES / "res.qrc"

SCALES = (1, 2, 3)

# Base size in pixels of every icon of the program: the size at which it is shown most, or the
# largest one where it is shown at several (icons are shrunk where needed, never enlarged).
ICONS = {
    "checkbox/checkbox-checked": 20,
    "checkbox/checkbox-unchecked": 20,
    "icons/modern/add-file": 24,
    "icons/modern/addfile": 28,
    "icons/modern/chevron-down": 16,
    "icons/modern/close": 24,
    "icons/modern/close_20_hover": 14,
    "icons/modern/completed": 20,
    "icons/modern/compress": 24,
    "icons/modern/compress-big": 32,
    "icons/modern/convert": 24,
    "icons/modern/convert-big": 32,
    "icons/modern/decrypt": 24,
    "icons/modern/decrypt-big": 32,
    "icons/modern/documents-big": 32,
    "icons/modern/down": 24,
    "icons/modern/encrypt": 24,
    "icons/modern/encrypt-big": 32,
    "icons/modern/eye": 16,
    "icons/modern/eye-off": 16,
    "icons/modern/failed": 20,
    "icons/modern/file-pdf": 32,
    "icons/modern/folder": 32,
    "icons/modern/home": 24,
    "icons/modern/image": 24,
    "icons/modern/image-big": 32,
    "icons/modern/lock": 18,
    "icons/modern/logo": 64,
    "icons/modern/maximize": 14,
    "icons/modern/merge": 24,
    "icons/modern/merge-big": 32,
    "icons/modern/minimize": 14,
    "icons/modern/open-file": 24,
    "icons/modern/open-folder": 18,
    "icons/modern/pdf": 128,
    "icons/modern/print": 16,
    "icons/modern/restart": 16,
    "icons/modern/restore": 14,
    "icons/modern/save": 16,
    "icons/modern/save-as": 16,
    "icons/modern/search": 24,
    "icons/modern/trash": 24,
    "icons/pdfviewer/document-view": 27,
    "icons/pdfviewer/duplicate": 24,
    "icons/pdfviewer/expand": 24,
    "icons/pdfviewer/fit-height": 24,
    "icons/pdfviewer/fit-width": 24,
    "icons/pdfviewer/hand": 24,
    "icons/pdfviewer/more": 24,
    "icons/pdfviewer/next": 24,
    "icons/pdfviewer/next-disabled": 24,
    "icons/pdfviewer/page-grid": 27,
    "icons/pdfviewer/previous": 24,
    "icons/pdfviewer/previous-disabled": 24,
    "icons/pdfviewer/redo": 24,
    "icons/pdfviewer/rotate-left": 24,
    "icons/pdfviewer/rotate-right": 24,
    "icons/pdfviewer/thumbnail-panel": 27,
    "icons/pdfviewer/tools-grid": 27,
    "icons/pdfviewer/undo": 24,
    "icons/pdfviewer/zoom-in": 16,
    "icons/pdfviewer/zoom-out": 16,
}

# Icons of the application for installers and desktops, which want one file per size; they are not
# compiled into the program. Up to 24 pixels the simpler drawing is used.
APP_ICONS = {
    f"icons/app/logo-{size}": ("icons/modern/logo-small" if size <= 24 else "icons/modern/logo", size)
    for size in (16, 20, 24, 32, 48, 64, 128, 256)
}

# Icons that stand on a dark or coloured fill, and those fills, for the sheet.
LIGHT_ICONS = {
    "icons/modern/addfile",
    "icons/pdfviewer/fit-height",
    "icons/pdfviewer/fit-width",
    "icons/pdfviewer/next",
    "icons/pdfviewer/next-disabled",
    "icons/pdfviewer/previous",
    "icons/pdfviewer/previous-disabled",
    "icons/pdfviewer/zoom-in",
    "icons/pdfviewer/zoom-out",
}
BACKDROPS = ("#FFFFFF", "#F7F8FC", "#F1F3F8")
LIGHT_BACKDROPS = ("#4F46E5", "#18191C", "#4A4C50")
SHEET_SIZES = (16, 24, 32, 64)

# Largest difference of a channel that two versions of librsvg may show for the same drawing.
CHECK_TOLERANCE = 6


def render(source, size):
    """Returns the PNG bytes of a source drawn at size x size pixels."""
    command = ["rsvg-convert", "-w", str(size), "-h", str(size), str(SVG / f"{source}.svg")]
    return subprocess.run(command, check=True, stdout=subprocess.PIPE).stdout


def decode(png):
    """Returns (width, height, premultiplied RGBA bytes) of an 8-bit RGBA PNG."""
    position, data, width, height = 8, b"", 0, 0
    while position < len(png):
        length, kind = struct.unpack(">I4s", png[position:position + 8])
        body = png[position + 8:position + 8 + length]
        if kind == b"IHDR":
            width, height, depth, colour, _, _, interlace = struct.unpack(">IIBBBBB", body)
            if (depth, colour, interlace) != (8, 6, 0):
                raise ValueError("not an 8-bit RGBA picture")
        elif kind == b"IDAT":
            data += body
        position += length + 12
    raw, stride = zlib.decompress(data), width * 4
    previous, pixels = bytearray(stride), bytearray()
    for row in range(height):
        start = row * (stride + 1)
        method, line = raw[start], bytearray(raw[start + 1:start + 1 + stride])
        for i in range(stride):
            left = line[i - 4] if i >= 4 else 0
            up = previous[i]
            corner = previous[i - 4] if i >= 4 else 0
            if method == 1:
                line[i] = (line[i] + left) & 255
            elif method == 2:
                line[i] = (line[i] + up) & 255
            elif method == 3:
                line[i] = (line[i] + (left + up) // 2) & 255
            elif method == 4:
                guess = left + up - corner
                near = min((abs(guess - left), 0, left), (abs(guess - up), 1, up),
                           (abs(guess - corner), 2, corner))[2]
                line[i] = (line[i] + near) & 255
        pixels += line
        previous = line
    for i in range(0, len(pixels), 4):
        alpha = pixels[i + 3]
        for channel in range(i, i + 3):
            pixels[channel] = (pixels[channel] * alpha + 127) // 255
    return width, height, bytes(pixels)


def same_picture(one, other, tolerance):
    """Tells whether two PNGs show the same picture, whatever their compression."""
    if one == other:
        return True
    try:
        first, second = decode(one), decode(other)
    except (ValueError, struct.error, zlib.error):
        return False
    if first[:2] != second[:2]:
        return False
    return all(abs(a - b) <= tolerance for a, b in zip(first[2], second[2]))


def targets():
    """Lists (file, source, size in pixels) of every PNG."""
    result = []
    for name, base in ICONS.items():
        for scale in SCALES:
            suffix = "" if scale == 1 else f"@{scale}x"
            result.append((RES / f"{name}{suffix}.png", name, base * scale))
    for name, (source, size) in APP_ICONS.items():
        result.append((RES / f"{name}.png", source, size))
    return result


def resource_files():
    """Lists what res.qrc must name, relative to res/."""
    return [str(path.relative_to(RES).as_posix())
            for path, source, _ in targets() if source in ICONS and "icons/app/" not in str(path)]


def source_problems():
    """Lists what is wrong with the sources themselves."""
    problems = []
    drawn = dict(ICONS, **{"icons/modern/logo-small": 24})
    for name, base in drawn.items():
        path = SVG / f"{name}.svg"
        if not path.exists():
            problems.append(f"{path.relative_to(RES)}: missing")
        elif f'viewBox="0 0 {base} {base}"' not in path.read_text(encoding="utf-8"):
            problems.append(f"{path.relative_to(RES)}: not drawn on {base} x {base} units")
    for path in sorted(SVG.rglob("*.svg")):
        if path.relative_to(SVG).with_suffix("").as_posix() not in drawn:
            problems.append(f"{path.relative_to(RES)}: not in the table of icons")
    return problems


def render_all(jobs):
    """Renders (source, size) pairs side by side and returns their PNG bytes in order."""
    with ThreadPoolExecutor(max_workers=2) as pool:
        return list(pool.map(lambda job: render(*job), jobs))


def make():
    written = 0
    wanted = targets()
    for (path, _, _), png in zip(wanted, render_all([job[1:] for job in wanted])):
        if path.exists() and same_picture(path.read_bytes(), png, 0):
            continue
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(png)
        written += 1
    print(f"{len(wanted)} pictures, {written} written")


def check():
    problems = []
    wanted = targets()
    for (path, _, _), png in zip(wanted, render_all([job[1:] for job in wanted])):
        if not path.exists():
            problems.append(f"{path.relative_to(RES)}: missing")
        elif not same_picture(path.read_bytes(), png, CHECK_TOLERANCE):
            problems.append(f"{path.relative_to(RES)}: differs from its source")
    known = {path for path, _, _ in wanted}
    for folder in ("icons", "checkbox"):
        for path in sorted((RES / folder).rglob("*.png")):
            if path not in known:
                problems.append(f"{path.relative_to(RES)}: has no source")
    listed = re.findall(r"<file>((?:icons|checkbox)/[^<]*)</file>", QRC.read_text(encoding="utf-8"))
    for name in sorted(set(resource_files()) ^ set(listed)):
        problems.append(f"{name}: {'not listed in' if name not in listed else 'not made for'} res.qrc")
    return problems


def embed(png, x, y, size):
    data = base64.b64encode(png).decode("ascii")
    return (f'<image x="{x}" y="{y}" width="{size}" height="{size}" '
            f'href="data:image/png;base64,{data}"/>')


def write_sheet(file):
    """Writes the contact sheet: every icon at four sizes on three fills, then its own 1x PNG."""
    row_height, label, gap, columns = 84, 150, 12, 2
    strip = sum(SHEET_SIZES) + gap * (len(SHEET_SIZES) + 1)
    row_width = label + 3 * (strip + 8) + 152
    names = list(ICONS)
    rows = -(-len(names) // columns)
    width, height = columns * (row_width + 24), rows * row_height + 24
    pictures = iter(render_all([(name, size) for name in names
                                for size in (*SHEET_SIZES, ICONS[name])]))
    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}" '
             f'viewBox="0 0 {width} {height}" font-family="sans-serif" font-size="12">',
             f'<rect width="{width}" height="{height}" fill="#DDE2EA"/>']
    for index, name in enumerate(names):
        left = 12 + (index // rows) * (row_width + 24)
        top = 12 + (index % rows) * row_height
        middle = top + row_height // 2
        parts.append(f'<text x="{left}" y="{middle}" fill="#172033">{escape(Path(name).name)}</text>'
                     f'<text x="{left}" y="{middle + 16}" fill="#475569" font-size="10">'
                     f'{escape(Path(name).parent.name)}, {ICONS[name]} px</text>')
        shown = [next(pictures) for _ in SHEET_SIZES]
        own = next(pictures)
        fills = LIGHT_BACKDROPS if name in LIGHT_ICONS else BACKDROPS
        x = left + label
        for fill in fills:
            parts.append(f'<rect x="{x}" y="{top + 2}" width="{strip}" height="{row_height - 4}" '
                         f'rx="6" fill="{fill}"/>')
            at = x + gap
            for size, png in zip(SHEET_SIZES, shown):
                parts.append(embed(png, at, middle - size // 2, size))
                at += size + gap
            x += strip + 8
        side = min(ICONS[name], 128)
        parts.append(f'<rect x="{x}" y="{top + 2}" width="136" height="{row_height - 4}" rx="6" '
                     f'fill="{fills[0]}"/>')
        if side < row_height:
            parts.append(embed(own, x + 68 - side // 2, middle - side // 2, side))
    parts.append("</svg>")
    sheet = "\n".join(parts).encode("utf-8")
    png = subprocess.run(["rsvg-convert", "--unlimited"], input=sheet, check=True,
                         stdout=subprocess.PIPE).stdout
    Path(file).write_bytes(png)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--check", action="store_true", help="change nothing, report what is stale")
    parser.add_argument("--sheet", metavar="FILE", help="write a contact sheet PNG")
    options = parser.parse_args()

    problems = source_problems()
    if not problems and options.check:
        problems = check()
    for problem in problems:
        print(problem, file=sys.stderr)
    if problems:
        return 1
    if options.sheet:
        write_sheet(options.sheet)
    elif not options.check:
        make()
    return 0


if __name__ == "__main__":
    sys.exit(main())
