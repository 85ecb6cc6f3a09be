#!/bin/sh
# usage: check_environment.sh SOURCES LIBRARY.a QEL      every variable that is read is in docs/environment.md, and the
# page is what the command prints
set -eu
sources=$1; library=$2; qel=$3; failed=0
"$qel" info --variables | diff "$sources/docs/environment.md" - ||
  { echo "docs/environment.md is out of date: qel info --variables > docs/environment.md"; failed=1; }

# The environment has one reader. What the archive's other members need of it would be named here.
others=$(nm -A --undefined-only "$library" 2> /dev/null |
  grep -E ' (getenv|secure_getenv|__secure_getenv|environ|__environ)(@|$)' | grep -v ':environment\.cpp\.o:' || true)
[ -z "$others" ] || { echo "read the environment themselves:"; echo "$others"; failed=1; }

for name in $(grep -rhoE --include='*.cpp' --include='*.h' '\w*environment\w*\(\s*"[A-Z_]+"' "$sources/service" "$sources/blas" \
    "$sources/lapack" "$sources/fft" "$sources/conv" "$sources/vector" "$sources/sparse" "$sources/nls" "$sources/entry" \
    "$sources/facade" "$sources/dropin" | grep -oE '"[A-Z_]+"' | tr -d '"' | sort -u); do
  grep -q "^| \`$name\` |" "$sources/docs/environment.md" || { echo "not in docs/environment.md: $name"; failed=1; }
done
exit $failed
