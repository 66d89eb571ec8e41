#!/usr/bin/env bash
# Installs what is missing, builds, makes a demonstration drive, converts it to MDF4 and shows what
# is in the file. An argument is the length of the drive in seconds.
set -euo pipefail
cd "$(dirname "$0")"
. tools/setup.sh

seconds=${1:-60}
need_packages "${build_packages[@]}"
build_preset default zds-convert zds-inspect zds-mf4-table

out=$(mktemp -d "${TMPDIR:-/tmp}/zds-demo-XXXXXX")
echo "Making a drive of $seconds s ..."
build/bin/zds-convert --make-demo "$out" --seconds "$seconds" >/dev/null
echo "Converting it ..."
build/bin/zds-convert --quiet -o "$out" "$out/demo_drive.rld"
echo
build/bin/zds-mf4-table "$out/demo_drive.mf4"
echo
echo "Raw log:  $out/demo_drive.rld"
echo "Result:   $out/demo_drive.mf4"
