#!/bin/sh
# usage: format.sh [--check]     formats all C++ and C files, or fails if one is not formatted
set -eu
cd "$(dirname "$0")/.."
option=-i
[ "${1:-}" = --check ] && option="--dry-run --Werror"
git ls-files -z '*.cpp' '*.h' '*.c' | xargs -0 clang-format $option
