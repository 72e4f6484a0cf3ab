#!/usr/bin/env bash
# Installs what the build and the tests need from Debian's packages, when it is missing.
# Other tools pass their own package names: tools/install-deps.sh xboard xvfb
set -euo pipefail
needed=(g++ make cmake libgtest-dev)
[ $# -gt 0 ] && needed=("$@")
missing=()
for p in "${needed[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "installing: ${missing[*]}" >&2
  sudo_cmd=""
  [ "$(id -u)" -ne 0 ] && sudo_cmd="sudo"
  $sudo_cmd apt-get update -qq >&2
  DEBIAN_FRONTEND=noninteractive $sudo_cmd apt-get install -y -qq "${missing[@]}" >&2
fi
