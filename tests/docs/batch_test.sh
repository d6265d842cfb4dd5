#!/usr/bin/env bash
# Runs the commands of docs/batch.md in small, in the present folder: batch_test.sh ZELVIEWER FOLDER_OF_THE_SCRIPTS
set -euo pipefail

PATH=$(dirname "$1"):$PATH
scripts=$2
fail() {
    echo "$1" >&2
    exit 1
}
files_in() { find "$1" -type f | wc -l; }

rm -rf ./*
mkdir -p stacks
for name in first second 'a third'; do # pictures are images, too
    zelviewer --save-view "stacks/$name.tif" --windows xy
done
echo 'no image' > stacks/broken.tif

make_figures() {
    mkdir -p figures
    find stacks -name '*.tif' -print0 | xargs -0 -I {} sh -c \
        '"$0" "$1" "figures/$(basename "$1" .tif).png"' "$scripts/figure.sh" {}
}
make_figures && fail 'a stack that is none is no failure'
[[ $(files_in figures) -eq 3 ]] || fail 'not all figures were made'
before=$(stat -c %Y.%i figures/*)
rm stacks/broken.tif figures/second.png
make_figures || fail 'what is there already is a failure'
[[ $(files_in figures) -eq 3 ]] || fail 'what was missing was not made'
[[ $(stat -c %Y.%i figures/first.png) == $(sed -n 2p <<< "$before") ]] || fail 'what was there was made again'
status=0
zelviewer --save-view figures/first.png stacks/first.tif 2> /dev/null || status=$?
[[ $status -eq 2 ]] || fail "a figure that is there gives status $status"

# Two jobs of an array, as the cluster would start them.
mv figures jobs && mkdir figures
find stacks -name '*.tif' > stacks.txt
for job in 1 2; do
    SLURM_ARRAY_TASK_ID=$job SLURM_ARRAY_TASK_COUNT=2 bash "$scripts/figures.sbatch"
done
[[ $(files_in figures) -eq 3 ]] || fail 'the jobs of the array did not share the work'

find stacks -name '*.tif' -print0 | xargs -0 zelviewer --info --json > info.json
python3 -c 'import json; assert len(json.load(open("info.json"))["files"]) == 3'
