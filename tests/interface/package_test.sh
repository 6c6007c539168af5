#!/usr/bin/env bash
# Makes the .deb of the build tree BUILD, unpacks it, and fuses a burst with what was in it.  package_test.sh BUILD
set -euo pipefail
build=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cd "$build"
cpack -B "$work" >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
dpkg-deb -x "$work"/vkrhdr_*.deb "$work/tree"
dpkg-deb -f "$work"/vkrhdr_*.deb Depends | grep -q libgomp1

cd "$work/tree/usr"
for file in bin/vkrhdr include/vkrHdr.h share/vkrhdr/default.txt share/vkrhdr/photo.txt share/man/man1/vkrhdr.1; do
    [ -f "$file" ] || { echo "the package has no $file"; exit 1; }
done
[ -n "$(find . -name 'libVKRExposureFusion.so.1.1.0.9')" ] || { echo "the package has no library"; exit 1; }

bin/vkrhdr demo --size 320x240 -o "$work/demo"
bin/vkrhdr fuse --params share/vkrhdr/default.txt "$work"/demo/frame*.jpg -o "$work/out.png"
[ "$(file -b "$work/out.png" | cut -d, -f2)" = " 320 x 240" ]

# Every command that the program has is in the manual.
for command in $(bin/vkrhdr --help | sed -n '/^Subcommands:/,$s/^  \([a-z]*\) .*/\1/p'); do
    grep -q "^\.SS.*vkrhdr $command" share/man/man1/vkrhdr.1 || { echo "the manual has no $command"; exit 1; }
done
echo "package: unpacked, it fuses a burst"
