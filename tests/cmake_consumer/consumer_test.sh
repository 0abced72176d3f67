#!/bin/sh
# Package test: installs the build into a scratch prefix; pkg-config's flags build a C program against the
# library; the CMake project beside this script builds with find_package(zktcomp) and zktcomp_generate under
# every generator at hand, regenerates after an included file changes and does nothing when nothing did.
# Arguments: build directory, source directory, extra compiler flags (the sanitizer's, if any).
set -e
build=$1
src=$2
flags=$3
here=$src/tests/cmake_consumer
work=$(mktemp -d /tmp/zkt_consumer_XXXXXX)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix
export ASAN_OPTIONS=detect_leaks=0
cmake --install "$build" --prefix "$prefix" >/dev/null

# shellcheck disable=SC2046,SC2086
gcc -std=c99 -Wall -Werror $flags "$here/loader.c" -o "$work/pc_loader" \
  $(PKG_CONFIG_PATH="$prefix/lib/pkgconfig" pkg-config --cflags --libs zktcomp)
LD_LIBRARY_PATH="$prefix/lib" "$work/pc_loader" | grep -qx "result 0, database shop"

# The project is copied, so that touching its included file leaves the sources alone.
check_generator() {
  gen=$1
  rm -rf "$work/project" "$work/b"
  cp -R "$here" "$work/project"
  cmake -S "$work/project" -B "$work/b" -G "$gen" -DCMAKE_PREFIX_PATH="$prefix" \
    -DZKT_RUNTIME_DIR="$src/tests/runtime" -DCMAKE_C_FLAGS="$flags" >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
  grep -q "shop files: $work/b/zktcomp/shop.h;$work/b/zktcomp/shop.c$" "$work/log" || { cat "$work/log"; exit 1; }
  cmake --build "$work/b" >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
  grep -q "Compiling schema" "$work/log" || { echo "$gen: first build generated nothing"; exit 1; }
  "$work/b/loader" | grep -qx "result 0, database shop"
  # Nothing changed: the build tool runs no command at all.
  cmake --build "$work/b" >"$work/log" 2>&1
  if grep -Eq "Compiling schema|Building C|Linking" "$work/log"; then echo "$gen: no-op build ran:"; cat "$work/log"; exit 1; fi
  sleep 1
  touch "$work/project/schema dir/shop_types.sch"
  cmake --build "$work/b" >"$work/log" 2>&1
  grep -q "Compiling schema" "$work/log" || { echo "$gen: included file touched, nothing regenerated:"; cat "$work/log"; exit 1; }
  echo "package consumer: passed under $gen"
}
check_generator "Unix Makefiles"
if command -v ninja >/dev/null 2>&1; then check_generator Ninja; fi
