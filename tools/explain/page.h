// What every page carries in itself: its style and its behaviour. Nothing is loaded from elsewhere.
//
// A section has a dump (pre.hex) and a tree (div.tree). Their children belong together by their
// number: child n of one shows what child n of the other tells. aria-level gives the depth.
#ifndef TOOLS_EXPLAIN_PAGE_H
#define TOOLS_EXPLAIN_PAGE_H

namespace tool
{

constexpr const char* kPageStyle = R"css(
:root { color-scheme: light dark; --bg: #fff; --fg: #1d2126; --mute: #68717c; --line: #e2e6ea;
  --panel: #f6f8fa; --t: #087483; --s: #2256c4; --c: #8438bd; --u: #a85500; --bad: #c1121f;
  --badbg: #fde7e9; --on: #ffd866; --in: #fff3c4; }
@media (prefers-color-scheme: dark) { :root { --bg: #14171b; --fg: #e3e6ea; --mute: #8f98a3;
  --line: #2a3037; --panel: #1b1f24; --t: #56c5d3; --s: #82abff; --c: #cda3ff; --u: #f2ad62;
  --bad: #ff7a85; --badbg: #45191e; --on: #7a5d00; --in: #3a3114; } }
* { box-sizing: border-box; }
html { scroll-padding: 2em 0 5em; }
body { margin: 0 auto; max-width: 90em; padding: 1em 1.5em 4em; background: var(--bg);
  color: var(--fg); font: 15px/1.5 system-ui, sans-serif; }
h1 { font-size: 1.4em; margin: 0; overflow-wrap: anywhere; }
h2 { font-size: 1.05em; margin: 0 0 .6em; }
.file { font-size: 1.2em; margin: 2em 0 0; overflow-wrap: anywhere; }
header p { margin: .2em 0; color: var(--mute); }
kbd { font: .85em ui-monospace, monospace; border: 1px solid var(--line); border-radius: 3px;
  padding: 0 .35em; background: var(--panel); }
nav { border: 1px solid var(--bad); border-radius: 6px; background: var(--badbg);
  padding: .5em 1em; margin: 1em 0; max-height: 15em; overflow: auto; }
nav ol { margin: .3em 0; padding: 0; list-style: none; }
nav li { padding-left: 5em; text-indent: -5em; }
nav a { color: inherit; text-decoration-color: var(--bad); }
nav code { display: inline-block; min-width: 5em; text-indent: 0; font-size: 1em; }
section { border-top: 1px solid var(--line); padding: 1em 0; margin-top: 1em;
  content-visibility: auto; contain-intrinsic-size: auto 90em; }
h2 strong, .tree strong { color: var(--bad); font-weight: 600; }
.pair { display: grid; grid-template-columns: max-content minmax(0, 1fr); gap: 2em; }
.dump { position: sticky; top: .5em; align-self: start; display: flex; gap: 1em;
  max-height: calc(100vh - 4em); overflow: auto; padding: .6em .9em; border-radius: 6px;
  background: var(--panel); border: 1px solid var(--line); }
pre { margin: 0; font: 13px/1.65 ui-monospace, "DejaVu Sans Mono", monospace; }
.at { color: var(--mute); text-align: right; user-select: none; }
.hex { flex: none; width: 47.5ch; white-space: pre-wrap; cursor: default; }
.hex i { font-style: normal; border-radius: 2px; }
.hex s { text-decoration: none; }
.hex :is(.v, .c, .x) s { opacity: .55; }
.tree > div { padding: .05em .4em .05em calc(.4em + var(--l) * 1.3em); border-radius: 3px;
  overflow-wrap: anywhere; cursor: default; }
.tree b { font-weight: 600; margin-left: .5em; }
.tree small { color: var(--mute); margin-left: .6em; }
.tree em, .tree strong { display: block; font-size: .9em; padding-left: 1.3em; }
.tree em { color: var(--u); font-style: normal; }
.t { color: var(--t); } .s { color: var(--s); } .c { color: var(--c); }
.p, .a { color: var(--mute); } .u { color: var(--u); }
.tree b { color: var(--fg); } .a b { color: var(--mute); font-weight: 400; }
.x { background: var(--badbg); box-shadow: inset 0 -2px var(--bad); }
.tree .x { box-shadow: inset 3px 0 var(--bad); }
.in { background: var(--in); } .on { background: var(--on); }
.tree > div:focus { outline: 2px solid var(--s); outline-offset: -2px; }
footer { position: fixed; inset: auto 0 0 0; padding: .35em 1.5em; background: var(--panel);
  border-top: 1px solid var(--line); white-space: nowrap; overflow: hidden;
  text-overflow: ellipsis; min-height: 2.2em; }
footer:empty { display: none; }
@media (max-width: 62em) { .pair { grid-template-columns: minmax(0, 1fr); gap: 1em; }
  .dump { max-height: 35vh; z-index: 1; } .tree > div { scroll-margin-top: calc(35vh - .5em); } }
@media (max-width: 32em) { body { padding: .7em .7em 4em; } pre { font-size: 11px; }
  .dump { padding: .5em; gap: .6em; } }
)css";

constexpr const char* kPageScript = R"js(
const place = document.getElementById('place');
let lit = [];
function panes(node) {
  const section = node.closest('section');
  const hex = section.querySelector('.hex').children, tree = section.querySelector('.tree').children;
  if (tree[0].n === undefined)
    for (let n = 0; n < tree.length; n++) tree[n].n = hex[n].n = n;
  return { section, hex, tree };
}
const level = row => +row.getAttribute('aria-level');
const words = row => [...row.children].filter(e => /^(SPAN|B)$/.test(e.tagName))
  .map(e => e.textContent).join(' ');
function mark(node, name) { node.classList.add(name); lit.push(node); }
function light(node) {
  for (const e of lit) e.classList.remove('on', 'in');
  lit = [];
  const { section, hex, tree } = panes(node), n = node.n, names = [];
  mark(tree[n], 'on');
  mark(hex[n], 'on');
  for (let k = n + 1; k < tree.length && level(tree[k]) > level(tree[n]); k++) mark(hex[k], 'in');
  for (let k = n, above = 99; k >= 0; k--)
    if (level(tree[k]) < above) { above = level(tree[k]); names.unshift(words(tree[k])); }
  place.textContent = [section.dataset.name, ...names].join(' › ');
  if (hex[n] === node) return; // what is pointed at must not move away
  const dump = hex[n].closest('.dump'), { offsetTop: top, offsetHeight: height } = hex[n];
  const room = dump.clientHeight - height;
  if (top < dump.scrollTop || top > dump.scrollTop + room)
    dump.scrollTop = top - Math.max(room, 8) / 2;
}
function go(row) {
  if (!row) return;
  row.parentNode.querySelector('[tabindex="0"]').tabIndex = -1; // a tree is one stop of Tab
  row.tabIndex = 0;
  row.scrollIntoView({ block: 'nearest' });
  row.focus({ preventScroll: true });
}
const linked = event => event.target.closest?.('.hex > i, .tree > div');
for (const type of ['pointerover', 'focusin'])
  document.addEventListener(type, event => { const node = linked(event); if (node) { panes(node); light(node); } });
document.addEventListener('click', event => {
  const node = linked(event), link = event.target.closest?.('nav a');
  if (node) { const { tree } = panes(node); go(tree[node.n]); }
  if (link) jump(link.hash);
});
const target = hash => document.getElementById(hash.slice(1));
const damaged = [...document.querySelectorAll('nav a')].map(a => target(a.hash));
const jump = hash => { const row = target(hash); if (damaged.includes(row)) go(row); };
addEventListener('hashchange', () => jump(location.hash));
jump(location.hash);
document.addEventListener('keydown', event => {
  if (event.ctrlKey || event.metaKey || event.altKey) return;
  const row = linked(event), key = event.key;
  let to;
  if (key === 'n' || key === 'p') {
    const here = row || document.body;
    const side = key === 'n' ? Node.DOCUMENT_POSITION_FOLLOWING : Node.DOCUMENT_POSITION_PRECEDING;
    const list = damaged.filter(e => here === document.body || here.compareDocumentPosition(e) & side);
    to = key === 'n' ? list[0] : list[list.length - 1];
  } else if (row) {
    const { tree } = panes(row), n = row.n;
    if (key === 'ArrowDown') to = tree[n + 1];
    else if (key === 'ArrowUp') to = tree[n - 1];
    else if (key === 'Home') to = tree[0];
    else if (key === 'End') to = tree[tree.length - 1];
    else if (key === 'ArrowRight') to = tree[n + 1] && level(tree[n + 1]) > level(row) ? tree[n + 1] : null;
    else if (key === 'ArrowLeft') to = [...tree].slice(0, n).reverse().find(e => level(e) < level(row));
  }
  if (to) { event.preventDefault(); go(to); }
});
)js";

} // namespace tool

#endif
