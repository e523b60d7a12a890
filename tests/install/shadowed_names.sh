#!/bin/sh
# Builds the C host shadowed_names.c against the built library, linked as -lzomath before -lm,
# and runs it. Usage: shadowed_names.sh <build dir> <source dir> <C compiler> "<extra flags>"
set -eu
build=$1
source=$2
cc=$3
flags=$4
work=$build/shadowed-names-test
mkdir -p "$work"
# shellcheck disable=SC2086
"$cc" -std=c99 -Wall -Wextra -Werror -fno-builtin $flags -I"$source/include" \
  "$source/tests/install/shadowed_names.c" -L"$build" -lzomath -lm -ldl -o "$work/host"
LD_LIBRARY_PATH="$build" "$work/host" "$build/libzomath.so"
