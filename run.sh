#!/usr/bin/env bash
# Installs what is missing, builds, and works with a simulated logger: in a window where there is a
# display, else unattended, with every step judged. "--unattended" does the latter in any case.
set -euo pipefail
cd "$(dirname "$0")"
. tools/setup.sh

need_packages "${build_packages[@]}"
build_preset default zds zds-journey zds-logger-sim zds-convert zds-inspect zds-mf4-table

out=$(mktemp -d "${TMPDIR:-/tmp}/zds-demo-XXXXXX")
if [ "${1:-}" != --unattended ] && [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    build/bin/zds-convert --make-demo "$out" --seconds 60 >/dev/null
    build/bin/zds-inspect --save-as "$out/logger.zdc" "$out/demo_drive.rld"
    address=127.0.0.1
    build/bin/zds-logger-sim --address "$address" --config "$out/logger.zdc" --log-dir "$out" &
    logger=$!
    trap 'kill "$logger" 2>/dev/null || true' EXIT
    settings=build/bin/usr_settings.ini
    others=$(grep -viE '^ *(\[general\]|ip_address *[=:])' "$settings" 2>/dev/null || true)
    printf '[general]\nip_address = %s\n%s\n' "$address" "$others" >"$settings"
    echo "Press Connect: a simulated logger listens on $address. Its logs are in $out."
    build/bin/zds
else
    status=0
    QT_QPA_PLATFORM=offscreen build/bin/zds-journey "$out" || status=$?
    if [ "$status" -eq 0 ]; then
        echo
        build/bin/zds-mf4-table "$out"/event/*.mf4
    fi
    echo
    echo "Pictures, log and results: $out"
    exit "$status"
fi
