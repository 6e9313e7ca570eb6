# docs/growth.svg from docs/growth.dat; `script/bench --picture` makes both.
set terminal svg size 800,560 background rgb "white"
set output "docs/growth.svg"
set title "An update of a file of version 3.11: whole process, in memory"
set xlabel "lines"
set ylabel "milliseconds"
set logscale xy
set grid
set key left top
set datafile missing "?"
file = "docs/growth.dat"
plot file using 1:2 with linespoints linewidth 3 title "tolvane update, all steps", \
     file using 1:3 with linespoints title "tolvane update, settings behind the mappings", \
     file using 1:4 with linespoints title "floor: read and write alone", \
     file using 1:5 with linespoints title "perl -i, 200 edits", \
     file using 1:6 with linespoints title "awk, 200 edits", \
     file using 1:7 with linespoints title "sed -i, 200 edits", \
     file using 1:8 with linespoints title "Python configparser, 200 edits", \
     file using 1:9 with linespoints title "crudini --merge, 200 edits", \
     file using 1:10 with linespoints title "augtool, 200 edits", \
     file using 1:11 with linespoints title "git config, 200 calls"
