#!/usr/bin/env bash
# Installs every Debian package the console, the simulated host, the tests,
# the benchmarks, the Debian packages (scripts/package.sh) and the lab need.
# Safe to run again; it installs only what is missing.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config clang ccache
  libncurses-dev ncurses-base ncurses-term
  libpam0g-dev libpam-wrapper libpam-modules libcrypt-dev
  libvterm-dev
  nlohmann-json3-dev
  libnl-3-dev libnl-route-3-dev libsystemd-dev libvirt-dev libssl-dev libpcsclite-dev
  systemd-journal-remote
  libgtest-dev libgmock-dev googletest
  libbenchmark-dev dialog
  less locales
  debhelper dpkg-dev fakeroot scdoc lintian groff-base man-db systemd
  # The lab (scripts/lab.sh): the host's services, the peer's servers, the
  # tools its tests use. dnsmasq-base has no service that would start; pcscd's
  # is not started without systemd (the lab's smart-card test runs its own).
  iproute2 util-linux dbus dnsmasq-base python3-dbusmock iputils-ping pamtester
  libvirt-clients pcscd
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done

if [ "${#missing[@]}" -gt 0 ]; then
  if [ "$(id -u)" -ne 0 ]; then SUDO=sudo; else SUDO=; fi
  export DEBIAN_FRONTEND=noninteractive
  $SUDO apt-get update -qq
  $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

# The console sets the locale en_US.UTF-8; make sure it exists.
if ! locale -a 2>/dev/null | grep -qi '^en_US\.utf-\?8$'; then
  if [ "$(id -u)" -ne 0 ]; then SUDO=sudo; else SUDO=; fi
  $SUDO sed -i 's/^# *\(en_US.UTF-8 UTF-8\)/\1/' /etc/locale.gen 2>/dev/null || true
  grep -q '^en_US.UTF-8 UTF-8' /etc/locale.gen 2>/dev/null || echo 'en_US.UTF-8 UTF-8' | $SUDO tee -a /etc/locale.gen >/dev/null
  $SUDO locale-gen >/dev/null
fi
