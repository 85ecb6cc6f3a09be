#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""usage: look_at_page.py PAGE.html [WIDTH...]

Loads the page of qel bench in a headless Chromium at these widths and tells, as JSON, what a reader would see:
how many plots, curves and marks have a size on the screen, whether the page scrolls sideways, what it tried to
load, and what went to the console. Exit code 77 where there is no Chromium.
"""
import json
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

PROBE = """
<script>
addEventListener("load", () => {
  const visible = e => { const b = e.getBoundingClientRect(); return b.width > 0 && b.height > 0; };
  const count = selector => [...document.querySelectorAll(selector)].filter(visible).length;
  const overflowing = [...document.querySelectorAll(".plot, .overview, .fact, .scroll, h1, h2, h3")]
    .filter(e => e.getBoundingClientRect().right > innerWidth + 0.5).map(e => e.className || e.tagName);
  const found = {width: innerWidth, plots: count(".plot svg"), curves: document.querySelectorAll(".plot .curve").length,
    marks: count(".plot .mark"), overview: count(".overview svg"), tables: count("table"), legends: count(".legend"),
    facts: count(".fact"), page_scrolls: document.documentElement.scrollWidth > innerWidth, overflowing,
    loaded: performance.getEntriesByType("resource").map(r => r.name).filter(n => !n.startsWith("data:"))};
  const out = document.createElement("pre");
  out.id = "found";
  out.textContent = JSON.stringify(found);
  document.body.append(out);
});
</script>
"""


def look(chromium, page, width):
    with tempfile.TemporaryDirectory() as folder:
        probed = Path(folder) / "page.html"
        # Narrow windows are made wider by some versions: the page stands in a frame of the wanted width.
        inner = page.replace("<head>", "<head>" + PROBE, 1)
        escaped = inner.replace("&", "&amp;").replace('"', "&quot;")
        probed.write_text(
            f'<!DOCTYPE html><meta charset="utf-8"><link rel="icon" href="data:,"><style>body{{margin:0}}iframe{{border:0;width:{width}px;height:9000px}}</style>'
            f'<iframe srcdoc="{escaped}" onload="const f=this.contentDocument.getElementById(\'found\');'
            "const p=document.createElement('pre');p.id='outer';p.textContent=f?f.textContent:'nothing';"
            'document.body.append(p)"></iframe>')
        run = subprocess.run(
            [chromium, "--headless", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage", f"--user-data-dir={folder}/profile",
             "--enable-logging=stderr", "--virtual-time-budget=4000", f"--window-size={max(width, 1300)},1000", "--dump-dom",
             probed.as_uri()], capture_output=True, text=True, timeout=90, check=False)
    match = re.search(r'<pre id="outer">(.*?)</pre>', run.stdout, re.S)
    found = json.loads(match.group(1)) if match and match.group(1) != "nothing" else {"width": width, "nothing": run.stderr[-2000:]}
    found["console"] = [line for line in run.stderr.splitlines() if ":CONSOLE" in line]
    return found


def main():
    chromium = shutil.which("chromium") or shutil.which("chromium-browser") or shutil.which("google-chrome")
    if chromium is None:
        print("no Chromium")
        return 77
    page = Path(sys.argv[1]).read_text(encoding="utf-8")
    print(json.dumps([look(chromium, page, int(width)) for width in sys.argv[2:] or ["360", "1280"]]))
    return 0


if __name__ == "__main__":
    sys.exit(main())
