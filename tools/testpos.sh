#!/usr/bin/env bash
# Runs the engine's test-position tool over an EPD suite (default: the 300 "Win At
# Chess" positions in tools/data/wac.epd) and prints the solved count. The engine's
# full report, one entry per position, goes to a log under /tmp. The build is brought
# up to date with make first; the time per position is the engine's default.
#
#   tools/testpos.sh [suite.epd] [extra engine arguments]
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
suite=$(realpath "${1:-$root/tools/data/wac.epd}")
shift $(($# > 0 ? 1 : 0))
make -C "$root" build >&2
log=$(mktemp /tmp/testpos.XXXXXX.log)
echo "$(grep -c . "$suite") positions from $suite; full report in $log"
status=0
"$root/build/kelvaran" --Testpos "$suite" "$@" >"$log" 2>&1 || status=$?
# The solved count closes the report; without it, show the report's end.
grep -i 'solved' "$log" | tail -n 3 || tail -n 10 "$log"
[ "$status" -eq 0 ] || echo "kelvaran exited with status $status" >&2
exit "$status"
