#!/bin/sh
# Compares the dynamic symbol table of the shared library with the committed list of exports.
# Usage: check_exports.sh <libzomath.so> <exports.txt>
set -eu
lib=$1
expected=$2
actual=$(mktemp)
trap 'rm -f "$actual"' EXIT
# Demangled symbol names with their version (name@@ZOMATH_1 default, name@ZOMATH_1 hidden),
# sorted; a C++ constructor appears twice (complete and base object).
nm -D --defined-only "$lib" | awk '$2 != "A" { print $3 }' | c++filt | LC_ALL=C sort > "$actual"
if ! diff -u "$expected" "$actual"; then
  echo "The exported symbols differ from $expected (lines with + are exported but not listed)." >&2
  exit 1
fi
