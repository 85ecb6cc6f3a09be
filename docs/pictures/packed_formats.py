#!/usr/bin/env python3
# usage: packed_formats.py FOLDER      draws the pictures of docs/packed_formats.md
import sys

CELL, GAP = 34, 60
COLOURS = ["#cfe3f5", "#fbe3b5", "#d3edc9", "#f3cfd9", "#ddd3ee", "#e6e6e6"]


class picture:
    def __init__(self, width, height, title):
        self.size, self.parts = (width, height), [f"<title>{title}</title>"]

    def cell(self, x, y, text, colour, dashed=False):
        dash = ' stroke-dasharray="3 3"' if dashed else ""
        self.parts.append(f'<rect x="{x}" y="{y}" width="{CELL}" height="{CELL}" fill="{colour}" stroke="#555"{dash}/>')
        if text:
            self.text(x + CELL / 2, y + CELL / 2 + 4, text, "middle")

    def text(self, x, y, text, anchor="start", size=12):
        self.parts.append(f'<text x="{x}" y="{y}" text-anchor="{anchor}" font-size="{size}">{text}</text>')

    def save(self, path):
        width, height = self.size
        with open(path, "w", encoding="utf-8") as file:
            file.write(f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" width="{width}" '
                       f'height="{height}" font-family="sans-serif">\n<rect width="100%" height="100%" fill="#fff"/>\n')
            file.write("\n".join(self.parts) + "\n</svg>\n")


def band(path):
    n, kl, ku = 6, 1, 2
    p = picture(2 * n * CELL + GAP + 40, n * CELL + 60, "A band matrix and its array")
    right = 20 + n * CELL + GAP
    p.text(20, 20, "A, 6 x 6, kl = 1, ku = 2")
    p.text(right, 20, "ab, ldab = 4: ab[ku + i - j + j * ldab]")
    for i in range(n):
        for j in range(n):
            if -kl <= j - i <= ku:
                colour = COLOURS[j % 5]
                p.cell(20 + j * CELL, 30 + i * CELL, f"{i}{j}", colour)
                p.cell(right + j * CELL, 30 + (ku + i - j) * CELL, f"{i}{j}", colour)
            else:
                p.cell(20 + j * CELL, 30 + i * CELL, "", "#fff")
    for j in range(n):
        for row in range(kl + ku + 1):
            if not 0 <= row - ku + j < n:
                p.cell(right + j * CELL, 30 + row * CELL, "", COLOURS[5], True)
    p.text(right, 30 + (kl + ku + 1) * CELL + 20, "dashed: there, but not read")
    p.save(path)


def triangle(path):
    n = 4
    p = picture(n * (n + 1) // 2 * CELL + 40 + n * CELL + GAP, 2 * (n * CELL + 50), "Packed triangles")
    for block, uplo in enumerate("UL"):
        top = 30 + block * (n * CELL + 50)
        right = 20 + n * CELL + GAP
        formula = "ap[i + j (j + 1) / 2]" if uplo == "U" else "ap[i + j (2 n - j - 1) / 2]"
        p.text(20, top - 10, f"uplo '{uplo}'")
        p.text(right, top + CELL - 8, f"{formula}: columns one after another")
        k = 0
        for j in range(n):
            for i in range(n):
                stored = i <= j if uplo == "U" else i >= j
                p.cell(20 + j * CELL, top + i * CELL, f"{i}{j}" if stored else "", COLOURS[j] if stored else "#fff")
                if stored:
                    p.cell(right + k * CELL, top + CELL, f"{i}{j}", COLOURS[j])
                    k += 1
    p.save(path)


def spectra(path):
    rows = [("n = 6, data", [f"x{k}" for k in range(6)], None),
            ("DFTI_CCS_FORMAT", ["R0", "0", "R1", "I1", "R2", "I2", "R3", "0"], None),
            ("DFTI_PACK_FORMAT", ["R0", "R1", "I1", "R2", "I2", "R3"], None),
            ("DFTI_PERM_FORMAT", ["R0", "R3", "R1", "I1", "R2", "I2"], None),
            ("n = 5, data", [f"x{k}" for k in range(5)], None),
            ("DFTI_CCS_FORMAT", ["R0", "0", "R1", "I1", "R2", "I2"], None),
            ("PACK and PERM", ["R0", "R1", "I1", "R2", "I2"], None)]
    p = picture(170 + 8 * CELL + 20, len(rows) * (CELL + 12) + 20, "Packed spectra of real data")
    for r, (name, cells, _) in enumerate(rows):
        y = 10 + r * (CELL + 12)
        p.text(10, y + 22, name)
        for k, text in enumerate(cells):
            colour = COLOURS[5] if text[0] in "x0" else COLOURS[int(text[1])]
            p.cell(170 + k * CELL, y, text, colour)
    p.save(path)


def main():
    folder = sys.argv[1]
    band(f"{folder}/band.svg")
    triangle(f"{folder}/packed_triangle.svg")
    spectra(f"{folder}/packed_spectra.svg")


main()
