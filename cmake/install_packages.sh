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

# Whether an installation was broken off, as far as any user may see it.
someHalfDone() {
  local states
  states=$(dpkg-query -W -f='${db:Status-Status}\n')
  grep -qxE 'half-installed|unpacked|half-configured|triggers-(awaited|pending)' <<<"$states"
}

# asRoot COMMAND...: quietly. What it says of trouble is kept in `said`, in English whatever the user's language: the
# rules below read it. Another installation that is at work is waited for: apt-get by itself doesn't, and can be told to
# wait for only one of its locks; dpkg doesn't wait, either.
waitsAtMost=60  # of five seconds
# isLocked SAID: in apt-get's words or in dpkg's.
isLocked() { [[ $1 == *"Could not get lock"* || $1 == *"frontend lock was locked by another process"* ]]; }
asRoot() {
  local waits=0
  while true; do
    said=$("${rootBy[@]}" env LC_ALL=C DEBIAN_FRONTEND=noninteractive "$@" 2>&1 >/dev/null </dev/null) && return 0
    isLocked "$said" && [ $waits -lt $waitsAtMost ] || return 1
    [ $waits -gt 0 ] || echo "Another installation is at work on this machine: waiting for its end"
    waits=$((waits + 1))
    sleep 5
  done
}

# An installation that broke off half way stops every other one. Finished as apt-get asks for it; files that an
# administrator has changed stay as they are.
finishBrokenOff() {
  echo "An earlier installation of packages was broken off. Finishing it: dpkg --configure -a"
  asRoot dpkg --configure -a --force-confdef --force-confold
}

# adviceOn TROUBLE: what helps, by what apt-get said.
adviceOn() {
  local lacking then="; then run this again"
  lacking=$(sed -n -e 's/^E: Unable to locate package //p' \
    -e "s/^E: Package '\(.*\)' has no installation candidate$/\1/p" <<<"$1")
  # First, for what was interrupted stands above the lock that kept it from being finished.
  ! isLocked "$1" || { echo "Another installation is still at work. Let it end$then" && return; }
  case $1 in
    *"dpkg was interrupted"* | *"dpkg returned an error"*)
      echo "As root: dpkg --configure -a, and mend what it names$then" ;;
    *"fix-broken install"*) echo "Packages on this machine lack others. As root: apt-get --fix-broken install$then" ;;
    *"Failed to fetch"* | *"Could not resolve"* | *"Could not connect"*)
      echo "Servers of packages can't be reached. See to the network, or to apt's proxy$then" ;;
    *"enough free space"* | *"No space left"*) echo "The disk is full. Make room$then" ;;
    *) [ -z "$lacking" ] || echo "This system has no package ${lacking//$'\n'/, }. The names are those of Debian 12" ;;
  esac
}

# aptInstalls NAME...: tells what stops it, and how to go on.
aptInstalls() {
  local unread="" trouble install=(asRoot apt-get install -y -qq --no-install-recommends "$@")
  # Lists that can't be read anew may still do: whether they do shows in the installation.
  asRoot apt-get update -qq && [[ $said != *"Failed to fetch"* ]] || unread=$said$'\n'
  "${install[@]}" && return 0
  trouble=$unread$said
  if [[ $said == *"dpkg was interrupted"* ]]; then
    if finishBrokenOff; then
      "${install[@]}" && return 0
      trouble=$unread$said
    else
      trouble+=$'\n'$said
    fi
  fi
  if [ -z "$(packagesMissing "$@")" ]; then
    printf '%s\n' "$trouble" "Another package of this machine has a fault; what is needed here is installed." >&2
    return 0
  fi
  printf '%s\n' "$trouble" "The packages could not be installed; apt-get's reason stands above." >&2
  adviceOn "$trouble" >&2
  echo "By hand, as root: apt-get install $*" >&2
  return 1
}

# installPackages LIST [run|check]
installPackages() {
  local wanted missing rootBy=() said="" first=""
  mapfile -t wanted < <(packagesWanted "$@")
  if ! command -v dpkg-query >/dev/null; then
    echo "This machine has no Debian packages. Needed are, by Debian's names: ${wanted[*]}" >&2
    return 0
  fi
  mapfile -t missing < <(packagesMissing "${wanted[@]}")
  [ ${#missing[@]} -eq 0 ] && return 0
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
      # What was broken off before stops every installation until it is finished.
      ! someHalfDone || first="dpkg --configure -a && "
      echo "Packages are missing, and only root may install them. As root: ${first}apt-get install ${missing[*]}" >&2
      return 1
    fi
    rootBy=(sudo)
  fi
  echo "Installing: ${missing[*]}"
  aptInstalls "${missing[@]}"
}
