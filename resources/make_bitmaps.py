#!/usr/bin/env python3
"""Makes the menu bitmaps bitmaps/230.bmp .. 240.bmp, the commands' icons commands/*.ico, nullmark.ico of the programs and the
package's logos/*.png from the text pictures icons/*.txt.

    make_bitmaps.py            write them
    make_bitmaps.py --check    change nothing; fail unless every file is what its picture gives

An icon file is named ID_NAME.txt and holds, in this order: comment lines that begin with '#'; palette
lines "KEY RRGGBB", KEY being one character; a line "pixels"; and 16 rows of 16 characters, the top
row first. '.' is the background and has no palette line. Errors name the file and the line.
"""

import argparse
import pathlib
import re
import struct
import sys
import zlib

SIZE = 16
LOGO_SIZES = (44, 50, 150)
PROGRAM_SIZES = (16, 32, 48)
COMMAND_SIZES = (16, 20, 24, 32, 48)  # those of each scale of the screen
MAX_COLOURS = 16  # four bits a pixel
BACKGROUND_KEY = "."
# The loader puts the system's window colour in place of the colour that the first pixel has. White looks
# right where a bitmap is shown without that step. Index 0 belongs to the background alone.
BACKGROUND = (0xFF, 0xFF, 0xFF)
# LR_LOADMAP3DCOLORS replaces exactly these greys by colours of the system.
MAPPED_GREYS = {(128, 128, 128), (192, 192, 192), (223, 223, 223)}

ROOT = pathlib.Path(__file__).resolve().parent
IDENTIFIERS = {name: int(number) for name, number in re.findall(
    r"#define (IDB_\w+) (\d+)", (ROOT / "resource.h").read_text(encoding="ascii"))}
PRODUCT_ID = IDENTIFIERS["IDB_NULLMARK"]  # the product's mark, which is the icon of programs too
# The entries that the first level of the menu shows.
COMMAND_IDS = {IDENTIFIERS[name] for name in re.findall(
    r"^(IDB_\w+) +ICON ", (ROOT / "commands.rc").read_text(encoding="ascii"), re.MULTILINE)}
PALETTE_LINE = re.compile(r"(\S) ([0-9A-F]{6})")


class IconError(Exception):
    """A picture breaks a rule; the text says where and which."""


def add_colour(keys, palette, key, digits, where):
    colour = tuple(bytes.fromhex(digits))
    if key in keys:
        raise IconError(f"{where}: the key '{key}' is already taken")
    if key == "#":
        raise IconError(f"{where}: '#' begins a comment and cannot be a key")
    if colour == BACKGROUND:
        raise IconError(f"{where}: {digits} is the colour of the background; take a slightly different one")
    if colour in MAPPED_GREYS:
        raise IconError(f"{where}: the loader may replace the grey {digits}; take a slightly different one")
    if colour in palette:
        raise IconError(f"{where}: the colour {digits} already has a key")
    if len(palette) == MAX_COLOURS:
        raise IconError(f"{where}: more than {MAX_COLOURS - 1} colours")
    keys[key] = len(palette)
    palette.append(colour)


def parse_icon(path):
    """Gives (palette, rows): RGB triples with the background first, and 16 lists of palette indexes."""
    lines = path.read_text(encoding="ascii").splitlines()
    keys = {BACKGROUND_KEY: 0}
    palette = [BACKGROUND]
    start = None
    for number, line in enumerate(lines, 1):
        where = f"{path.name}:{number}"
        if line.startswith("#") or not line:
            continue
        if line == "pixels":
            start = number
            break
        match = PALETTE_LINE.fullmatch(line)
        if not match:
            raise IconError(f"{where}: expected 'KEY RRGGBB' in capitals, or 'pixels', found '{line}'")
        add_colour(keys, palette, match[1], match[2], where)
    if start is None:
        raise IconError(f"{path.name}: there is no line 'pixels'")
    return palette, parse_pixels(path, lines, start, keys)


