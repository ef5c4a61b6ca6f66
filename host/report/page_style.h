// What a report looks like: on a telephone, on a desk, in the dark and on paper. A table that is
// wider than the page has a shade where it goes on.

#pragma once

#include <string_view>

namespace channelstrip::host {

inline constexpr std::string_view kPageStyle = R"(
:root{color-scheme:light dark;--paper:#fff;--ink:#222;--soft:#666;--rule:#ddd;--panel:#f5f6f7;
--good:#00714f;--bad:#b3261e}
@media (prefers-color-scheme:dark){:root{--paper:#161616;--ink:#ddd;--soft:#a3a3a3;--rule:#383838;
--panel:#202124;--good:#4cc29a;--bad:#ff8a80}}
*{box-sizing:border-box}
body{margin:0 auto;max-width:72rem;padding:1rem;background:var(--paper);color:var(--ink);
font:1rem/1.5 system-ui,sans-serif;overflow-wrap:anywhere}
h1{margin:.5rem 0 0;font-size:1.6rem;line-height:1.25}
h2{margin:2.5rem 0 .75rem;font-size:1.2rem;border-bottom:1px solid var(--rule)}
p{margin:.5rem 0;max-width:44rem}
.soft{color:var(--soft)}
.verdict{margin:1rem 0;padding:.6rem 1rem;max-width:none;background:var(--panel);
border-left:.3rem solid var(--soft)}
.verdict.good{border-color:var(--good)}
.verdict.bad{border-color:var(--bad)}
.verdict b{color:var(--soft)}
.verdict.good b{color:var(--good)}
.verdict.bad b{color:var(--bad)}
.glance{display:grid;grid-template-columns:repeat(auto-fit,minmax(9.5rem,1fr));gap:.75rem;margin:0}
.glance div{padding:.6rem .9rem;background:var(--panel)}
.glance dt{color:var(--soft);font-size:.85rem}
.glance dd{margin:0;font-size:1.25rem;font-variant-numeric:tabular-nums;overflow-wrap:normal}
.glance small{color:var(--soft);font-size:.85rem}
.charts{display:grid;grid-template-columns:repeat(auto-fill,minmax(min(100%,30rem),1fr));
gap:1.25rem}
.charts>*{margin:0;min-width:0}
h3{margin:1.5rem 0 .5rem;font-size:1rem}
.chart{display:block;width:100%;height:auto}
.chart .line.guide{stroke-dasharray:none;stroke-width:1.5px}
.tables{columns:30rem;column-gap:1.25rem}
.wide{overflow-x:auto;margin:.75rem 0;
background:linear-gradient(to left,var(--paper) 1rem,transparent) right/2rem 100% no-repeat local,
linear-gradient(to left,var(--rule),transparent) right/1rem 100% no-repeat}
.tables .wide{margin:0;padding:.75rem 0;break-inside:avoid}
table{border-collapse:collapse;font-variant-numeric:tabular-nums;overflow-wrap:normal}
caption{padding-bottom:.25rem;text-align:left;font-weight:600}
th,td{padding:.3rem .9rem .3rem 0;border-bottom:1px solid var(--rule);text-align:left;
vertical-align:top}
thead th{color:var(--soft);font-weight:400;font-size:.85rem;vertical-align:bottom}
tbody th{font-weight:400;white-space:nowrap}
.numbers td,.tables td:nth-child(2),section>.wide td:not(:nth-child(2),:last-child)
{white-space:nowrap}
.numbers td,.numbers thead th:not(:first-child){text-align:right;
padding:.3rem 0 .3rem 1.2rem}
@media (max-width:30rem){.glance dd{font-size:1.1rem}table{font-size:.85rem}
.numbers tbody th{white-space:normal}
.numbers td,.numbers thead th:not(:first-child){padding-left:.7rem}}
footer{margin-top:3rem;color:var(--soft);font-size:.85rem}
@media print{body{max-width:none;padding:0;font-size:10pt}
figure,table,.glance,.verdict{break-inside:avoid}h2{break-after:avoid}.wide{overflow:visible}}
)";

}  // namespace channelstrip::host
