#!/usr/bin/env bash
# A short tour of the talvo command-line tool on the sample data in
# examples/data. Usage: examples/tour.sh [BUILD_DIR] (default build/default).
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-build/default}
case $build in /*) ;; *) build=$root/$build ;; esac
talvo=$build/tools/talvo
data=examples/data
cd "$root"
if [ ! -x "$talvo" ]; then
  echo "tour: no talvo binary at $talvo; build first (cmake --build --preset default)" >&2
  exit 2
fi
pictures=$(mktemp -d)
trap 'rm -rf "$pictures"' EXIT

show() {
  echo
  echo "\$ talvo $*"
  "$talvo" "$@"
}

"$talvo" --version
show xml check "$data/server.xml"
show xml get "$data/server.xml" server/port
show xml get "$data/server.xml" database/pool@max
show xml format --indent 2 "$data/server.xml"
show grep -c ' 500 ' "$data/access.log"
show grep -n 'POST /api/(users|orders)' "$data/access.log"
show grep -o '[0-9]+ ms$' "$data/access.log" | head -n 3
show sub '^([^ ]+) ([^ ]+)' '\2 \1' "$data/access.log" | head -n 3
show split ' +' "$data/access.log" | head -n 7
show stats --histogram --bins 8 --svg "$pictures/latencies.svg" "$data/latencies.txt"
show chrono --points 12 --svg "$pictures/temperature.svg" "$data/temperature.txt"
show random --seed 7 --count 5 normal 100 15
# The pictures are read back by the library's own XML parser.
show xml check "$pictures/latencies.svg" "$pictures/temperature.svg"
