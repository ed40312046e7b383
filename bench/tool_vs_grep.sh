#!/usr/bin/env bash
# Whole-process timings of the talvo tool: `talvo grep` against GNU `grep -E`
# on patterns both read the same way, and `talvo stats` throughput, on
# generated 100 MB inputs; with --peak-memory also the peak resident memory of
# grep and stats on 1 GB inputs. Inputs live in a temporary directory that is
# removed at the end. Usage: bench/tool_vs_grep.sh [BUILD_DIR] [--peak-memory]
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-build/default}
case $build in /*) ;; *) build=$root/$build ;; esac
talvo=$build/tools/talvo
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

python3 - <<'PY'
import random
random.seed(1)
paths = ["/api/users", "/api/orders", "/index.html", "/static/app.js", "/api/login", "/health"]
methods = ["GET", "GET", "GET", "POST", "PUT", "DELETE"]
levels = ["INFO"] * 12 + ["WARN"] * 3 + ["ERROR"]
limit = 100 * 1000 * 1000
with open("text.txt", "w") as out:
    size, i, lines = 0, 0, []
    while size < limit:
        line = "2026-11-21T10:%02d:%02d %s 10.0.%d.%d %s %s %d %d ms user%d\n" % (
            i // 60 % 60, i % 60, random.choice(levels), random.randint(0, 3), random.randint(1, 254),
            random.choice(methods), random.choice(paths), random.choice([200, 200, 200, 304, 404, 500]),
            int(random.lognormvariate(3, 0.8)), random.randint(1, 99999))
        lines.append(line); size += len(line); i += 1
        if len(lines) > 100000:
            out.write("".join(lines)); lines = []
    out.write("".join(lines))
with open("numbers.txt", "w") as out:
    size, lines = 0, []
    while size < limit:
        line = "%.6g\n" % random.lognormvariate(3, 0.8)
        lines.append(line); size += len(line)
        if len(lines) > 100000:
            out.write("".join(lines)); lines = []
    out.write("".join(lines))
PY

# Best of three wall-clock times. Results go to a file: GNU grep stops at the
# first match when its output is /dev/null.
best() {
  local fastest=
  for _ in 1 2 3; do
    local t
    t=$( { /usr/bin/time -f "%e" "$@" >out.txt; } 2>&1 | tail -n 1)
    if [ -z "$fastest" ] || awk "BEGIN{exit !($t < $fastest)}"; then fastest=$t; fi
  done
  echo "$fastest"
}

for pattern in 'ERROR' '[0-9]+ ms user9' '(POST|PUT) /api/(users|orders) 500'; do
  ours=$("$talvo" grep -c "$pattern" text.txt || true)
  theirs=$(grep -E -c "$pattern" text.txt || true)
  echo "grep '$pattern': $ours lines (grep -E: $theirs)," \
       "talvo $(best "$talvo" grep "$pattern" text.txt) s, grep -E $(best grep -E "$pattern" text.txt) s"
done
count=$("$talvo" stats numbers.txt | awk '/^count/ {print $2}')
seconds=$(best "$talvo" stats numbers.txt)
echo "stats: $count numbers in $seconds s, $(awk "BEGIN{printf \"%.0f\", $count / $seconds}") numbers/s"

if [ "${2:-}" = "--peak-memory" ]; then
  for _ in 1 2 3 4 5 6 7 8 9 10; do cat text.txt; done >text1g.txt
  for _ in 1 2 3 4 5 6 7 8 9 10; do cat numbers.txt; done >numbers1g.txt
  rm -f text.txt numbers.txt
  peak() { /usr/bin/time -v "$@" 2>&1 >/dev/null | awk '/Maximum resident/ {print $6 " KB"}'; }
  echo "peak memory on 1 GB: grep $(peak "$talvo" grep -c ERROR text1g.txt)," \
       "stats $(peak "$talvo" stats numbers1g.txt)"
fi
