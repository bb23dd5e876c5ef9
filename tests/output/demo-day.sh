#!/usr/bin/env bash
# What people see of the demo day: the lines of the helper and the summary from the database, run by
# the real programs, must be those of demo-day.expected.txt. With --rebaseline they are written there.
#   tests/output/demo-day.sh BIN-DIRECTORY [--rebaseline]
set -euo pipefail
bin=$(cd "$1" && pwd)
cd "$(dirname "$0")/../.."

data=$(mktemp -d)
trap 'rm -rf "$data"' EXIT
expected=tests/output/demo-day.expected.txt
{
  KESTRO_SCENE=scenes/demo-day.json KESTRO_TRANSCRIPT=- KESTRO_TRANSCRIPT_FORMAT=text \
    KESTRO_DATA_DIR=$data "$bin/KestroHelper"
  echo
  KESTRO_DATA_DIR=$data "$bin/kestroctl" today --all
} >"$data/output.txt"
if [ "${2:-}" = --rebaseline ]; then cp "$data/output.txt" "$expected"; fi
diff -u "$expected" "$data/output.txt"
