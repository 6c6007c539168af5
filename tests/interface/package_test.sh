#!/usr/bin/env bash
# Makes the three packages of the build tree BUILD, has lintian look at them, unpacks them into one tree, fuses a burst
# with the program in it and builds a C program against the library in it.  package_test.sh BUILD SOURCE
set -euo pipefail
build=$1 source=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() { echo "packages: $*"; exit 1; }
has() { grep -qE " \./usr/$2( ->.*)?$" "$work/$1.list" || fail "$1 has no $2"; }
field() { dpkg-deb -f "$work/$1.deb" "$2"; }

cd "$build"
cpack -B "$work" >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
cd "$work"
for name in libvkrexposurefusion1 libvkrexposurefusion-dev vkrhdr; do
    mv "$name"_*.deb "$name.deb" || fail "there is no $name"
    dpkg-deb -c "$name.deb" >"$name.list"
    has "$name" "share/doc/$name/copyright"
    has "$name" "share/doc/$name/changelog.Debian.gz"
    dpkg-deb -x "$name.deb" tree
done

has libvkrexposurefusion1 'lib/(.*/)?libVKRExposureFusion.so.1.1.0.9'
has libvkrexposurefusion-dev 'lib/(.*/)?libVKRExposureFusion.so'
has libvkrexposurefusion-dev include/vkrHdr.h
for file in bin/vkrhdr share/vkrhdr/default.txt share/vkrhdr/photo.txt share/man/man1/vkrhdr.1.gz; do has vkrhdr "$file"; done
dpkg-deb -I libvkrexposurefusion1.deb shlibs | grep -qx 'libVKRExposureFusion 1 libvkrexposurefusion1 (>= 1.1.0.9)'
dpkg-deb -I libvkrexposurefusion1.deb triggers | grep -qx 'activate-noawait ldconfig'
for name in libvkrexposurefusion-dev vkrhdr; do
    field $name Depends | grep -q "libvkrexposurefusion1 (= $(field libvkrexposurefusion1 Version))" || fail "$name stands alone"
done
field libvkrexposurefusion1 Depends | grep -q libgomp1 || fail "the library does not ask for libgomp1"
! field libvkrexposurefusion1 Depends | grep -q libexiv2 || fail "the library asks for Exiv2"

if command -v lintian >/dev/null; then
    lintian --fail-on error --suppress-tags bogus-mail-host ./*.deb >lint 2>&1 || { cat lint; fail "lintian found errors"; }
else
    echo "packages: lintian is not installed, not looked at by it"
fi

usr=$work/tree/usr
"$usr/bin/vkrhdr" demo --size 320x240 -o demo
"$usr/bin/vkrhdr" fuse --params "$usr/share/vkrhdr/default.txt" demo/frame*.jpg -o out.png
[ "$(file -b out.png | cut -d, -f2)" = " 320 x 240" ] || fail "out.png is no picture of that size"

# A host against the library of the package. Sanitizers' and other builds' own libraries are out of its way.
pc=$(dirname "$(find "$usr" -name vkrhdr.pc)")
# shellcheck disable=SC2046  # the flags are words
cc -std=c11 -Wall -Wextra -Werror "$source/tests/interface/c_consumer/consumer.c" -o host \
    $(PKG_CONFIG_PATH=$pc pkg-config --cflags --libs vkrhdr)
[ "$(LD_LIBRARY_PATH=$(dirname "$pc") ./host | tail -n 1)" = 1.1.0.9 ] || fail "the host does not run"
if [ -d "$(dirname "$pc")/vkrhdr" ]; then  # TensorFlow Lite, where it is built with it, by no other path than our own
    for binary in "$usr/bin/vkrhdr" "$(dirname "$pc")/libVKRExposureFusion.so.1"; do
        ldd "$binary" | grep -q "libtensorflowlite_c.so => $work/tree/.*/vkrhdr/" || fail "$binary misses the private folder"
    done
fi

# Every command that the program has is in the manual.
zcat "$usr/share/man/man1/vkrhdr.1.gz" >manual
for command in $("$usr/bin/vkrhdr" --help | sed -n '/^Subcommands:/,$s/^  \([a-z]*\) .*/\1/p'); do
    grep -q "^\.SS.*vkrhdr $command" manual || fail "the manual has no $command"
done
echo "packages: unpacked, the program fuses a burst and a host is built"
