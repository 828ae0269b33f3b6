#!/usr/bin/env bash
# Installs what packages.txt lists and this machine lacks. Sourced by ./run and ./check.
set -euo pipefail

packagesWanted() { sed -e 's/#.*//' -e '/^[[:space:]]*$/d' "$1"; }

installPackages() {
  local list=$1 missing=() package
  while read -r package; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
  done < <(packagesWanted "$list")
  [ ${#missing[@]} -eq 0 ] && return 0
  echo "Installing: ${missing[*]}"
  local asRoot=()
  if [ "$(id -u)" -ne 0 ]; then
    if command -v sudo >/dev/null; then
      asRoot=(sudo)
    else
      echo "Missing packages, and no right to install them. As root: apt-get install ${missing[*]}" >&2
      return 1
    fi
  fi
  "${asRoot[@]}" apt-get update -qq
  "${asRoot[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}
