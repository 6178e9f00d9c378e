#!/usr/bin/env python3
"""The page of quarn decode --html in a browser: bytes and tree belong together, pointing at one
marks the other, keys move, nothing is loaded from elsewhere and no byte of the input becomes markup.

    explain_page_test.py QUARN EXAMPLES OUTPUT

Screenshots, light and dark, are left in the folder OUTPUT to be looked at. Without chromium the test
is skipped (exit status 77).
"""

import json
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

SELF_TEST = """
<script>{
const result = { errors: [], bytes: '', places: document.querySelectorAll('nav li').length };
const check = (good, what) => { if (!good) result.errors.push(what); };
const over = node => node.dispatchEvent(new PointerEvent('pointerover', { bubbles: true }));
const press = (node, key) => node.dispatchEvent(new KeyboardEvent('keydown', { key, bubbles: true }));
const lit = name => [...document.querySelectorAll('.' + name)];
const started = performance.now();
const sections = [...document.querySelectorAll('section')];
for (const section of sections) {
  const hex = section.querySelector('.hex'), tree = section.querySelector('.tree');
  check(hex.children.length === tree.children.length, 'as many ranges as rows');
  if (section.id === 's1') {
    const heights = ['.at', '.hex'].map(name => {
      const range = document.createRange();
      range.selectNodeContents(section.querySelector(name));
      return range.getBoundingClientRect().height;
    });
    check(Math.abs(heights[0] - heights[1]) < 5, 'offsets beside their bytes: ' + heights);
  }
  result.bytes += hex.textContent.replace(/ /g, '');
  const n = Math.min(20, tree.children.length - 1), row = tree.children[n], range = hex.children[n];
  for (const node of [row, range.querySelector('s') || range]) {
    over(node);
    check(lit('on').length === 2 && lit('on').includes(row) && lit('on').includes(range), 'pair');
  }
}
result.hover = (performance.now() - started) / sections.length;
const tree = document.querySelector('#s1 .tree').children;
over(tree[1]);
check(lit('in').length > 10 && lit('in').every(e => e.closest('.hex')), 'a list marks what it holds');
check(document.getElementById('place').textContent === 'frame 1 › message 1 open response', 'place');
tree[0].focus();
for (const [key, n] of [['ArrowDown', 1], ['ArrowRight', 2], ['ArrowDown', 3], ['ArrowLeft', 1],
                        ['ArrowUp', 0], ['End', tree.length - 1], ['Home', 0]]) {
  press(document.activeElement, key);
  check(document.activeElement === tree[n] && tree[n].classList.contains('on'), key);
}
press(document.activeElement, 'n');
const first = document.querySelector('nav a').hash;
check(document.activeElement === document.querySelector(first), 'next damaged place');
check([...document.querySelectorAll('nav a')].every(a => document.querySelector(a.hash)), 'links');
check(sections.every(s => s.querySelectorAll('[tabindex="0"]').length === 1), 'one tab stop each');
check(performance.getEntriesByType('resource').length === 0, 'nothing is loaded');
check(!document.querySelector('main script, main b b, h1 *'), 'no byte becomes markup');
top.postMessage(JSON.stringify(result), '*');
}</script></body>"""

# In a frame of a window's size: each damaged place is reached by n, by p and by its link, and there
# its row and its bytes can be seen, covered by nothing.
PLACES_TEST = """
<script>addEventListener('load', async () => {
const errors = [];
const settled = () => new Promise(done => setTimeout(done, 50));
const at = (x, y) => document.elementFromPoint(x, y);
const links = [...document.querySelectorAll('nav a')];
const check = async (link, how) => {
  await settled();
  const row = document.getElementById(link.hash.slice(1)), here = row.getBoundingClientRect();
  const tree = [...row.parentNode.children], dump = row.closest('section').querySelector('.hex');
  const bytes = dump.children[tree.indexOf(row)], there = bytes.getClientRects()[0];
  const told = how + ' ' + link.textContent;
  if (document.activeElement !== row) errors.push('not reached: ' + told);
  else if (!row.contains(at(here.left + 30, here.top + 2))) errors.push('row hidden: ' + told);
  else if (!bytes.contains(at(there.left + 3, there.top + 4))) errors.push('bytes hidden: ' + told);
};
const press = key => (document.activeElement || document.body).dispatchEvent(
  new KeyboardEvent('keydown', { key, bubbles: true }));
for (const link of links) { press('n'); await check(link, 'n'); }
document.activeElement.blur();
for (const link of [...links].reverse()) { press('p'); await check(link, 'p'); }
for (const link of [...links, links[0], links[0]]) { link.click(); await check(link, 'click'); }
for (const row of document.querySelectorAll('#s3 .tree > div')) {
  go(row);
  await settled();
  const here = row.getBoundingClientRect();
  if (!row.contains(at(here.left + 30, here.top + 2))) errors.push('row hidden: ' + row.textContent);
}
top.postMessage(JSON.stringify({ errors, places: links.length }), '*');
});</script></body>"""

