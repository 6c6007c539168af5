#!/usr/bin/env bash
# The shared library exports its six functions and nothing else.  exports_test.sh LIBRARY
set -euo pipefail
want='vkrHdrAddFrame vkrHdrAdvancedFeature vkrHdrGetVersion vkrHdrInit vkrHdrRender vkrHdrUninit'
got=$(nm -D --defined-only "$1" | awk '{print $3}' | sort | tr '\n' ' ' | sed 's/ $//')
echo "exported: $got"
[ "$got" = "$want" ]
