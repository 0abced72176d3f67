#!/bin/sh
# Runs each fuzz target for SECONDS (default 300) on its corpus, seeded from every schema under tests/,
# one after the other, and prints executions, coverage and findings. Exits 1 on a finding.
# The compiler replaces operator new and delete by malloc and free, so their
# mixing with libFuzzer's own allocations is no mismatch: that check is off.
# Leaks count for the library only: the file compiler ends the process on any
# error, so blocks that its generator holds when an error unwinds the harness
# (a swapped Java stream) are no leak of the program.
# Usage: tools/fuzz.sh BUILD_DIR [SECONDS]
set -u
build=$1
secs=${2:-300}
src=$(cd "$(dirname "$0")/.." && pwd)
status=0
for t in fuzz_compile fuzz_load_dictionary; do
  corpus=$build/fuzz-corpus/$t
  findings=$build/fuzz-findings/$t
  mkdir -p "$corpus" "$findings"
  # Seeds: every schema, behind three option sets (first two bytes).
  find "$src/tests" -name '*.sch' | sort | {
    n=0
    while IFS= read -r f; do
      n=$((n + 1))
      for opts in '\000\000' '\037\000' '\340\176'; do
        { printf "$opts"; cat "$f"; } >"$corpus/seed-$n-$(printf "$opts" | od -An -tx1 | tr -d ' \n')"
      done
    done
  }
  for f in "$src"/tests/regress/*; do [ -f "$f" ] && cp "$f" "$corpus/"; done
  log=$build/fuzz-$t.log
  start=$(date +%s)
  leaks=1
  [ "$t" = fuzz_compile ] && leaks=0
  ASAN_OPTIONS=detect_leaks=$leaks:alloc_dealloc_mismatch=0 UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 \
    "$build/$t" -max_total_time="$secs" -timeout=2 -rss_limit_mb=1024 -max_len=4096 \
    -dict="$src/tests/fuzz/zkt.dict" -print_final_stats=1 -artifact_prefix="$findings/" "$corpus" >"$log" 2>&1
  rc=$?
  took=$(($(date +%s) - start))
  execs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
  cov=$(grep -oE 'cov: [0-9]+ ft: [0-9]+' "$log" | tail -1)
  found=$(find "$findings" -type f | wc -l)
  echo "$t: ${took}s, ${execs:-?} executions, ${cov:-no coverage line}, corpus $(ls "$corpus" | wc -l) inputs, $found findings (exit $rc)"
  if [ "$rc" != 0 ] || [ "$found" != 0 ]; then
    status=1
    grep -E 'ERROR|finding|SUMMARY|timeout|Test unit written' "$log" | head -20
    echo "log: $log; findings: $findings"
  fi
done
exit $status
