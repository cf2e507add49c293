#!/usr/bin/env bash
# Installs the Debian packages the build needs (the studio's Qt included) and the decimal-comma
# locale the tests use. Does nothing when everything is already there. Run as root (or with sudo available).
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config locales python3 help2man dpkg-dev file
  libxml2-utils
  libpugixml-dev libinih-dev libcli11-dev libical-dev nlohmann-json3-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  qt6-base-dev fonts-dejavu-core
)
# Extra packages for one task, e.g. the screenshot script's X server and tools.
read -r -a extra <<<"${KOLVANE_EXTRA_PACKAGES:-}"
packages+=("${extra[@]}")

sudo_cmd=()
if [[ $(id -u) -ne 0 ]]; then
  sudo_cmd=(sudo)
fi

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done

if ((${#missing[@]})); then
  echo "setup: installing ${missing[*]}"
  export DEBIAN_FRONTEND=noninteractive
  "${sudo_cmd[@]}" apt-get update -qq
  "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi

# Locale tests need a locale whose decimal separator is a comma.
if ! locale -a 2>/dev/null | grep -qiE '^de_DE\.utf-?8$'; then
  echo "setup: generating de_DE.UTF-8"
  if [[ -f /etc/locale.gen ]] && grep -qE '^# *de_DE.UTF-8 UTF-8' /etc/locale.gen; then
    "${sudo_cmd[@]}" sed -i -E 's/^# *(de_DE.UTF-8 UTF-8)/\1/' /etc/locale.gen
  elif ! grep -qE '^de_DE.UTF-8 UTF-8' /etc/locale.gen 2>/dev/null; then
    echo 'de_DE.UTF-8 UTF-8' | "${sudo_cmd[@]}" tee -a /etc/locale.gen >/dev/null
  fi
  "${sudo_cmd[@]}" locale-gen >/dev/null
fi
