#!/usr/bin/env python3
"""Writes the tables of this folder that come from elsewhere: letter_case_table.inc from Unicode's character data as
Python has it, language_codes.inc and region_codes.inc from the package iso-codes: make_tables.py"""
import json
import pathlib
import unicodedata

FOLDER = pathlib.Path(__file__).resolve().parent
ISO_639 = pathlib.Path("/usr/share/iso-codes/json/iso_639-2.json")
ISO_3166 = pathlib.Path("/usr/share/iso-codes/json/iso_3166-1.json")
WIDTH = 110


def lower(code):
    """The simple mapping; the one character of the plane whose full mapping is longer is the dotted I."""
    text = chr(code).lower()
    return code if 0xD800 <= code < 0xE000 else ord(text[0])


def case_ranges():
    """(first, last, step, distance) for runs of characters that are equally far from their lower case."""
    ranges = []
    for code in range(0x10000):
        distance = lower(code) - code
        if distance == 0:
            continue
        if ranges:
            first, last, step, before = ranges[-1]
            gap = code - last
            if before == distance and gap <= 2 and step in (0, gap):
                ranges[-1] = (first, code, gap, distance)
                continue
        ranges.append((code, code, 0, distance))
    return ranges


def write(name, comment, items):
    lines, row = [], ""
    for item in items:
        if len(row) + len(item) + 2 > WIDTH:
            lines.append(row.rstrip())
            row = ""
        row += item + ", "
    text = "".join(f"// {line}\n" for line in comment) + "\n".join([*lines, row.rstrip()]) + "\n"
    (FOLDER / name).write_text(text, encoding="utf-8", newline="\n")


def main():
    write("letter_case_table.inc",
          ["First and last code unit, step, distance to the lower case: the simple mappings of Unicode",
           f"{unicodedata.unidata_version}, UnicodeData.txt, as Python's module unicodedata has them. Written by make_tables.py."],
          [f"{{0x{first:04X}, 0x{last:04X}, {step or 1}, {distance}}}" for first, last, step, distance in case_ranges()])
    entries = json.loads(ISO_639.read_text(encoding="utf-8"))["639-2"]
    codes = sorted({code for entry in entries for code in [entry["alpha_3"] + "=" + entry.get("alpha_2", "")]
                    + [entry[b] + "=" + entry.get("alpha_2", "") for b in ("bibliographic",) if b in entry] if "-" not in code})
    write("language_codes.inc",
          ["ISO 639-2, each code with that of ISO 639-1 behind it, which Windows reports instead: iso_639-2.json of Debian's",
           "package iso-codes 4.15. Written by make_tables.py."],
          [f'u"{code}"' for code in codes])
    regions = json.loads(ISO_3166.read_text(encoding="utf-8"))["3166-1"]
    write("region_codes.inc",
          ["ISO 3166-1, the codes of two letters: iso_3166-1.json of Debian's package iso-codes 4.15. Written by make_tables.py."],
          [f'u"{code}"' for code in sorted(region["alpha_2"] for region in regions)])


if __name__ == "__main__":
    main()
