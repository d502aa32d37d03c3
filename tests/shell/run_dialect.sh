#!/usr/bin/env bash
# Runs the scripts in dialect/ and compares what came of them with the expected transcripts.
# run_dialect.sh --accept writes them anew: look at the difference before you commit it.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
scripts=("$here"/dialect/*.lsp)
[ -e "${scripts[0]}" ] || { echo "no scripts in $here/dialect" >&2; exit 1; }

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/expected" "$work/found" "$work/files"
cp "$here"/dialect/*.out "$work/expected" 2>/dev/null || true
dialect=$(cd "$here/../../shell/dialect" && pwd)

# The scripts read and write files in a folder of their own.
if ! (cd "$work/files" && timeout 100 ecl --norc --load "$here/dialect_test.lisp" \
      -- "$dialect" "$work/found" "${scripts[@]}") >"$work/log" 2>&1; then
  tail -n 20 "$work/log" >&2
  exit 1
fi
sed -i "s|$(cd "$work" && pwd -P)/files/||" "$work"/found/*.out
if [ "${1:-}" = --accept ]; then
  cp "$work/found"/*.out "$here/dialect"
else
  diff -ru "$work/expected" "$work/found"
  echo "${#scripts[@]} transcripts as expected"
fi
