#!/usr/bin/env bash
# Makes the pictures of README and docs from the sample. usage: docs/make_pictures.sh BIN   (as build/dev/bin)
set -euo pipefail
bin=$(readlink -f "$1")
cd "$(dirname "$(readlink -f "$0")")"
place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT
export QRV_SETTINGS=$place/settings.ini XDG_STATE_HOME=$place/state XDG_RUNTIME_DIR=$place
"$bin/qrv" load ../samples/boiler_house.txt "$place/boiler_house.qrv"
mkdir -p pictures
"$bin/make_pictures" "$place/boiler_house.qrv" pictures
