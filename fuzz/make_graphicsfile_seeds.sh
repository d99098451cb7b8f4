#!/usr/bin/env bash
# Writes the seeds of the graphics-file fuzz target: the MessagePack bodies
# of a few saved figures and variables (the 40-byte header taken off, the
# body decompressed when the header says it is compressed).
#   make_graphicsfile_seeds.sh <sgsh> <out folder>
set -euo pipefail
sgsh=$1 out=$2
mkdir -p "$out"
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
cat >"$tmp/make.sg" <<SG
f = figure; a = axes(f); line(a, 'XData', 1:3, 'YData', [1 3 2], 'Color', 'red');
savefig(f, '$tmp/small.fig')
g = figure; set(g, 'defaultLineLineWidth', 2); g.Theme = 'dark'; g.UserData = struct('k', {1, 'two'});
b = axes(g); cm = contextmenu(g); b.Title.String = 'title';
line(b, 'UIContextMenu', cm, 'Tag', 'menu line'); p = group(b); line(p, 'Marker', 'o');
text(b, 'String', 'text'); patch(b, 'XData', [0 1 1], 'YData', [0 0 1]);
savefig(g, '$tmp/full.fig')
h = findobj(g, 'Type', 'line'); c = {cm, 'menu'}; n = 3;
save('$tmp/vars.fig', 'h', 'c', 'n')
d = figure; l = line(axes(d)); q = addprop(l, 'Note'); l.Note = {'x', 3}; q.Hidden = true;
q.Resettable = false; q.DeepCopy = true; addprop(l, 'Plain');
savefig(d, '$tmp/dynamic.fig')
SG
"$sgsh" "$tmp/make.sg" >/dev/null
for name in small full vars dynamic; do
  file="$tmp/$name.fig"
  flags=$(od -An -tu4 -j12 -N4 "$file" | tr -d ' ')
  tail -c +41 "$file" >"$tmp/$name.body"
  if [ $((flags & 1)) -eq 1 ]; then zstd -q -d -c "$tmp/$name.body" >"$out/$name"; else cp "$tmp/$name.body" "$out/$name"; fi
done
