# shellcheck shell=bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Read by ./run and ./test: installs what is missing, configures and builds. Expects the repository as the current folder.

say() { printf '%s: %s\n' "$(basename "$0")" "$*" >&2; }

# Number of jobs to run at once.
jobs_wanted() { nproc 2>/dev/null || echo 2; }

# install_missing run|test|ci: the packages of the list that this script needs and dpkg does not know as installed.
install_missing() {
  local purpose=$1 name only rest missing=() wanted=() installed as_root=()
  while read -r name only rest; do
    case "$name" in '' | '#'*) continue ;; esac
    if [ -z "$only" ] || [ "$only" = "$purpose" ]; then
      wanted+=("$name")
    fi
  done < packaging/debian-packages.txt

  if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
    say "this is not a Debian system; packages like those in packaging/debian-packages.txt must be there already"
    return 0
  fi
  installed=$(dpkg-query --show --showformat='${Package} ${db:Status-Status}\n' "${wanted[@]}" 2>/dev/null || true)
  for name in "${wanted[@]}"; do
    grep -qx "$name installed" <<< "$installed" || missing+=("$name")
  done
  [ ${#missing[@]} -gt 0 ] || return 0

  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null || ! { [ -t 0 ] || sudo -n true 2>/dev/null; }; then
      say "missing packages; install them as root: apt-get install --no-install-recommends ${missing[*]}"
      return 1
    fi
    as_root=(sudo)
  fi
  say "installing ${missing[*]}"
  local apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -o DPkg::Lock::Timeout=300 -o Acquire::Retries=3)
  if ! "${apt[@]}" update >&2 || ! "${apt[@]}" install --yes --no-install-recommends "${missing[@]}" >&2; then
    say "the packages could not be installed; see apt-get's lines above"
    return 1
  fi
}

# configure PRESET NAME=VALUE...: only when the build folder does not stand with these values already; a change of the
# CMake files themselves is noticed by the build.
configure() {
  local preset=$1 pair stands=1 arguments=()
  shift
  [ -f "build/$preset/build.ninja" ] || stands=0
  for pair in "$@"; do
    arguments+=("-D$pair")
    grep -qs "^${pair%%=*}:[A-Z]*=${pair#*=}\$" "build/$preset/CMakeCache.txt" || stands=0
  done
  [ "$stands" = 1 ] && return 0
  if ! cmake --preset "$preset" "${arguments[@]}"; then
    say "configuring the preset $preset failed; see CMake's lines above"
    return 1
  fi
}

# build PRESET TARGET...: all targets without any.
build() {
  local preset=$1
  shift
  if ! cmake --build --preset "$preset" --parallel "$(jobs_wanted)" ${1:+--target "$@"}; then
    say "the build of the preset $preset failed; see the compiler's lines above"
    return 1
  fi
}
