#!/usr/bin/env bash
# Prints the licence of Kelvra and those of what is linked into it or compiled from headers.
set -euo pipefail
cd "$(dirname "$0")/.."
cat LICENSE
cat <<'END'

The module contains LASlib (GNU Lesser General Public License 2.1, see /usr/share/common-licenses/LGPL-2.1) and LASzip
(Apache License 2.0, see /usr/share/common-licenses/Apache-2.0) by rapidlasso GmbH, compiled from the R package rlas on
CRAN. Kelvra's own repository holds what is needed to link it against another LASlib.
END
for package in libimgui-dev libstb-dev libcli11-dev nlohmann-json3-dev libxxhash-dev; do
  notice=/usr/share/doc/$package/copyright
  if [ -f "$notice" ]; then printf '\n== %s\n\n' "$package" && cat "$notice"; fi
done
