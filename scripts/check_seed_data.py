#!/usr/bin/env python3
"""Checks the bundled default data files in data/seed/ (the ones the team writes by hand or by
make_dxcc_mas.py): Shift-JIS text, CR LF line ends, and the fixed byte columns the program reads.

Usage: check_seed_data.py [SEED_DIR] [--cty-csv PATH] [--cty-dat PATH]
  SEED_DIR   default data/seed beside this script's repository
  --cty-csv  default /usr/share/hamradio-files/cty.csv; when present, dxcc_mas.txt must be
             byte for byte what make_dxcc_mas.py makes from it
  --cty-dat  default /usr/share/hamradio-files/cty.dat; when present, the keys of dxcc_mas.txt
             must be the primary prefixes the cty.dat import yields, and cty_conv.txt must turn
             every upper-cased primary prefix that a short prefix can give back into its key

Exit status 0 when everything holds; otherwise each problem is printed and the status is 1.
Files of data/seed/ that this script does not name are not looked at.
"""
import argparse
import os
import re
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import make_dxcc_mas  # noqa: E402

problems = []


def fail(path, lineno, text):
    problems.append("%s:%s: %s" % (path, lineno, text))


def read_lines(path):
    """The file's lines as bytes, after checking the line ends and the encoding."""
    with open(path, "rb") as f:
        data = f.read()
    if not data.endswith(b"\r\n"):
        fail(path, "end", "last line does not end in CR LF")
    body = data[:-2] if data.endswith(b"\r\n") else data
    lines = body.split(b"\r\n")
    for n, line in enumerate(lines, 1):
        if b"\r" in line or b"\n" in line:
            fail(path, n, "bare CR or LF")
        try:
            line.decode("cp932")
        except UnicodeDecodeError as e:
            fail(path, n, "not Shift-JIS: %s" % e)
    return lines


def char_starts(line):
    """Byte offsets where a character of the Shift-JIS text begins, plus the end."""
    starts = set()
    i = 0
    while i < len(line):
        starts.add(i)
        b = line[i]
        i += 2 if (0x81 <= b <= 0x9F or 0xE0 <= b <= 0xFC) else 1
    starts.add(len(line))
    return starts


def col(line, first, width):
    """Columns first .. first+width-1 (1-based bytes), decoded."""
    return line[first - 1:first - 1 + width].decode("cp932", errors="replace")


def check_boundaries(path, n, line, bounds):
    """No double-byte character may straddle a column boundary (bounds: 0-based offsets)."""
    starts = char_starts(line)
    for b in bounds:
        if b < len(line) and b not in starts:
            fail(path, n, "a double-byte character crosses byte column %d/%d" % (b, b + 1))


