#pragma once

#include <string_view>

/// The fixed parts of the HTML report: one page that needs nothing else, neither a network nor a script to be
/// read.
namespace pluvo::runs {

/// Sizes are in rem, so that the reader's own text size holds. Where the page is narrow, rows of tables stand
/// as lines below each other, each value with its name. Old and new text are told apart by line and sign as
/// well as by colour. Blocks out of sight cost nothing until they are scrolled to, which keeps ten thousand
/// quick.
inline constexpr std::string_view kReportHead = R"html(
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; style-src 'unsafe-inline'; script-src 'unsafe-inline'">
<title>PLUVO report</title>
<style>
:root { color-scheme: light dark; --ink: #1b1b1f; --soft: #55555f; --paper: #fff; --panel: #f4f4f7; --line: #c9c9d2;
  --old: #8c1d18; --oldpaper: #fdecea; --new: #0b5a2b; --newpaper: #e3f5e9; --mark: #ffe680; --bad: #8c1d18; --focus: #1f5fbf; }
@media screen and (prefers-color-scheme: dark) { :root { --ink: #ececf1; --soft: #b4b4c0; --paper: #17171b; --panel: #222229;
  --line: #4a4a56; --old: #ffb4ab; --oldpaper: #4a1512; --new: #9be2b4; --newpaper: #0f3b20; --mark: #6b5a00; --bad: #ffb4ab; --focus: #8ab4f8; } }
* { box-sizing: border-box; }
body { margin: 0 auto; max-width: 72rem; padding: 1.5rem; font: 1.0625rem/1.55 system-ui, "Segoe UI", "DejaVu Sans", sans-serif;
  color: var(--ink); background: var(--paper); }
h1 { font-size: 1.6rem; margin: 0 0 .25rem; }
h2 { font-size: 1.2rem; margin: 2rem 0 .5rem; }
p { margin: .25rem 0; }
.soft { color: var(--soft); }
code, .block { font-family: ui-monospace, "DejaVu Sans Mono", monospace; font-size: .95rem; overflow-wrap: anywhere; }
dl.totals { display: flex; flex-wrap: wrap; gap: .5rem 2rem; margin: 1rem 0; padding: .75rem 1rem; background: var(--panel); border-radius: .5rem; }
dl.totals div { min-width: 6rem; } dt { color: var(--soft); } dd { margin: 0; font-size: 1.35rem; font-weight: 600; }
table { border-collapse: collapse; width: 100%; } th, td { text-align: left; padding: .35rem .75rem .35rem 0; border-bottom: 1px solid var(--line); vertical-align: top; overflow-wrap: break-word; }
td:first-child { min-width: min(18rem, 35vw); overflow-wrap: anywhere; }
td.n, th.n { text-align: right; white-space: nowrap; padding-right: 1.5rem; }
.bad { color: var(--bad); font-weight: 600; }
nav { display: flex; flex-wrap: wrap; gap: .5rem 1rem; align-items: center; margin: 1rem 0; }
input, button { font: inherit; color: inherit; background: var(--paper); border: 1px solid var(--soft); border-radius: .375rem; padding: .3rem .7rem; }
button { cursor: pointer; }
:focus-visible { outline: 3px solid var(--focus); outline-offset: 2px; }
details { border: 1px solid var(--line); border-radius: .5rem; margin: .5rem 0; }
summary { cursor: pointer; padding: .5rem .75rem; font-weight: 600; overflow-wrap: anywhere; }
summary .soft { font-weight: 400; }
ol { list-style: none; margin: 0; padding: 0 .75rem .5rem; }
li { border-top: 1px solid var(--line); padding: .5rem 0; content-visibility: auto; contain-intrinsic-size: auto 5rem; }
.block { margin: .15rem 0; padding: .2rem .5rem; border-left: .3rem solid var(--line); white-space: pre-wrap; }
.block.old { border-color: var(--old); } .block.new { border-color: var(--new); }
del { color: var(--old); background: var(--oldpaper); text-decoration: line-through; }
ins { color: var(--new); background: var(--newpaper); text-decoration: underline; }
mark { color: inherit; background: var(--mark); text-decoration: underline dotted; }
@media screen and (max-width: 44rem) { body { padding: 1rem; } table, tbody, tr, td { display: block; } thead { position: absolute; width: 1px; height: 1px; overflow: hidden; clip-path: inset(50%); }
  tr { padding: .5rem 0; border-bottom: 1px solid var(--line); } td, td.n { border: 0; padding: 0; text-align: left; }
  td:first-child { min-width: 0; font-weight: 600; } td[data-name] { display: inline-block; margin-right: 1.25rem; }
  td[data-name]::before { content: attr(data-name) " "; color: var(--soft); } }
@media print { :root { font-size: 75%; } body { max-width: none; padding: 0; font-size: 10pt; } nav { display: none; } details { border: 0; break-inside: auto; }
  dl.totals { gap: .5rem 1.25rem; } h2, summary { break-after: avoid; } summary { list-style: none; padding-left: 0; } ol { padding: 0; } tr, li { break-inside: avoid; }
  li { content-visibility: visible; } del, ins, mark { print-color-adjust: exact; -webkit-print-color-adjust: exact; } }
</style>
</head>
<body>
)html";

/// Of a page without blocks.
inline constexpr std::string_view kPageTail = "\n</body>\n</html>\n";

inline constexpr std::string_view kReportTail = R"html(
<script>
"use strict";
const files = [...document.querySelectorAll("details")];
const setAll = open => files.forEach(file => { if (!file.hidden) file.open = open; });
document.getElementById("open").onclick = () => setAll(true);
document.getElementById("close").onclick = () => setAll(false);
const filter = document.getElementById("filter");
filter.oninput = () => {
  const wanted = filter.value.toLowerCase();
  let shown = 0;
  for (const file of files) {
    file.hidden = !file.firstElementChild.textContent.toLowerCase().includes(wanted);
    shown += !file.hidden;
  }
  document.getElementById("shown").textContent = wanted ? shown + " of " + files.length + " documents" : "";
};
document.addEventListener("keydown", event => {
  if (event.target === filter) { if (event.key === "Escape") { filter.value = ""; filter.oninput(); } return; }
  if (event.ctrlKey || event.altKey || event.metaKey) return;
  if (event.key === "/") { event.preventDefault(); filter.focus(); return; }
  if (event.key !== "j" && event.key !== "k") return;
  const seen = files.filter(file => !file.hidden).map(file => file.firstElementChild);
  const at = seen.indexOf(document.activeElement);
  const next = seen[event.key === "j" ? at + 1 : Math.max(at - 1, 0)];
  if (next) next.focus();
});
let closed = [];
addEventListener("beforeprint", () => { closed = files.filter(file => !file.open); closed.forEach(file => file.open = true); });
addEventListener("afterprint", () => closed.forEach(file => file.open = false));
</script>
</body>
</html>
)html";

}  // namespace pluvo::runs
