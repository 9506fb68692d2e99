#!/usr/bin/env python3
"""Puts the languages of langs/ into the list that the policy template offers.

    make_policies.py            write it into admx/nmshell.admx and admx/*/nmshell.adml
    make_policies.py --check    change nothing; fail unless it is there
"""
import pathlib
import re
import sys
from xml.sax.saxutils import escape

ROOT = pathlib.Path(__file__).resolve().parent
LANGS = ROOT.parent / "langs"
BLOCK = re.compile(r"( *)(<!-- made by make_policies\.py -->\n).*?( *<!-- end -->\n)", re.DOTALL)


def languages():
    """Gives {code: the language's own name}."""
    found = {}
    for path in sorted(LANGS.glob("*.lang.txt")):
        text = path.read_text(encoding="utf-8-sig")
        code = re.search(r"^LANG:\s*(\S+)", text, re.MULTILINE)
        name = re.search(r"^KEY:\s*LANGUAGE\s*\nTEXT:\s*(.+?)\s*$", text, re.MULTILINE)
        if not code or not name:
            sys.exit(f"{path.name}: no LANG:, or no text for LANGUAGE")
        found[code.group(1)] = name.group(1)
    return dict(sorted(found.items()))


def string_id(code):
    return "Language_" + code.replace("-", "_")  # the only sign that such a name may have


def filled(path, found):
    if path.suffix == ".admx":
        lines = [f'<item displayName="$(string.{string_id(code)})"><value><string>{code}</string></value></item>'
                 for code in found]
    else:
        lines = [f'<string id="{string_id(code)}">{escape(name)} ({code})</string>' for code, name in found.items()]

    def block(match):
        return match[1] + match[2] + "".join(f"{match[1]}{line}\n" for line in lines) + match[3]
    text, count = BLOCK.subn(block, path.read_text(encoding="utf-8"))
    if count != 1:
        sys.exit(f"{path}: the two comments around the list are missing")
    return text


def main():
    if sys.argv[1:] not in ([], ["--check"]):
        sys.exit(__doc__)
    found = languages()
    stale = []
    for path in [ROOT / "admx/nmshell.admx", *sorted((ROOT / "admx").glob("*/nmshell.adml"))]:
        text = filled(path, found)
        if text == path.read_text(encoding="utf-8"):
            continue
        stale.append(str(path.relative_to(ROOT)))
        if not sys.argv[1:]:
            path.write_text(text, encoding="utf-8")
    if stale and sys.argv[1:]:
        sys.exit(f"{', '.join(stale)}: not the languages of langs/; run installer/make_policies.py")


if __name__ == "__main__":
    main()