def check_dxcc(seed, cty_csv, cty_dat):
    path = os.path.join(seed, "dxcc_mas.txt")
    lines = read_lines(path)
    if cty_csv and os.path.exists(cty_csv):
        with open(cty_csv, encoding="ascii") as f:
            expected = make_dxcc_mas.build(f.read())
        with open(path, "rb") as f:
            if f.read() != expected:
                fail(path, "-", "differs from make_dxcc_mas.py output for %s" % cty_csv)
    keys, codes = {}, {}
    for n, line in enumerate(lines[2:], 3):
        check_boundaries(path, n, line, [1, 8, 19, 25, 53, 54])
        if len(line) != make_dxcc_mas.LINE_W:
            fail(path, n, "line is %d bytes, not %d" % (len(line), make_dxcc_mas.LINE_W))
        if line[0:1] != b" ":
            fail(path, n, "column 1 not blank")
        key = col(line, 2, 7).strip()
        code = col(line, 20, 6).strip()
        name = col(line, 26, 28).strip()
        if not key or " " in key:
            fail(path, n, "bad key %r" % key)
        if key.startswith("*"):
            fail(path, n, "non-DXCC key %r" % key)
        if not code or not name:
            fail(path, n, "empty code or name")
        if col(line, 54, 1) != " ":
            fail(path, n, "column 54 not blank")
        if col(line, 55, 1) not in (" ", "-", "X", ""):
            fail(path, n, "bureau flag %r" % col(line, 55, 1))
        if key in keys:
            fail(path, n, "key %s also on line %d" % (key, keys[key]))
        if code in codes:
            fail(path, n, "code %s also on line %d" % (code, codes[code]))
        keys[key] = n
        codes[code] = n
    want = {"K": "784A", "VE": "758A", "KL": "667A", "BV": "566A"}
    for key, code in want.items():
        if key not in keys or col(lines[keys[key] - 1], 20, 6).strip() != code:
            fail(path, "-", "%s must have code %s" % (key, code))
    if "3D2/r" not in keys:
        fail(path, "-", "no row for 3D2/r")
    if cty_dat and os.path.exists(cty_dat):
        primaries = cty_dat_primaries(cty_dat)
        dxcc = {p for p in primaries if not p.startswith("*")}
        for p in sorted(dxcc - set(keys)):
            fail(path, "-", "cty.dat entity %s has no row" % p)
        for p in sorted(set(keys) - dxcc):
            fail(path, "-", "key %s is no cty.dat primary prefix" % p)
    return set(keys)


def cty_dat_primaries(cty_dat):
    """{primary prefix: [prefixes]} read the way the import reads cty.dat (header columns
    1-30 name, 70-76 primary prefix up to ":"; prefixes end at "," or ";")."""
    with open(cty_dat, "rb") as f:
        text = f.read().decode("cp932").replace("\r\n", "\n").replace("\r", "\n")
    result = {}
    current = None
    for raw in text.split("\n"):
        line = raw.strip()
        if not line:
            continue
        if current is None:
            current = raw[69:76].split(":")[0].strip()
            result.setdefault(current, [])
            continue
        for piece in re.split(r"([,;])", line):
            if piece in (",", ";"):
                continue
            p = re.split(r"[(\[]", piece.strip())[0].upper()
            if p:
                result[current].append(p)
        if ";" in line:
            current = None
    return result


def check_cty_conv(seed, keys, cty_dat):
    path = os.path.join(seed, "cty_conv.txt")
    lines = read_lines(path)
    aliases = {}
    for n, line in enumerate(lines, 1):
        text = line.decode("cp932", errors="replace")
        if not text.strip() or text.startswith(";"):
            continue
        parts = text.split(",")
        if len(parts) != 2 or parts[0] != parts[0].strip() or parts[1] != parts[1].strip():
            fail(path, n, "not 'prefix,replacement'")
            continue
        if parts[0] not in aliases:
            aliases[parts[0]] = parts[1]
        if parts[1] not in keys:
            fail(path, n, "replacement %s is no key of dxcc_mas.txt" % parts[1])
    if len(aliases) > 51:
        fail(path, "-", "%d alias lines, only 51 are taken" % len(aliases))
    if cty_dat and os.path.exists(cty_dat):
        for primary, prefixes in cty_dat_primaries(cty_dat).items():
            if primary.startswith("*") or primary == primary.upper():
                continue
            short = [p for p in prefixes if not p.startswith("=") and len(p) < 7]
            if short and aliases.get(primary.upper()) != primary:
                fail(path, "-", "%s (short prefix %s) needs the line %s,%s"
                     % (primary, short[0], primary.upper(), primary))


CONTEST_NAMES = [
    "REFコンテスト(DX)", "PACC (DX)", "RSGB 7MHz (DX)", "ＳＰＤＸコンテスト", "URDXコンテスト(DX)",
    "YO DX", "RAC", "HADXコンテスト(DX)", "ARRL 10m Contest", "CT DAY",
    "ＯＫ／ＯＭＤＸコンテスト（ＤＸ）", "RussianDXコンテスト", "Helvetia DXコンテスト",
    "ARI Int DXコンテスト", "UBA Contest", "Ukrainian DX DIGI Contest", "EA Contest",
]


