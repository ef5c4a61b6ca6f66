# Plots what bench/growth.cpp prints, the file `times`, to standard output.
array labels[6] = ["channels", "link groups in use, 7.1", "bands, mono", "bands, 7.1", \
                   "mono strips in a call of 128 samples", "samples in a call, mono"]
set terminal svg size 960, 600 font "sans-serif,12" background "white"
set datafile separator "\t"
set multiplot layout 2, 3 title "Nanoseconds per frame and strip"
set key top left reverse Left
set yrange [0:*]
set grid ytics
do for [panel = 0:5] {
  if (panel > 3) { set logscale x 2 } else { set xtics 1 }
  set xlabel labels[panel + 1]
  plot times index panel using 2:4 with linespoints linetype 6 title "plain loops", \
       times index panel using 2:3 with linespoints linetype 7 title "library"
  set xtics autofreq
}
unset multiplot
