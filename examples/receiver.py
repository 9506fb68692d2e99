#!/usr/bin/env python3
"""Reads the command line of nmark.exe, as docs/command-line.md describes it, and prints the request as JSON:
receiver.py ARGUMENT ..."""
import base64
import json
import os
import re
import struct
import sys

MAX_FILE = 10485760
STARTS = {0x101, 0x102, 0x104}  # without data these wipe nothing; 0x105 without data means all drives
ALPHABET = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/"
NUMBER = re.compile(r"[\x00-\x20]*(?:([+-])|0[xX])?([0-9A-Fa-f:;<=>?\uff10-\uff1f\uff21-\uff26\uff41-\uff46]*)")


def digit(character):
    code = ord(character)
    for above, offset in ((0xFF40, 0xFF37), (0xFF20, 0xFF17), (0xFF0F, 0xFF10), (0x60, 87), (0x40, 55)):
        if code > above:
            return code - offset
    return code - 48


def command_number(text):
    match = NUMBER.match(text)
    value = 0
    for character in match[2]:
        value = value * 16 + digit(character)
        if value > 0xFFFFFFFF:
            return 0
    return -value & 0xFFFFFFFF if match[1] == "-" else value


def from_base64(text):
    """The bytes, or None: a character that was lost or added must not turn one path into another."""
    if len(text) < 2:
        return None
    result, group, letters = bytearray(), 0, 0
    for place, character in enumerate(text):
        value = ALPHABET.find(character)
        if character == "=" and letters < 2:
            continue
        if character == "=" and not text[place:].strip("="):
            break
        if value < 0:
            return None
        group, letters = group << 6 | value, letters + 1
        if letters == 4:
            result += group.to_bytes(3, "big")
            group, letters = 0, 0
    if letters:  # a single one is a byte, too
        result += (group << 6 * (4 - letters)).to_bytes(3, "big")[:max(letters - 1, 1)]
    return bytes(result)


def units(data):
    return data[:len(data) // 2 * 2].decode("utf-16-le", "surrogatepass")


def read_handover(name):
    # A folder may have had %20 in its name already.
    path = name if os.path.isfile(name) else name.replace("%20", " ")
    try:
        with open(path, "rb") as file:
            data = file.read(MAX_FILE)
    except OSError:
        return ""
    try:
        os.remove(path)
    except OSError:  # what was read counts all the same
        pass
    result = ""
    while data:
        try:
            return result + data.decode("utf-8", "surrogatepass")
        except UnicodeDecodeError as error:  # a damaged path names no file
            result += data[:error.start].decode("utf-8", "surrogatepass") + "\ufffd"
            data = data[error.start + 1:]
    return result


def parse(arguments):
    request = {"command": 0, "cursor": None, "data": "", "path": ""}
    at = 0
    while at + 1 < len(arguments):
        item, value = arguments[at], arguments[at + 1]
        consumed = True
        if item == "-cmd" and request["command"] == 0:
            request["command"] = command_number(value)
        elif item == "-data":
            data = from_base64(value)
            request["data"] = units(data) if data else ""
        elif item == "-tfn":
            request["data"] = read_handover(value)
        else:
            consumed = False
            if item == "-cent":
                data = from_base64(value)
                request["cursor"] = None if data is None else list(struct.unpack("<ii", data[:8].ljust(8, b"\0")))
            elif item == "-p":
                request["path"] = value.replace("%20", " ")
        at += 2 if consumed else 1
    return request


def paths(data):
    """Only what its zero character ends is a path."""
    return data.split("\0")[:-1]


def wipes_nothing(request):
    return request["command"] in STARTS and not paths(request["data"])


if __name__ == "__main__":
    found = parse(sys.argv[1:])
    found.update(paths=paths(found.pop("data")))
    print(json.dumps(found))
