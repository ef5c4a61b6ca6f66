#include "chart.h"

namespace channelstrip::host {

// Hues: M. Okabe, K. Ito, "Color Universal Design", 2008, which people with any kind of colour
// vision can tell apart; sky blue and orange are darkened to a contrast of 3 on white. Each series
// also has a dash of its own. A renderer that doesn't know a selector or property keeps the light
// colours.
std::string_view chart_css() {
  return R"(.chart{font:14px sans-serif}
.chart text{fill:#222;stroke:none}
.chart .title{font-size:16px;font-weight:bold}
.chart .paper{fill:#fff;stroke:none}
.chart .frame{fill:none;stroke:#666}
.chart .grid{fill:none;stroke:#ddd}
.chart .mark{fill:none;stroke:#666;stroke-dasharray:3 3}
.chart .halo{stroke:#fff;stroke-width:4px;stroke-linejoin:round;paint-order:stroke}
.chart .main{fill:#222;stroke:#222}
.chart .guide{fill:#777;stroke:#777;stroke-dasharray:3 3}
.chart .s1{fill:#0072b2;stroke:#0072b2}
.chart .s2{fill:#d55e00;stroke:#d55e00;stroke-dasharray:8 3}
.chart .s3{fill:#009e73;stroke:#009e73;stroke-dasharray:3 2}
.chart .s4{fill:#cc79a7;stroke:#cc79a7;stroke-dasharray:10 3 2 3}
.chart .s5{fill:#3b97d3;stroke:#3b97d3;stroke-dasharray:14 3}
.chart .s6{fill:#c28600;stroke:#c28600;stroke-dasharray:5 4}
.chart .s7{fill:#0072b2;stroke:#0072b2;stroke-dasharray:1 3}
.chart .s8{fill:#d55e00;stroke:#d55e00;stroke-dasharray:1 3}
.chart .line{fill:none;stroke-width:2px;stroke-linejoin:round}
.chart .line.main{stroke-width:3px}
.chart .line.guide{stroke-width:1px}
.chart .dashed{stroke-dasharray:9 4}
.chart .area{fill-opacity:.5;stroke-width:1px;stroke-dasharray:none;stroke-linejoin:round}
@media (prefers-color-scheme:dark){
.chart text{fill:#ddd}
.chart .paper{fill:#161616}
.chart .frame,.chart .mark{stroke:#999}
.chart .grid{stroke:#383838}
.chart .halo{stroke:#161616}
.chart .main{fill:#eee;stroke:#eee}
.chart .guide{fill:#999;stroke:#999}
.chart .s1,.chart .s7{fill:#56b4e9;stroke:#56b4e9}
.chart .s5{fill:#f0e442;stroke:#f0e442}
.chart .s6{fill:#e69f00;stroke:#e69f00}
.chart .line{fill:none}
}
)";
}

}  // namespace channelstrip::host
