#!/usr/bin/env python3
"""usage: check_includes.py [ROOT]

Include edges between the rooms: each room may include only what its row allows. Imports go from the facade
down to the kernels, never back; kernel files see their prelude and bodies only.
"""
import pathlib
import re
import sys

PUBLIC = {"include/qel"}
ALLOWED = {
    "include/qel": PUBLIC,
    "include/tavik": {"include/tavik"},
    "facade": {"facade", "include/tavik"} | PUBLIC,
    "entry": {"entry", "blas", "lapack", "sparse", "fft", "nls", "vector", "conv", "service"} | PUBLIC,
    "service": {"service"} | PUBLIC,
    "blas": {"blas", "blas/kernels", "service"},
    "blas/kernels": {"blas/kernels", "service/core_types.h"},
    "lapack": {"lapack", "blas", "blas/kernels/factor_native.h", "service"},
    "sparse": {"sparse", "sparse/kernels", "blas", "lapack", "service"},
    "sparse/kernels": {"sparse/kernels", "service/core_types.h"},
    "conv": {"conv", "conv/kernels", "fft", "blas", "service"},
    "conv/kernels": {"conv/kernels", "service/core_types.h"},
    "nls": {"nls", "blas", "lapack", "service"},
    "fft": {"fft", "fft/kernels", "service"} | PUBLIC,
    "fft/kernels": {"fft/kernels", "service/core_types.h"},
    "vector": {"vector", "vector/kernels", "service"} | PUBLIC,
    "vector/kernels": {"vector/kernels"},
    "dropin": {"dropin", "blas", "lapack", "service"} | PUBLIC,
    "tests/nls": {"tests/nls", "nls", "service"} | PUBLIC,
    "cli": {"cli", "blas", "conv", "lapack", "nls", "service", "sparse", "vector"} | PUBLIC,
    "bench": {"bench", "tests/nls", "tests/support/sparse_problems.h", "cli/matrix_market.h", "blas", "blas/kernels", "include/tavik", "service"} | PUBLIC,
}
# What every kernel translation unit may pull in beside its own folder.
KERNEL_SYSTEM_HEADERS = {"immintrin.h", "stdint.h"}


def room_of(path: str) -> str:
    rooms = sorted(ALLOWED, key=len, reverse=True)
    return next((room for room in rooms if path.startswith(room + "/")), "")


def target_of(include: str) -> str:
    for prefix in ("qel/", "tavik/"):
        if include.startswith(prefix):
            return "include/" + include
    return include


def faults_in(root: pathlib.Path, path: pathlib.Path):
    name = path.relative_to(root).as_posix()
    room = room_of(name)
    if not room:
        return
    for number, line in enumerate(path.read_text().splitlines(), 1):
        match = re.match(r'\s*#\s*include\s*(["<])([^">]+)[">]', line)
        if not match:
            continue
        system, include = match[1] == "<", match[2]
        if system:
            if room.endswith("/kernels") and include not in KERNEL_SYSTEM_HEADERS:
                yield f"{name}:{number}: a kernel file includes <{include}>"
            continue
        target = target_of(include)
        if target not in ALLOWED[room] and room_of(target) not in ALLOWED[room]:
            yield f"{name}:{number}: {room} may not include {include}"


def main() -> int:
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ".").resolve()
    files = [p for room in ALLOWED for p in (root / room).rglob("*") if p.suffix in {".h", ".cpp", ".c"}]
    faults = sorted({fault for path in files for fault in faults_in(root, path)})
    print("\n".join(faults) if faults else f"{len(set(files))} files, every include is allowed")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
