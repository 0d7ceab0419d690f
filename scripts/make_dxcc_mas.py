#!/usr/bin/env python3
"""Writes the bundled DXCC master dxcc_mas.txt from cty.csv (AD1C's country list, as Debian's
hamradio-files package ships it).

Usage: make_dxcc_mas.py [CTY_CSV [OUT]]
  CTY_CSV  default /usr/share/hamradio-files/cty.csv
  OUT      default data/seed/dxcc_mas.txt beside this script's repository; "-" writes to stdout

Output: Shift-JIS (here plain ASCII) text, CR LF line ends, two heading lines, then one line per
DXCC entity in the order of cty.csv. Fixed columns, counted in bytes:
  1       blank
  2-8     primary prefix exactly as cty.dat gives it (the key the entity lookup compares)
  9-19    blank, the DXCC entity number in 10-12 (for the reader only, the program skips it)
  20-25   code
  26-53   entity name, cut to 28 bytes
  54      blank
  55      bureau flag; left blank for every entity (see data/seed/README.md)

Rows of cty.csv whose prefix begins with "*" are skipped: they are the WAE / CQ-only entries
(Shetland, Sicily, African Italy, Bear Island, European Turkey, Vienna Intl Ctr) that carry the
number of their parent entity and are not DXCC entities. The cty.dat import drops them as well.

Code rule: "D" followed by the DXCC entity number in three digits ("D246" for 1A), except four
entities whose codes the state/province lookup knows by value: United States "784A",
Canada "758A", Alaska "667A", Taiwan "566A". Those begin with a digit, so no "D" code can equal
them; the script asserts that every code is unique.

The result is a pure function of the input file: same cty.csv, same bytes.
"""
import csv
import io
import os
import re
import sys

DEFAULT_CSV = "/usr/share/hamradio-files/cty.csv"

# DXCC entity number -> (expected primary prefix, fixed code)
FIXED_CODES = {
    291: ("K", "784A"),    # United States
    1: ("VE", "758A"),     # Canada
    6: ("KL", "667A"),     # Alaska
    386: ("BV", "566A"),   # Taiwan
}

PREFIX_W = 7
NAME_W = 28
LINE_W = 55


def code_for(number):
    if number in FIXED_CODES:
        return FIXED_CODES[number][1]
    return "D%03d" % number


def fit(text, width):
    """Left-aligned, blank-padded, cut to width bytes of CP932 without splitting a character."""
    out = b""
    for ch in text:
        b = ch.encode("cp932")
        if len(out) + len(b) > width:
            break
        out += b
    return out + b" " * (width - len(out))


def read_entities(csv_text):
    """(prefix, name, number) for each DXCC entity row, in file order."""
    rows = []
    for rec in csv.reader(io.StringIO(csv_text)):
        if not rec or not rec[0].strip():
            continue
        prefix = rec[0].strip()
        if prefix.startswith("*"):
            continue
        if len(rec) < 3 or not rec[2].strip().isdigit():
            raise SystemExit("cty.csv: no entity number in row %r" % rec[:3])
        rows.append((prefix, rec[1].strip(), int(rec[2])))
    return rows


def source_version(csv_text):
    m = re.search(r"=VER(\d{8})", csv_text)
    return m.group(1) if m else "unknown"


def build(csv_text):
    """The file's bytes."""
    entities = read_entities(csv_text)
    seen_numbers = {}
    seen_prefixes = set()
    seen_codes = {}
    for prefix, name, number in entities:
        assert number not in seen_numbers, "entity number %d twice (%s, %s)" % (
            number, seen_numbers[number], prefix)
        seen_numbers[number] = prefix
        assert prefix not in seen_prefixes, "prefix %s twice" % prefix
        seen_prefixes.add(prefix)
        assert 0 < len(prefix.encode("cp932")) <= PREFIX_W, "prefix %r too long" % prefix
        assert 0 < number <= 999, "entity number %d out of range" % number
        code = code_for(number)
        assert code not in seen_codes, "code %s for %s and %s" % (code, seen_codes[code], prefix)
        seen_codes[code] = prefix
    for number, (prefix, code) in FIXED_CODES.items():
        assert seen_numbers.get(number) == prefix, \
            "entity %d is %r in cty.csv, expected %r" % (number, seen_numbers.get(number), prefix)
    for code in seen_codes:
        assert 0 < len(code) <= 6

    lines = [
        (" DXCC master, made by scripts/make_dxcc_mas.py from cty.csv VER%s"
         % source_version(csv_text)).encode("cp932"),
        b" " + fit("Prefix", PREFIX_W) + fit(" No.", 11) + fit("Code", 6)
        + fit("Entity name", NAME_W) + b" " + b"B",
    ]
    for prefix, name, number in entities:
        line = (b" " + fit(prefix, PREFIX_W) + fit(" %03d" % number, 11)
                + fit(code_for(number), 6) + fit(name, NAME_W) + b" " + b" ")
        assert len(line) == LINE_W
        lines.append(line)
    return b"".join(l + b"\r\n" for l in lines)


def main(argv):
    src = argv[1] if len(argv) > 1 else DEFAULT_CSV
    if len(argv) > 2:
        out = argv[2]
    else:
        here = os.path.dirname(os.path.abspath(__file__))
        out = os.path.join(here, "..", "data", "seed", "dxcc_mas.txt")
    with open(src, encoding="ascii") as f:
        data = build(f.read())
    if out == "-":
        sys.stdout.buffer.write(data)
    else:
        with open(out, "wb") as f:
            f.write(data)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