def parse_pixels(path, lines, start, keys):
    grid = lines[start:]
    if len(grid) != SIZE:
        raise IconError(f"{path.name}: {len(grid)} pixel rows instead of {SIZE}")
    for number, line in enumerate(grid, start + 1):
        if len(line) != SIZE:
            raise IconError(f"{path.name}:{number}: {len(line)} pixels instead of {SIZE}")
        for column, key in enumerate(line, 1):
            if key not in keys:
                raise IconError(f"{path.name}:{number}: '{key}' in column {column} has no palette line")
    # Any corner may be the "first pixel": the file begins with the bottom row, the picture with the top one.
    if any(grid[y][x] != BACKGROUND_KEY for y in (0, -1) for x in (0, -1)):
        raise IconError(f"{path.name}: all four corners must be background '{BACKGROUND_KEY}'")
    unused = set(keys) - set("".join(grid))
    if unused:
        raise IconError(f"{path.name}: the keys {' '.join(sorted(unused))} are not used by any pixel")
    return [[keys[key] for key in line] for line in grid]


def encode_bmp(palette, rows):
    """An uncompressed bottom-up bitmap of four bits a pixel: the oldest form that every loader reads."""
    padded = palette + [(0, 0, 0)] * (MAX_COLOURS - len(palette))
    table = b"".join(bytes((blue, green, red, 0)) for red, green, blue in padded)
    bits = b"".join(
        bytes(row[x] << 4 | row[x + 1] for x in range(0, SIZE, 2)) for row in reversed(rows))
    info = struct.pack("<IiiHHIIiiII", 40, SIZE, SIZE, 1, 4, 0, len(bits), 0, 0, 0, 0)
    offset = 14 + len(info) + len(table)
    return struct.pack("<2sIHHI", b"BM", offset + len(bits), 0, 0, offset) + info + table + bits


