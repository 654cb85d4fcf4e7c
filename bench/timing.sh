# SPDX-License-Identifier: GPL-3.0-or-later
# What the side-by-side bench scripts share (sourced, not run): the median of numbers on standard input, and
# a command's wall time in milliseconds.

median() { sort -n | awk '{a[NR]=$1} END {print (NR%2) ? a[(NR+1)/2] : (a[NR/2]+a[NR/2+1])/2}'; }
# Its output is dropped; its messages still show.
time_ms() { local s e; s=$(date +%s%N); "$@" > /dev/null; e=$(date +%s%N); echo $(( (e - s) / 1000000 )); }
# Its output and its messages dropped.
time_ms_silent() { local s e; s=$(date +%s%N); "$@" > /dev/null 2>&1; e=$(date +%s%N); echo $(( (e - s) / 1000000 )); }
