// What a page of rehearsed runs has besides the style of all pages: the matrix, and the course of a run.
#pragma once

namespace qxia {

inline constexpr const char* RehearsalStyle = R"css(
body { max-width: 120rem; }
.matrix { font-size: .86rem; } .matrix th, .matrix td { border-right: 1px solid var(--line); padding: .35rem .5rem; }
.matrix td { min-width: 6.8rem; } .matrix .badge { padding: 0 .45rem; font-size: .78rem;
  background: color-mix(in srgb, var(--c) 14%, transparent); }
.matrix thead th { color: var(--c, var(--ink)); vertical-align: bottom; }
.matrix tbody th { position: sticky; left: 0; background: var(--sheet); color: var(--ink); white-space: nowrap; }
.matrix small { display: block; margin-top: .15rem; color: var(--soft); font-weight: 400; overflow-wrap: anywhere; }
.course { position: relative; height: 34px; margin: 14px 0 4px; background: var(--ground); border-radius: 4px; }
.course i { position: absolute; top: 7px; height: 20px; min-width: 3px; border-radius: 2px; background: var(--c); }
.course i.restart { top: -4px; height: 42px; width: 0; min-width: 0; border-left: 2px dashed var(--wait); background: none; }
.course i.away { opacity: .4; background: var(--wait); }
.scale { display: flex; justify-content: space-between; color: var(--soft); font-size: .8rem; }
details { margin-top: .5rem; } tr.restart td { color: var(--wait); } td { overflow-wrap: anywhere; }
ul.failed { color: var(--c); } ul { margin: .3rem 0; padding-left: 1.3rem; }
)css";

}  // namespace qxia
