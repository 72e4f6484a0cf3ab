#!/usr/bin/env bash
# Fuzzes every input the engine reads from outside with libFuzzer under ASan and UBSan.
#
#   tools/fuzz.sh [SECONDS_PER_TARGET] [TARGET...]
#
# Builds the fuzz programs with clang in build-fuzz/ (installing clang-14 and
# libclang-rt-14-dev when missing), runs each target on one core for the
# given time (default 60 s), starting from its committed cases in
# tests/fuzz/korpus/<target>/ and a working corpus in build-fuzz/korpus/<target>/.
# Every crash, abort, leak or timeout found is copied into tests/fuzz/korpus/<target>/
# as a regression case, which `make test` replays from then on. FUZZ_JOBS=N fuzzes N
# targets at once (one core each); FUZZ_FLAGS adds libFuzzer options.
set -uo pipefail
cd "$(dirname "$0")/.."
SEKUNDEN=${1:-60}
[ $# -gt 0 ] && shift
ALLE=(uci xboard fen zugtext pgn epd bitbase block buch polyglot netz zeitlog bewertungsnetz)
ZIELE=("$@")
[ ${#ZIELE[@]} -eq 0 ] && ZIELE=("${ALLE[@]}")
BAU=build-fuzz

./tools/install-deps.sh clang-14 libclang-rt-14-dev cmake make
CXX=$(command -v clang++-14 || command -v clang++)
cmake -S . -B "$BAU" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER="$CXX" \
      -DKELVARAN_FUZZ=ON -DKELVARAN_TESTS=OFF >/dev/null || exit 1
programme=()
for z in "${ZIELE[@]}"; do programme+=("kelvaran_fuzz_$z"); done
cmake --build "$BAU" -j 2 --target "${programme[@]}" >&2 || exit 1

# Scratch files of the targets go below the build directory.
export TMPDIR="$PWD/$BAU/tmp"
mkdir -p "$TMPDIR"
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}

# One target: its run, its log, its row of the report and its findings kept as cases.
fuzze() {
  local z=$1 faelle="tests/fuzz/korpus/$1" arbeit="$BAU/korpus/$1" funde="$BAU/funde/$1"
  local log="$BAU/fuzz-$1.log" start dauer ausfuehrungen anzahl=0 f name
  mkdir -p "$faelle" "$arbeit" "$funde"
  echo "fuzzing $z for $SEKUNDEN s" >&2
  start=$(date +%s)
  # Timeouts of 10 s a case: a run that long is a hang for every target here.
  "$BAU/kelvaran_fuzz_$z" "$arbeit" "$faelle" -max_total_time="$SEKUNDEN" -timeout=10 -rss_limit_mb=2560 \
      -max_len=8192 -artifact_prefix="$funde/" -print_final_stats=1 ${FUZZ_FLAGS:-} >"$log" 2>&1
  dauer=$(( $(date +%s) - start ))
  ausfuehrungen=$(grep -o 'stat::number_of_executed_units: *[0-9]*' "$log" | awk '{s += $2} END {print s + 0}')
  for f in "$funde"/*; do
    [ -f "$f" ] || continue
    name="$(basename "$f")"
    [ -e "$faelle/$name" ] || { cp "$f" "$faelle/$name"; echo "  new regression case $faelle/$name" >&2; }
    anzahl=$((anzahl + 1))
  done
  rm -rf "$funde"
  printf '%-9s %6d %12d %9d\n' "$z" "$dauer" "$ausfuehrungen" "$anzahl" > "$BAU/bericht-$z.txt"
}

# FUZZ_JOBS targets at a time, each on one core.
jobs_max=${FUZZ_JOBS:-1}
for z in "${ZIELE[@]}"; do
  rm -f "$BAU/bericht-$z.txt"
  while [ "$(jobs -rp | wc -l)" -ge "$jobs_max" ]; do wait -n; done
  fuzze "$z" &
done
wait

printf '%-9s %6s %12s %9s\n' target seconds executions findings > "$BAU/fuzz-bericht.txt"
gesamt=0
for z in "${ZIELE[@]}"; do
  zeile=$(cat "$BAU/bericht-$z.txt" 2>/dev/null || printf '%-9s did not run' "$z")
  echo "$zeile" >> "$BAU/fuzz-bericht.txt"
  gesamt=$(( gesamt + $(awk '{print ($4 ~ /^[0-9]+$/ ? $4 : 1)}' <<<"$zeile") ))
done
cat "$BAU/fuzz-bericht.txt"
[ "$gesamt" -eq 0 ]
