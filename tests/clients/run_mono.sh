#!/bin/sh
# usage: run_mono.sh FOLDER_OF_LIBQEL RECORDER SCRATCH_FOLDER
# A C# program on libqel.so by P/Invoke (Debian: mono-mcs, mono-runtime).
. "$(dirname "$(realpath "$0")")/client.sh"
need mcs mono-mcs
need mono mono-runtime
mcs -out:client.exe "$here/Client.cs" > compile.log 2>&1 || { cat compile.log; fail "can't compile"; }
[ "$(with_ours mono client.exe | tee report)" = right ] || { cat report; fail "wrong"; }
check_loaded libqel.so.1
echo right
