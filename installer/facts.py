#!/usr/bin/env python3
"""What scripts/build-msi.sh has to know of the files that it packs.

    facts.py version FILE ...      the version that these programs and DLLs carry, four numbers; refuses files that differ
    facts.py languages FOLDER      the languages of the language files, sorted, one a line
    facts.py code NAME FILE ...    a GUID that follows from NAME and from names and contents of the files
"""
import hashlib
import pathlib
import re
import struct
import sys
import uuid

SPACE = uuid.UUID("6f0b6e0c-4e53-4c57-9c1b-2d7a1e95b8a4")  # the package's upgrade code


def version(path):
    data = pathlib.Path(path).read_bytes()
    block = data.find(struct.pack("<2I", 0xFEEF04BD, 0x10000))  # signature and version of VS_FIXEDFILEINFO
    if block < 0:
        raise ValueError(f"{path} carries no version")
    minor, major, build, patch = struct.unpack_from("<4H", data, block + 8)
    return f"{major}.{minor}.{patch}.{build}"


def languages(folder):
    found = set()
    for path in pathlib.Path(folder).glob("*.lang.txt"):
        found |= set(re.findall(r"^\s*LANG:\s*(\S+)\s*$", path.read_text(encoding="utf-8-sig"), re.MULTILINE))
    return sorted(found)


def code(name, paths):
    parts = [name]
    for path in sorted(paths):
        parts += [path, hashlib.sha256(pathlib.Path(path).read_bytes()).hexdigest()]
    return str(uuid.uuid5(SPACE, "\n".join(parts))).upper()


def main():
    what, *rest = sys.argv[1:]
    if what == "version":
        found = {path: version(path) for path in rest}
        for path in rest:
            if found[path] != found[rest[0]]:
                sys.exit(f"{path} is of another version than {rest[0]}")
        print(found[rest[0]])
    elif what == "languages":
        print("\n".join(languages(rest[0])))
    elif what == "code":
        print(code(rest[0], rest[1:]))
    else:
        sys.exit(__doc__)


if __name__ == "__main__":
    main()
