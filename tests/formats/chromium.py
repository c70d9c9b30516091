#!/usr/bin/env python3
"""Compares the lines that Chromium shows of pages with the text that they have here.

    PLUVO_EDITED=FOLDER html_tests --gtest_filter='HtmlCorpus.*'; chromium.py FOLDER

The pages are shown in frames without scripts. Left out: pictures, forms, notes, list labels. Lines are compared
without blanks, as layout makes and breaks them.
"""

import html
import json
import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path

HARNESS = """<!DOCTYPE html><meta charset=utf-8><body><script>
const files = %s, texts = {};
async function show(name) {
  const frame = document.createElement("iframe");
  frame.setAttribute("sandbox", "allow-same-origin");
  frame.style.width = "900px";
  document.body.append(frame);
  await new Promise(done => { frame.onload = done; setTimeout(done, 5000); frame.src = name; });
  try { texts[name] = frame.contentDocument.body.innerText; } catch (error) { texts[name] = null; }
  frame.remove();
}
(async () => {
  for (const name of files) await show(name);
  document.body.textContent = JSON.stringify(texts);
  document.title = "done";
})();
</script>"""

# Where the two differ for a known cause, by the end of the name.
SETTLED = {
    "T1390.html": "rows that CSS collapses",
    "changes_template.html": "a closed details element",
    "828362-template.html": "a style element that CSS shows",
    "c88de1-index.html": "what can be chosen in a form",
    "test_ignore_IBM420.html": "bytes that the encoding leaves undefined are shown as C1 controls, or not at all",
}


def normal(text):
    return re.sub("[\\s\u0000-\u001f\u007f-\u00a0\u00ad\u200b-\u200f\u2028-\u202e\u2060\ufeff\ufffc\ufffd]+", "", text)


def shown(pages):
    """What Chromium shows of each page, by its name."""
    with tempfile.TemporaryDirectory(prefix="chromium-") as work:
        names = {}
        for number, page in enumerate(pages):
            names[f"{number}.html"] = page.name
            (Path(work) / f"{number}.html").write_bytes(page.read_bytes())
        (Path(work) / "harness.htm").write_text(HARNESS % json.dumps(list(names)), "utf-8")
        dom = subprocess.run(["chromium", "--headless", "--no-sandbox", "--disable-gpu", "--allow-file-access-from-files",
                              f"--user-data-dir={work}/profile", "--virtual-time-budget=600000", "--dump-dom",
                              f"file://{work}/harness.htm"], capture_output=True, timeout=900, check=True).stdout  # fmt: skip
        body = re.search("<body>(.*)</body>", dom.decode("utf-8", "replace"), re.S)
        texts = json.loads(html.unescape(body[1]))
    return {names[name]: text for name, text in texts.items()}


def main(folder):
    pages = sorted(p for p in folder.iterdir() if p.suffix == ".html")
    differ = known = 0
    for start in range(0, len(pages), 100):
        texts = shown(pages[start : start + 100])
        for page in pages[start : start + 100]:
            ours = normal(Path(f"{page}.txt").read_text("utf-8", "replace"))
            theirs = normal(texts[page.name] or "")
            if ours == theirs:
                continue
            # Capitals are often made by styles.
            if ours.casefold() == theirs.casefold() or any(page.name.endswith(name) for name in SETTLED):
                known += 1
                continue
            differ += 1
            at = max(0, len(os.path.commonprefix([ours, theirs])) - 20)
            print(f"differs: {page.name}\n  ours   {ours[at : at + 70]!r}\n  theirs {theirs[at : at + 70]!r}")
    print(f"{differ} of {len(pages)} differ from what Chromium shows; {known} differ for known causes and are left out")


if __name__ == "__main__":
    main(Path(sys.argv[1]))
