#!/bin/sh
# Installs the built library into a scratch prefix, then builds the plain C consumer against
# it twice, through pkg-config and through find_package(zomath), and runs both.
# Usage: run.sh <build dir> <this dir> <C compiler> "<extra compile and link flags>"
set -eu
build=$1
here=$2
cc=$3
flags=$4
work=$build/install-test
prefix=$work/prefix
rm -rf "$work"
mkdir -p "$work"
cmake --install "$build" --prefix "$prefix" > "$work/install.log"

pc=$(find "$prefix" -name zomath.pc | head -n 1)
libdir=$(dirname "$(dirname "$pc")")
export PKG_CONFIG_PATH="$(dirname "$pc")"
# shellcheck disable=SC2046,SC2086
"$cc" -std=c99 -Wall -Wextra -Werror -pedantic $flags $(pkg-config --cflags zomath) \
  "$here/consumer.c" $(pkg-config --libs zomath) -o "$work/consumer"
LD_LIBRARY_PATH="$libdir" "$work/consumer"

cmake -S "$here/cmake_consumer" -B "$work/cmake" -DCMAKE_PREFIX_PATH="$prefix" \
  -DCMAKE_C_COMPILER="$cc" -DCMAKE_C_FLAGS="$flags" -DCMAKE_EXE_LINKER_FLAGS="$flags" \
  > "$work/cmake-configure.log"
cmake --build "$work/cmake" > "$work/cmake-build.log"
LD_LIBRARY_PATH="$libdir" "$work/cmake/consumer"