WINDOWS = ((1440, 900), (1440, 500), (390, 844))


def browse(page, *options):
    with tempfile.TemporaryDirectory() as profile:
        command = ["chromium", "--headless", "--no-sandbox", "--disable-gpu", "--disable-quic",
                   "--no-first-run", "--disable-background-networking",
                   "--disable-component-update", "--disable-sync", "--window-size=1400,1000",
                   f"--user-data-dir={profile}", *options, page.as_uri()]
        return subprocess.run(command, capture_output=True, text=True, timeout=100, check=True).stdout


# The browser makes no window that small, but a frame in one.
def self_test(text, folder, test=SELF_TEST, window=WINDOWS[0]):
    page, outer = (pathlib.Path(folder) / name for name in ("tested.html", "outer.html"))
    page.write_text(text.replace("</body>", test))
    outer.write_text("<body><script>onmessage = e => document.body.dataset.result = e.data</script>"
                     f"<iframe width={window[0]} height={window[1]} src=tested.html></iframe>")
    found = re.search(r'data-result="([^"]*)"',
                      browse(outer, "--dump-dom", "--virtual-time-budget=100000"))
    assert found, "the test did not run to its end"
    result = json.loads(found.group(1).replace("&quot;", '"'))
    assert not result["errors"], result["errors"]
    return result


# Each way to be damaged: gaps, long and short, frames that are cut off, broken off and damaged.
def places(examples):
    good = (examples / "household.bin").read_bytes()
    frames = [good[at:at + 252] for at in range(0, len(good), 252)]
    return b"".join([frames[0], b"noise", *frames[1:4], b"x" * 2000, frames[0][:99], frames[4],
                     frames[1][:200], frames[0], frames[1][:150]])


def main():
    quarn, examples, output = sys.argv[1], pathlib.Path(sys.argv[2]), pathlib.Path(sys.argv[3])
    if shutil.which("chromium") is None:
        print("skipped: there is no chromium (scripts/setup --dev installs it)")
        return 77
    output.mkdir(parents=True, exist_ok=True)
    stream = (examples / "household.bin").read_bytes() * 40
    stream = stream[:252] + b"<script>x</script>" + stream[252:-100]
    with tempfile.TemporaryDirectory() as folder:
        data = pathlib.Path(folder) / "<b>&'\".bin"
        data.write_bytes(stream)
        page = pathlib.Path(folder) / "page.html"
        status = subprocess.run([quarn, "decode", "--html", page, data], capture_output=True)
        assert status.returncode == 1 and status.stdout == b"", status
        text = page.read_text()
        assert not re.search(r"https?:|src=|url\(|@import", text), "the page refers to something"
        result = self_test(text, folder)
        assert bytes.fromhex(result["bytes"]) == stream
        assert result["places"] >= 40 * 2 + 2, result["places"]
        print(f"{result['hover']:.1f} ms to find and mark both pairs of a frame")
        small = subprocess.run([quarn, "decode", "--html", "-"], input=places(examples),
                               capture_output=True).stdout.decode()
        self_test(small, folder, window=WINDOWS[-1])
        for window in WINDOWS:
            assert self_test(small, folder, PLACES_TEST, window)["places"] >= 5
        for name, scheme in (("light", 1), ("dark", 0)):
            picture = output / f"explain-{name}.png"
            browse(page, f"--blink-settings=preferredColorScheme={scheme}",
                   f"--screenshot={picture}")
            assert picture.stat().st_size > 50000, "a picture of nothing"
    return 0


if __name__ == "__main__":
    sys.exit(main())