def check_cont_name(seed):
    path = os.path.join(seed, "cont_name_zlo.cfg")
    lines = read_lines(path)
    names = set()
    for n, line in enumerate(lines[1:], 2):
        items = line.decode("cp932", errors="replace").split(",")
        if len(items) != 4:
            fail(path, n, "not four items")
            continue
        name, master = items[0], items[1]
        if name in names:
            fail(path, n, "contest %s twice (only the first is found)" % name)
        names.add(name)
        low = master.lower()
        if ".mas" in low:
            if not os.path.exists(os.path.join(seed, "Prov", master)):
                fail(path, n, "Prov/%s is not in the seed" % master)
        elif ".dat" not in low:
            fail(path, n, "master %s is neither .mas nor .dat" % master)
    for name in CONTEST_NAMES:
        if name not in names:
            fail(path, "-", "no line for %s" % name)


def check_prov(seed):
    folder = os.path.join(seed, "Prov")
    if not os.path.exists(os.path.join(folder, "EA_prov.mas")):
        fail(folder, "-", "EA_prov.mas missing (start-up looks for it)")
    for name in sorted(os.listdir(folder)):
        if not name.endswith(".mas"):
            continue
        path = os.path.join(folder, name)
        codes = {}
        for n, line in enumerate(read_lines(path), 1):
            text = line.decode("cp932", errors="replace")
            if not text.strip() or text.startswith(";"):
                continue
            parts = text.split(",")
            if len(parts) < 2 or not parts[0] or not parts[1].strip():
                fail(path, n, "not 'code,name'")
                continue
            if parts[0] != parts[0].strip() or " " in parts[0]:
                fail(path, n, "blank in code %r" % parts[0])
            if parts[0] in codes:
                fail(path, n, "code %s also on line %d" % (parts[0], codes[parts[0]]))
            codes[parts[0]] = n
        if not codes:
            fail(path, "-", "no codes")


def check_fixed(seed, filename, bounds, last, key_col):
    """Two heading lines, then fixed-column rows: column 1 blank, a non-empty key."""
    path = os.path.join(seed, filename)
    lines = read_lines(path)
    if len(lines) < 3:
        fail(path, "-", "no data lines")
    for n, line in enumerate(lines[2:], 3):
        check_boundaries(path, n, line, bounds)
        if line[0:1] != b" ":
            fail(path, n, "column 1 not blank")
        if not col(line, *key_col).strip():
            fail(path, n, "empty call column")
        if last is not None and len(line) > last:
            fail(path, n, "line runs past byte column %d" % last)


def main(argv):
    here = os.path.dirname(os.path.abspath(__file__))
    ap = argparse.ArgumentParser()
    ap.add_argument("seed", nargs="?", default=os.path.join(here, "..", "data", "seed"))
    ap.add_argument("--cty-csv", default=make_dxcc_mas.DEFAULT_CSV)
    ap.add_argument("--cty-dat", default="/usr/share/hamradio-files/cty.dat")
    args = ap.parse_args(argv[1:])
    keys = check_dxcc(args.seed, args.cty_csv, args.cty_dat)
    check_cty_conv(args.seed, keys, args.cty_dat)
    check_cont_name(args.seed)
    check_prov(args.seed)
    # call 2-7, name 8-19, code 20-25, QTH 26-53, then remark 54-107 or grid locator 54-59
    check_fixed(args.seed, "name_mas.txt", [1, 7, 19, 25, 53, 107], 107, (2, 6))
    check_fixed(args.seed, "qth_mas.txt", [1, 7, 19, 25, 53, 59], 59, (2, 6))
    # call 2-21, manager 22-41; what follows is not read
    check_fixed(args.seed, "MNG_Vornhale_full.txt", [1, 21, 41], None, (2, 20))
    for p in problems:
        print(p)
    if problems:
        return 1
    print("seed data ok")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
