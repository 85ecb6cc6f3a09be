#!/bin/sh
# usage: merge_archives.sh AR OUT.a IN.a...     one archive with the members of all
set -eu
ar=$1; out=$2; shift 2
rm -f "$out"
{ echo "CREATE $out"; for a in "$@"; do echo "ADDLIB $a"; done; echo SAVE; echo END; } | "$ar" -M
