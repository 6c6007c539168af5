#!/usr/bin/env bash
# Installs the build tree BUILD into a folder of its own and builds a C program against it, by the CMake package and by
# the pkg-config file.  install_test.sh BUILD SOURCE
set -euo pipefail
build=$1 source=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$build" --prefix "$work/tree" >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }

cmake -G Ninja -S "$source/tests/interface/c_consumer" -B "$work/consumer" -DCMAKE_PREFIX_PATH="$work/tree" >"$work/log" 2>&1 &&
    cmake --build "$work/consumer" >>"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
[ "$("$work/consumer/consumer" | tail -n 1)" = 1.1.0.9 ]

pc=$(dirname "$(find "$work/tree" -name vkrhdr.pc)")
# shellcheck disable=SC2046  # the flags are words
cc -std=c11 -Wall -Wextra -Werror "$source/tests/interface/c_consumer/consumer.c" -o "$work/by_pc" \
    $(PKG_CONFIG_PATH=$pc pkg-config --cflags --libs vkrhdr)
[ "$(LD_LIBRARY_PATH=$(dirname "$pc") "$work/by_pc" | tail -n 1)" = 1.1.0.9 ]

# The header alone, in both languages.
echo '#include <vkrHdr.h>' >"$work/header.c"
cc -std=c11 -pedantic -Wall -Wextra -Werror -I"$work/tree/include" -fsyntax-only "$work/header.c"
c++ -std=c++17 -pedantic -Wall -Wextra -Werror -I"$work/tree/include" -fsyntax-only -x c++ "$work/header.c"
echo "installed tree: a C program builds and runs by CMake and by pkg-config"
