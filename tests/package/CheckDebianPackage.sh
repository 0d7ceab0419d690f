#!/usr/bin/env bash
# Builds the Debian package of a build folder with CPack, then checks its control fields and
# contents with dpkg-deb, unpacks it into a scratch root and runs the unpacked command line:
# --help, and a whole conversion that seeds a new program folder from the unpacked data.
# Usage: CheckDebianPackage.sh BUILD_DIR SOURCE_DIR WITH_WINDOW(0|1)
set -euo pipefail
build=$1
source=$2
window=$3
out="$build/package-test"
fail() { echo "FAILED: $*" >&2; exit 1; }

rm -rf "$out"
mkdir -p "$out"
cpack -G DEB --config "$build/CPackConfig.cmake" -B "$out" > "$out/cpack.log" 2>&1 \
    || { cat "$out/cpack.log"; fail "cpack"; }
shopt -s nullglob
debs=("$out"/vornhale_*.deb)
[ ${#debs[@]} -eq 1 ] || fail "expected one vornhale_*.deb in $out, found ${#debs[@]}"
deb=${debs[0]}

# Control fields.
[ "$(dpkg-deb -f "$deb" Package)" = vornhale ] || fail "package name"
[ -n "$(dpkg-deb -f "$deb" Version)" ] || fail "no version"
[ "$(dpkg-deb -f "$deb" Architecture)" = "$(dpkg --print-architecture)" ] || fail "architecture"
depends=$(dpkg-deb -f "$deb" Depends)
echo "Depends: $depends"
expected=(libc6 libstdc++6 libcurl4 libarchive13 hamradio-files)
if [ "$window" = 1 ]; then
    expected+=(libqt6widgets6)
fi
dependNames=$(tr ',|' '\n\n' <<<"$depends" | awk '{print $1}')
for dep in "${expected[@]}"; do
    grep -qxF "$dep" <<<"$dependNames" || fail "Depends lacks $dep"
done

# Contents.
dpkg-deb -c "$deb" | awk '{print $6}' > "$out/contents.txt"
expectedFiles=(./usr/bin/vornhale-cli
               ./usr/share/applications/vornhale.desktop
               ./usr/share/icons/hicolor/scalable/apps/vornhale.svg)
if [ "$window" = 1 ]; then
    expectedFiles+=(./usr/bin/vornhale)
fi
while IFS= read -r f; do
    expectedFiles+=("./usr/share/vornhale/data/${f#./}")
done < <(cd "$source/data/seed" && find . -type f | sort)
for f in "${expectedFiles[@]}"; do
    grep -qxF "$f" "$out/contents.txt" || fail "package lacks $f"
done
! grep -q -- "^\./usr/lib/debug\|\.a$\|/include/" "$out/contents.txt" || fail "build leftovers"

# Unpacked into a scratch root, the program runs from there and finds the data beside it.
root="$out/root"
dpkg -x "$deb" "$root"
desktop="$root/usr/share/applications/vornhale.desktop"
grep -q '^Name\[ja\]=.' "$desktop" || fail "desktop entry without a Japanese name"
grep -q '^Comment\[ja\]=.' "$desktop" || fail "desktop entry without a Japanese comment"
grep -qx 'Exec=vornhale' "$desktop" || fail "desktop entry does not start the window"
grep -qx 'Icon=vornhale' "$desktop" || fail "desktop entry without the icon"
if command -v desktop-file-validate > /dev/null; then
    desktop-file-validate "$desktop"
fi

cli="$root/usr/bin/vornhale-cli"
env -u VORNHALE_DATA_DIR "$cli" --help > "$out/help.txt" || fail "vornhale-cli --help"
grep -q convert "$out/help.txt" || fail "--help does not list convert"

# A file added to the unpacked data shows that a new program folder is seeded from there and
# not from the source tree.
marker="seeded from the unpacked package $$"
printf '%s\r\n' "$marker" > "$root/usr/share/vornhale/data/package_marker.txt"
mkdir -p "$out/log"
cp "$source/data/sample/SAMPLE2026.ALL" "$out/log/"
env -u VORNHALE_DATA_DIR "$cli" convert --home "$out/home" "$out/log/SAMPLE2026.ALL" \
    > "$out/convert.txt" 2>&1 || { cat "$out/convert.txt"; fail "conversion"; }
grep -qF "$marker" "$out/home/package_marker.txt" || fail "program folder not seeded from the package"
cmp -s "$root/usr/share/vornhale/data/dxcc_mas.txt" "$out/home/dxcc_mas.txt" \
    || fail "dxcc_mas.txt not seeded"
ls "$out/log"/*_hn.csv "$out/log"/*_cn.csv > /dev/null || fail "no CSV files written"
echo "OK: $(basename "$deb"), $(wc -l < "$out/contents.txt") entries"
