#!/bin/bash
# Runs two compiler binaries on every corpus schema, the example and bench schemas under many option sets
# and compares every output file, message and exit status byte for byte (the banner time is masked).
# Usage: bench/compare_outputs.sh <reference zktcomp> <new zktcomp> [bench_schema writer]
# Prints each difference and ends with status 1 if there was any.
set -u
abs() { case $1 in /*) echo "$1" ;; *) echo "$PWD/$1" ;; esac; }
ref=$(abs "$1")
new=$(abs "$2")
writer=${3:+$(abs "$3")}
src=$(cd "$(dirname "$0")/.." && pwd)
work=$(mktemp -d /tmp/zkt_compare_XXXXXX)
trap 'rm -rf "$work"' EXIT
schemas=("$src"/tests/schemas/*.sch "$src"/examples/*.sch)
if [ -n "$writer" ]; then
  for n in 1 37 1000; do
    mkdir -p "$work/bench$n" && "$writer" --write $n "$work/bench$n" && schemas+=("$work/bench$n/bench.sch")
  done
fi
optsets=("" "-debug" "-hpp" "-hpp -smartptr" "-cs" "-java" "-dumpxml" "-compact" "-prefix" "-cmode1"
  "-xml -json" "-xml -json -hpp" "-dll -debug" "-cmode1 -debug -nosort -large" "-large -size-t 4 -compact"
  "-prefix -mergeable -dll -debug" "-sql -persistent" "-transient -atomic -wchar 2" "-nosort"
  "-cs -java -cs-namespace N.S -java-package p.q" "-suppress-api C0 -hpp")
mask() { sed -E 's/^ \* at .*$/ * at TIME/; s/^(Compiled successfully: ).*$/\1TIME/' "$1"; }
fail=0
for s in "${schemas[@]}"; do
  for o in "${optsets[@]}"; do
    for side in ref new; do
      d="$work/$side"
      rm -rf "$d" && mkdir -p "$d/out"
      bin=$ref
      [ $side = new ] && bin=$new
      # shellcheck disable=SC2086
      (cd "$d" && "$bin" $o -o out "$s" >stdout 2>stderr; echo $? >status)
      for f in "$d"/stdout "$d"/stderr "$d"/out/*; do
        [ -f "$f" ] && mask "$f" >"$f.masked" && mv "$f.masked" "$f"
      done
    done
    if ! diff -r "$work/ref" "$work/new" >"$work/diff"; then
      echo "DIFFERENT: $(basename "$s") [$o]"
      head -20 "$work/diff"
      fail=1
    fi
  done
done
[ $fail = 0 ] && echo "all outputs identical (${#schemas[@]} schemas x ${#optsets[@]} option sets)"
exit $fail
