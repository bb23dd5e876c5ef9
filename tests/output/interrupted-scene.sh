#!/usr/bin/env bash
# A scene that somebody interrupts ends by the signal and leaves no temporary directory.
#   tests/output/interrupted-scene.sh DIRECTORY-OF-THE-PROGRAMS
set -euo pipefail
bin=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
echo '{"end": 100000}' >"$work/scene.json"
mkdir "$work/tmp"

left_behind() { find "$work/tmp" -mindepth 1 | grep -q .; }

for signal in INT TERM HUP; do
  TMPDIR=$work/tmp KESTRO_SCENE=$work/scene.json KESTRO_SCENE_SPEED=1 "$bin/KestroHelper" 2>/dev/null &
  for _ in {1..500}; do
    [ -e "$work"/tmp/*/Kestro.sqlite ] && break
    sleep 0.02
  done
  left_behind || { echo "the scene has not begun" >&2; exit 1; }
  kill -"$signal" $!
  status=0
  wait $! || status=$?
  [ "$status" = $((128 + $(kill -l $signal))) ] || { echo "$signal: status $status" >&2; exit 1; }
  ! left_behind || { echo "$signal leaves something" >&2; exit 1; }
done
