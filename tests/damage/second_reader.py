#!/usr/bin/env python3
"""Reads packages by the description of their bytes alone and compares with the program's reader.

usage: second_reader.py CASES-PROGRAM COUNT

The program writes packages and what its reader makes of each: the damages of one small package and
COUNT random packages. Both readers must agree on what is refused and on every field of the rest.
"""

import struct
import subprocess
import sys
import zlib

MAXIMUM_EXPANSION = 1032
NULL_COUNT = 0xFFFFFFFF


class Refused(Exception):
    """The bytes are no package."""


def crc_table():
    """The remainders of all bytes for the reflected polynomial 0x8408."""
    table = []
    for byte in range(256):
        remainder = byte
        for _ in range(8):
            odd = remainder & 1
            remainder >>= 1
            if odd:
                remainder ^= 0x8408
        table.append(remainder)
    return table


CRC_TABLE = crc_table()


def crc_x25(data):
    table = CRC_TABLE
    remainder = 0xFFFF
    for byte in data:
        remainder = (remainder >> 8) ^ table[(remainder ^ byte) & 0xFF]
    return remainder ^ 0xFFFF


assert crc_x25(b"123456789") == 0x906E


def open_envelope(package):
    """The body in a package file."""
    if package[1:4] != b"ZEL" or len(package) < 10:
        raise Refused("magic")
    (count,) = struct.unpack_from(">I", package, 4)
    if count > len(package) - 10:
        raise Refused("count")
    block = package[8:8 + count]
    (checksum,) = struct.unpack_from(">H", package, 8 + count)
    if checksum != crc_x25(block):
        raise Refused("checksum")
    if count <= 4:
        raise Refused("no stream")
    (claim,) = struct.unpack_from(">I", block)
    if claim > MAXIMUM_EXPANSION * (count - 4):
        raise Refused("impossible claim")
    inflater = zlib.decompressobj()
    try:
        body = inflater.decompress(block[4:])
    except zlib.error as error:
        raise Refused("stream") from error
    if not inflater.eof:
        raise Refused("unfinished stream")
    return body


class Body:
    """A body and the place up to which it is read."""

    def __init__(self, data):
        self.data = data
        self.offset = 0

    def bytes(self, count):
        start = self.offset
        self.offset += count
        if self.offset > len(self.data):
            raise Refused("cut off")
        return self.data[start:self.offset]

    def number(self):
        return int.from_bytes(self.bytes(4), "big")

    def halves(self):
        return divmod(self.number(), 0x10000)

    def array(self):
        count = self.number()
        return b"" if count == NULL_COUNT else self.bytes(count)

    def expect_tag(self, tag):
        if self.number() != tag:
            raise Refused("tag")

    def frame(self, tag):
        """The length of a frame that must be here."""
        self.expect_tag(tag)
        return self.number()

    def skip_header(self):
        """An entry that is known by its place."""
        self.bytes(8)


def new_record():
    return {
        "masks": [], "tokens": [],
        "optionA": (0, 0, 0, 0, 0), "optionB": (0, 0, 0, 0, 0),
        "hardware": (0, 0, 0, 0), "firmware": (0, b""), "file": (0, b"", b""),
    }


def read_list(body, tag, read_rule, rules):
    length = body.frame(tag)
    end = body.offset + length
    while body.offset < end:
        rules.append(read_rule(body))
    if body.offset != end:
        raise Refused("list length")


def read_mask(body):
    body.frame(0xF0000004)
    body.frame(0xF0000005)
    parameter, index = body.halves()
    body.expect_tag(0xF0000006)
    return parameter, index, body.array()


def read_token(body):
    body.frame(0xF0000008)
    body.expect_tag(0xF0000009)
    token = body.array()
    body.expect_tag(0xF000000A)
    return token, body.array()


def read_option(body, tag):
    body.frame(tag)
    body.skip_header()
    enabled = body.bytes(1) != b"\0"
    body.skip_header()
    minimum = body.halves()
    body.skip_header()
    return (int(enabled), *minimum, *body.halves())


def read_rules_section(body, record):
    length = body.number()
    end = body.offset + length
    read_list(body, 0xF0000003, read_mask, record["masks"])
    read_list(body, 0xF0000007, read_token, record["tokens"])
    body.frame(0xF000000B)
    record["optionA"] = read_option(body, 0xF000000C)
    record["optionB"] = read_option(body, 0xF000000D)
    if body.offset != end:
        raise Refused("section length")


def read_placed_number(body):
    body.skip_header()
    return body.number()


def read_placed_array(body):
    body.number()
    return body.array()


def read_hardware_section(body, record):
    length = body.number()
    hardware_length = body.frame(0xF0000012)
    record["hardware"] = tuple(read_placed_number(body) for _ in range(4))
    firmware_length = body.frame(0xF0000013)
    address = read_placed_number(body)
    image = read_placed_array(body)
    if (hardware_length, firmware_length, length) != (48, 20 + len(image), 84 + len(image)):
        raise Refused("hardware length")
    record["firmware"] = (address, image)


def read_file_section(body, record):
    body.number()
    size = read_placed_number(body)
    name = read_placed_array(body)
    record["file"] = (size, name, read_placed_array(body))


SECTIONS = {
    0xF0000002: read_rules_section,
    0xF0000011: read_hardware_section,
    0xF0000014: read_file_section,
}


def read_package(package):
    data = open_envelope(package)
    body = Body(data)
    if body.frame(0xF0000001) + 8 != len(data):
        raise Refused("root length")
    record = new_record()
    while body.offset < len(data):
        section = SECTIONS.get(body.number())
        if section is None:
            raise Refused("section")
        section(body, record)
    return record


def words(values):
    return " ".join(v.hex() if isinstance(v, bytes) else str(v) for v in values)


def account(package):
    """The content as the program tells it; empty when the package is refused."""
    try:
        record = read_package(package)
    except Refused:
        return ""
    lines = ["mask " + words(rule) for rule in record["masks"]]
    lines += ["token " + words(rule) for rule in record["tokens"]]
    lines += [
        key + " " + words(record[key])
        for key in ("optionA", "optionB", "hardware", "firmware", "file")
    ]
    return "\n".join(lines)


def read_array(stream):
    header = stream.read(4)
    if not header:
        return None
    return stream.read(int.from_bytes(header, "big"))


def compare(stream):
    """The numbers of accepted and of refused packages."""
    accepted = refused = 0
    while (package := read_array(stream)) is not None:
        told = read_array(stream).decode("ascii")
        read = account(package)
        if told != read:
            sys.exit(
                f"Case {accepted + refused} is read in two ways.\n"
                f"Package: {package.hex()}\n\nProgram:\n{told or 'refused'}\n\n"
                f"Second reader:\n{read or 'refused'}"
            )
        if read:
            accepted += 1
        else:
            refused += 1
    return accepted, refused


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    count = int(sys.argv[2])
    with subprocess.Popen(sys.argv[1:], stdout=subprocess.PIPE, bufsize=1 << 20) as cases:
        accepted, refused = compare(cases.stdout)
    print(f"{accepted} packages accepted and {refused} refused by both readers")
    if cases.returncode != 0:
        sys.exit(f"{sys.argv[1]} failed")
    if accepted + refused <= count or min(accepted, refused) < count // 4:
        sys.exit("There are too few cases of one kind.")


if __name__ == "__main__":
    main()