def overlaps(size, position):
    """Gives (source, length) for each of the 16 source pixels that lie under one of `size` pixels, 16 lengths in all."""
    first, last = position * SIZE, (position + 1) * SIZE
    return [(source, min(last, (source + 1) * size) - max(first, source * size))
            for source in range(first // size, (last - 1) // size + 1)]


def scaled_pixel(palette, rows, size, x, y):
    """Blue, green, red and opacity of one of `size` x `size` pixels: the mean of what lies under it."""
    total, colour = 0, [0, 0, 0]
    for row, height in overlaps(size, y):
        for column, width in overlaps(size, x):
            index = rows[row][column]
            if index:
                total += width * height
                colour = [value + width * height * part for value, part in zip(colour, reversed(palette[index]))]
    return bytes([*((part + total // 2) // total for part in colour), total * 255 // SIZE**2]) if total else bytes(4)


def encode_ico(palette, rows, sizes):
    """The picture as an icon with a transparent ground, 32 bits a pixel, once for each size."""
    entries, images = b"", b""
    for size in sizes:
        pixels = [[scaled_pixel(palette, rows, size, x, y) for x in range(size)] for y in reversed(range(size))]
        bits = b"".join(pixel for row in pixels for pixel in row)
        # The mask that follows is for screens of old; its rows are filled up to 32 bits.
        filled = (size + 31) // 32 * 32
        mask = b"".join(int("".join("01"[pixel[3] < 128] for pixel in row).ljust(filled, "0"), 2).to_bytes(filled // 8, "big")
                        for row in pixels)
        image = struct.pack("<IiiHHIIiiII", 40, size, 2 * size, 1, 32, 0, len(bits + mask), 0, 0, 0, 0) + bits + mask
        entries += struct.pack("<BBBBHHII", size, size, 0, 0, 1, 32, len(image),
                               6 + 16 * len(sizes) + len(images))
        images += image
    return struct.pack("<HHH", 0, 1, len(sizes)) + entries + images


def encode_png(palette, rows, size):
    """The picture as large as it fits into size pixels by a whole factor, in the middle of a transparent ground."""
    factor = size // SIZE
    before = (size - SIZE * factor) // 2
    empty = [0] * size
    wide = [[0] * before + [index for index in row for _ in range(factor)] for row in rows]
    lines = [empty] * before + [row + [0] * (size - len(row)) for row in wide for _ in range(factor)]
    lines += [empty] * (size - len(lines))
    # Each line begins with its filter, none. Packed without compression: that is the same with every version of the library.
    bits = b"".join(b"\0" + bytes(line[x] << 4 | (line[x + 1] if x + 1 < size else 0) for x in range(0, size, 2)) for line in lines)
    chunks = {b"IHDR": struct.pack(">IIBBBBB", size, size, 4, 3, 0, 0, 0), b"PLTE": b"".join(map(bytes, palette)), b"tRNS": b"\0",
              b"IDAT": zlib.compress(bits, 0), b"IEND": b""}
    return b"\x89PNG\r\n\x1a\n" + b"".join(
        struct.pack(">I", len(data)) + name + data + struct.pack(">I", zlib.crc32(name + data)) for name, data in chunks.items())


def icon_sources(folder):
    """Gives {identifier: path}, one for each identifier."""
    sources = {}
    for path in sorted(folder.glob("*.txt")):
        match = re.fullmatch(r"(\d{3})_[a-z_]+\.txt", path.name)
        if not match or int(match[1]) not in IDENTIFIERS.values():
            raise IconError(f"{path.name}: the name must be ID_NAME.txt, ID being one of resource.h")
        if int(match[1]) in sources:
            raise IconError(f"{path.name}: {sources[int(match[1])].name} has the same identifier")
        sources[int(match[1])] = path
    missing = [str(i) for i in IDENTIFIERS.values() if i not in sources]
    if missing:
        raise IconError(f"{folder.name}: no picture for {' '.join(missing)}")
    return sources


def make_all(folder):
    """Gives {path: bytes}; fails when two pictures are the same."""
    files, seen = {}, {}
    for identifier, path in icon_sources(folder).items():
        palette, rows = parse_icon(path)
        picture = tuple(palette[index] for row in rows for index in row)
        if picture in seen:
            raise IconError(f"{path.name}: the same picture as {seen[picture]}")
        seen[picture] = path.name
        files[f"bitmaps/{identifier}.bmp"] = encode_bmp(palette, rows)
        if identifier == PRODUCT_ID:
            files["nullmark.ico"] = encode_ico(palette, rows, PROGRAM_SIZES)
            files.update({f"logos/{size}.png": encode_png(palette, rows, size) for size in LOGO_SIZES})
        if identifier in COMMAND_IDS:
            files[f"commands/{identifier}.ico"] = encode_ico(palette, rows, COMMAND_SIZES)
    return files


def check(files, folder):
    made = (path for pattern in ("bitmaps/*", "commands/*", "logos/*", "*.ico") for path in folder.glob(pattern))
    present = {str(path.relative_to(folder)) for path in made}
    faults = [f"{name}: no picture gives this file" for name in sorted(present - set(files))]
    for name, data in files.items():
        if name not in present:
            faults.append(f"{name}: missing")
        elif (folder / name).read_bytes() != data:
            faults.append(f"{name}: differs from its picture")
    if faults:
        raise IconError("\n".join(faults + ["run resources/make_bitmaps.py"]))


def main():
    parser = argparse.ArgumentParser(description="Makes the menu bitmaps from the text pictures in icons/.")
    parser.add_argument("--check", action="store_true", help="change nothing; fail unless all is up to date")
    arguments = parser.parse_args()
    try:
        files = make_all(ROOT / "icons")
        if arguments.check:
            check(files, ROOT)
        else:
            for name, data in files.items():
                (ROOT / name).parent.mkdir(exist_ok=True)
                (ROOT / name).write_bytes(data)
    except (IconError, OSError, UnicodeError) as error:
        print(error, file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
