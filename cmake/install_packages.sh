#!/usr/bin/env bash
# Installs what packages.txt lists and this machine lacks. Sourced by ./run and ./check.
set -euo pipefail

# packagesWanted LIST [run|check]: the names, one a line; for run only those above the heading of ./check's own.
packagesWanted() {
  local list=$1
  if [ "${2:-check}" = run ]; then
    sed -e '/^# for .\/check alone/,$d' "$list"
  else
    cat "$list"
  fi | sed -e 's/#.*//' -e 's/[[:space:]]//g' -e '/^$/d'
}

# packagesMissing NAME...: those that are not installed, one a line. One question to the machine for all of them.
packagesMissing() {
  local known
  known=$(dpkg-query -W -f='${Package} ${db:Status-Status}\n' "$@" 2>/dev/null || true)
  printf '%s\n' "$@" | grep -vxF -f <(sed -n 's/ installed$//p' <<<"$known") || true
}

# installPackages LIST [run|check]
installPackages() {
  local wanted missing asRoot=()
  mapfile -t wanted < <(packagesWanted "$@")
  if ! command -v dpkg-query >/dev/null; then
    echo "This machine has no Debian packages. Needed are, by Debian's names: ${wanted[*]}" >&2
    return 0
  fi
  mapfile -t missing < <(packagesMissing "${wanted[@]}")
  [ ${#missing[@]} -eq 0 ] && return 0
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
      echo "Packages are missing, and only root may install them. As root: apt-get install ${missing[*]}" >&2
      return 1
    fi
    asRoot=(sudo)
  fi
  echo "Installing: ${missing[*]}"
  "${asRoot[@]}" apt-get update -qq &&
    "${asRoot[@]}" env DEBIAN_FRONTEND=noninteractive \
      apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null && return 0
  echo "The packages could not be installed; apt-get's reason stands above. As root: apt-get install ${missing[*]}" >&2
  return 1
}
