#!/usr/bin/env bash
# Runs the cross-system workloads one after the other on this machine: the
# Qt 5 and GObject harnesses of the anchors folder, then sg_anchor_workloads,
# each with its checks first; then prints a table of the three and the
# ratio of ours to Qt 5.
#   run_anchors.sh <anchors folder> <sg_anchor_workloads> [runs]
# With runs > 1 the three run back to back that many times and each figure
# is the median over the runs.
set -euo pipefail
anchors=$1 port=$2 runs=${3:-1}
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT
for ((r = 1; r <= runs; ++r)); do
  for sys in qt gobject; do
    bash "$anchors/$sys/run.sh" >>"$out/results.txt"
  done
  "$port" --check
  "$port" >>"$out/results.txt"
done
echo "# $(date -u +%Y-%m-%dT%H:%M:%SZ), $runs run(s), load average $(cut -d' ' -f1-3 /proc/loadavg)"
awk '
  { v[$1, $2] = v[$1, $2] " " $3; unit[$2] = $4; if ($1 == "sg") order[++n] = $2 }
  function med(s,   a, k, i, j, t) {
    k = split(s, a, " "); if (k == 0) return "";
    for (i = 1; i <= k; ++i) for (j = i + 1; j <= k; ++j) if (a[j] + 0 < a[i] + 0) { t = a[i]; a[i] = a[j]; a[j] = t }
    return k % 2 ? a[(k + 1) / 2] : (a[k / 2] + a[k / 2 + 1]) / 2
  }
  END {
    printf "%-34s %12s %12s %12s %8s  %s\n", "workload", "qt", "gobject", "sg", "sg/qt", "unit"
    for (i = 1; i <= n; ++i) {
      w = order[i]; if (seen[w]++) continue
      q = med(v["qt", w]); g = med(v["gobject", w]); s = med(v["sg", w])
      ratio = (q != "" && q + 0 != 0) ? sprintf("%.2f", s / q) : "-"
      printf "%-34s %12s %12s %12s %8s  %s\n", w, q == "" ? "-" : q, g == "" ? "-" : g, s, ratio, unit[w]
    }
  }' "$out/results.txt"
