// How a page of rehearsed runs looks.
#pragma once

namespace qxia {

inline constexpr const char* HtmlStyle = R"(
:root { color-scheme: light; --ink: #1d2733; --faint: #66727f; --line: #d9dfe5; --ground: #f5f7f9; }
* { box-sizing: border-box; }
body { margin: 0; padding: 28px 32px 60px; font: 14px/1.45 system-ui, "DejaVu Sans", Arial, sans-serif; color: var(--ink);
  background: var(--ground); }
h1 { font-size: 24px; margin: 0 0 4px; } h2 { font-size: 18px; margin: 36px 0 8px; }
p { margin: 4px 0; } .faint { color: var(--faint); }
.legend { margin: 14px 0 12px; display: flex; flex-wrap: wrap; gap: 8px; }
.legend span, td.cell b { display: inline-block; border-radius: 4px; padding: 1px 7px; font-weight: 600; font-size: 12px; }
.scroll { overflow-x: auto; background: #fff; border: 1px solid var(--line); border-radius: 8px; }
table.matrix { border-collapse: collapse; width: 100%; }
.matrix th, .matrix td { border-bottom: 1px solid var(--line); border-right: 1px solid var(--line); padding: 7px 9px;
  text-align: left; vertical-align: top; }
.matrix tr:last-child td, .matrix tr:last-child th { border-bottom: 0; }
.matrix thead th { background: #eef2f5; } .matrix thead a { color: inherit; }
.matrix thead th.good { background: #d8f0dd; } .matrix thead th.held { background: #fdf0c8; }
.matrix thead th.bad { background: #fbd5d3; } .matrix thead small { color: inherit; }
.matrix tbody th { position: sticky; left: 0; background: #fff; font-weight: 600; white-space: nowrap; }
.matrix small, .run small { display: block; color: var(--faint); font-size: 12px; font-weight: 400; overflow-wrap: anywhere; }
td.cell { min-width: 118px; }
.good { background: #d8f0dd; color: #14532d; } .same { background: #e0ecfa; color: #1e4273; }
.held { background: #fdf0c8; color: #6b4a00; } .bad { background: #fbd5d3; color: #8c1412; }
.none { background: #e6e9ec; color: #4b5560; }
.run { background: #fff; border: 1px solid var(--line); border-radius: 8px; padding: 14px 16px; }
.course { position: relative; height: 34px; margin: 14px 0 4px; background: #eef2f5; border-radius: 4px; }
.course i { position: absolute; top: 7px; height: 20px; min-width: 3px; border-radius: 2px; background: #4d9a63; }
.course i.bad { background: #d0453f; } .course i.restart { top: -4px; height: 42px; width: 0; min-width: 0;
  border-left: 2px dashed #6a3fb5; border-radius: 0; background: none; }
.course i.away { background: repeating-linear-gradient(45deg, #cfc5e8 0 5px, #e6e0f3 5px 10px); }
.scale { display: flex; justify-content: space-between; color: var(--faint); font-size: 12px; }
table.events, table.log { border-collapse: collapse; font-size: 13px; width: 100%; }
.events td, .log td { padding: 2px 10px 2px 0; vertical-align: top; overflow-wrap: anywhere; }
.events td:first-child, .log td:first-child, .log td:nth-child(2) { white-space: nowrap; color: var(--faint); }
.log tr.Warning td { color: #14702f; font-weight: 600; } .log tr.ERROR td { color: #b3201c; font-weight: 600; }
.events tr.restart td { color: #5a32a3; font-weight: 600; }
details { margin-top: 8px; } summary { cursor: pointer; }
ul { margin: 4px 0; padding-left: 20px; } .doubt { color: #8c1412; }
)";

}  // namespace qxia
