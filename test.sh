#!/usr/bin/env bash
# Installs what is missing, builds everything into build/ and runs all tests.
set -euo pipefail
cd "$(dirname "$0")"
. tools/setup.sh

need_packages "${build_packages[@]}"
build_preset default
ctest --test-dir build --output-on-failure --parallel "$(nproc)"
