#!/usr/bin/env bash
# Prints the path of a real airborne scan. The first call takes it from the CRAN source package lidR, which needs a network.
set -euo pipefail
cd "$(dirname "$0")/.."
deps=build/deps
wanted=lidR/inst/extdata/Megaplot.laz
sample=$deps/$(basename "$wanted")
mkdir -p "$deps"
if [ ! -s "$sample" ]; then
  folder=$(mktemp -d)
  trap 'rm -rf "$folder"' EXIT
  Rscript -e 'args <- commandArgs(TRUE); p <- download.packages("lidR", destdir = args[1], type = "source", quiet = TRUE); if (nrow(p) == 0) quit(status = 1)' \
    "$folder" >&2 || { echo "fetch_sample: the package lidR could not be downloaded from CRAN" >&2; exit 1; }
  tar -xzf "$folder"/lidR_*.tar.gz -C "$folder" "$wanted" || { echo "fetch_sample: the package holds no $wanted" >&2; exit 1; }
  mv "$folder/$wanted" "$sample"
fi
echo "$sample"
