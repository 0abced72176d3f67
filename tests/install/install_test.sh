#!/bin/sh
# Install test: installs the build into a scratch prefix, checks the files and exports, builds and runs a C99 reader.
# Arguments: build directory, source directory, extra compiler flags (the sanitizer's, if any).
set -e
build=$1
src=$2
flags=$3
prefix=$(mktemp -d /tmp/zkt_prefix_XXXXXX)
trap 'rm -rf "$prefix"' EXIT
cmake --install "$build" --prefix "$prefix" >/dev/null
for f in bin/zktcomp include/zktcomp.h lib/libzktcomp.so; do
  [ -f "$prefix/$f" ] || { echo "missing $f"; exit 1; }
done
exports=$(nm -D --defined-only "$prefix/lib/libzktcomp.so" | awk '$2 ~ /^[TtWwDdBbVvRr]$/ {print $3}' | sort | tr '\n' ' ')
[ "$exports" = "zkt_db_load_dictionary zkt_dict_is_reserved_word " ] || { echo "exports: $exports"; exit 1; }
for f in zkt_get_temp_dir zkt_get_tmpfile_suffix zkt_get_dir_delimiter zkt_sys_malloc zkt_sys_calloc; do
  nm -D --undefined-only "$prefix/lib/libzktcomp.so" | grep -qw "$f" || { echo "not needed: $f"; exit 1; }
done
# shellcheck disable=SC2086
gcc -std=c99 -Wall -Werror $flags -I"$prefix/include" "$src/tests/install/reader.c" -o "$prefix/reader" \
  -L"$prefix/lib" -lzktcomp -Wl,-rpath,"$prefix/lib"
echo '#include <zktcomp.h>' | g++ -x c++ -std=c++17 -Wall -Werror -fsyntax-only -I"$prefix/include" -
ASAN_OPTIONS=detect_leaks=0 "$prefix/reader"
