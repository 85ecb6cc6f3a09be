#!/bin/sh
# usage: keep_plain_members.sh ARCHIVE OLD_PREFIX NEW_PREFIX NEW_SUFFIX ROUTINE...
# Gives each routine's definition in ARCHIVE another name, from OLD_PREFIXroutine_ to
# NEW_PREFIXroutineNEW_SUFFIX. Calls of it elsewhere in the archive keep the old name, which the library defines.
set -eu
archive=$(realpath "$1"); old=$2; prefix=$3; suffix=$4; shift 4
work=$(mktemp -d); trap 'rm -rf "$work"' EXIT
cd "$work"
for routine; do echo "$routine.o"; done | xargs ar x "$archive"
for routine; do objcopy --redefine-sym "${old}${routine}_=${prefix}${routine}${suffix}" "$routine.o"; done
ar r "$archive" ./*.o
