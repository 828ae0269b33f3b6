#!/usr/bin/env bash
# Makes the pictures of README and docs from the sample and a simulated controller.
# usage: docs/make_pictures.sh BIN   (as build/dev/bin)
set -euo pipefail
bin=$(readlink -f "$1")
cd "$(dirname "$(readlink -f "$0")")"
place=$(mktemp -d)
export QRV_SETTINGS=$place/settings.ini XDG_STATE_HOME=$place/state XDG_RUNTIME_DIR=$place
"$bin/qrv" load ../samples/boiler_house.txt "$place/boiler_house.qrv"
"$bin/qrv_controller" --pace 38400 --moving >"$place/controller" &
controller=$!
trap 'kill "$controller"; rm -rf "$place"' EXIT
until grep -q '^Device' "$place/controller"; do
  kill -0 "$controller"
  sleep 0.1
done
mkdir -p pictures
"$bin/make_pictures" "$place/boiler_house.qrv" "$(sed -n 's/^Device //p' "$place/controller")" pictures
