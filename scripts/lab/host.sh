#!/usr/bin/env bash
# The lab host, run by scripts/lab.sh inside the host's own network, mount and
# UTS namespaces: puts the lab root's files where the host's services look for
# them, starts the system bus, systemd-networkd and the stand-ins for systemd
# and logind, runs the command with the console's environment, and ends them
# all again.
#   host.sh CMD [ARGS...]     (LAB_DIR, TESK_ROOT and the rest from lab.sh)
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
source "$here/common.sh"

# Everything below mounts over the host's files: only ever in the lab host's
# network namespace and in a mount namespace other than lab.sh's (its parent).
[ -n "${LAB_HOST_NETNS:-}" ] && [ /proc/self/ns/net -ef "$LAB_HOST_NETNS" ] &&
  ! [ /proc/self/ns/mnt -ef "/proc/$PPID/ns/mnt" ] ||
  fail "host.sh runs only in the lab's own namespaces, started by scripts/lab.sh"

root=$TESK_ROOT
log=$LAB_DIR/log
daemons=()

stop() {
  local status=$? pid
  trap '' INT TERM HUP
  for pid in $watched "${daemons[@]}"; do
    kill -TERM "$pid" 2>/dev/null || true
  done
  for pid in $watched "${daemons[@]}"; do
    WaitEnded "$pid" 10 || kill -KILL "$pid" 2>/dev/null || true
  done
  wait 2>/dev/null || true
  exit "$status"
}
trap stop EXIT
trap 'exit 130' INT
trap 'exit 143' TERM
trap 'exit 129' HUP

OnBus() {
  busctl call org.freedesktop.DBus /org/freedesktop/DBus org.freedesktop.DBus \
    NameHasOwner s "$1" | grep -q true
}

# The namespace's own sysfs shows its own links, so networkd finds them
# without udev. The host's runtime folders are the lab's; mount points that
# the machine lacks are made (empty) first.
mount -t sysfs -o ro sysfs /sys
mkdir -p /run/systemd /run/dbus
mount -t tmpfs -o mode=0755 tmpfs /run/systemd
mount -t tmpfs -o mode=0755 tmpfs /run/dbus
mkdir /run/systemd/network
mount --bind "$root/run/systemd/network" /run/systemd/network
# pcsc-lite's socket folder: a pcscd started in the lab listens in the lab root.
mkdir -p /run/pcscd
mount --bind "$root/run/pcscd" /run/pcscd
mount --bind "$root/etc/systemd/network" /etc/systemd/network
mount --bind "$root/etc/resolv.conf" /etc/resolv.conf
[ ! -e /etc/machine-id ] || mount --bind "$root/etc/machine-id" /etc/machine-id
hostname -F "$root/etc/hostname"
ip link set lo up

export DBUS_SYSTEM_BUS_ADDRESS=unix:path=/run/dbus/system_bus_socket
dbus-daemon --config-file="$here/bus.conf" --nofork --nopidfile >"$log/dbus.log" 2>&1 &
daemons+=($!)
Ready "the system bus" $! "$log/dbus.log" OnBus org.freedesktop.DBus

"$NETWORKD" >"$log/networkd.log" 2>&1 &
daemons+=($!)
Ready systemd-networkd $! "$log/networkd.log" OnBus org.freedesktop.network1

for template in systemd logind; do
  /usr/bin/python3 -m dbusmock --template "$template" -l "$LAB_DIR/bus/$template.calls" \
    >"$log/$template-mock.log" 2>&1 &
  daemons+=($!)
  Ready "the $template stand-in" $! "$log/$template-mock.log" \
    OnBus "org.freedesktop.$([ "$template" = systemd ] && echo systemd1 || echo login1)"
done
while read -r unit; do
  busctl call org.freedesktop.systemd1 /org/freedesktop/systemd1 org.freedesktop.DBus.Mock \
    AddMockUnit s "$unit" >/dev/null
done <"$here/units"
# Calls of systemd's manager the template lacks; they change nothing.
AddManagerMethod() {
  busctl call org.freedesktop.systemd1 /org/freedesktop/systemd1 org.freedesktop.DBus.Mock \
    AddMethod sssss org.freedesktop.systemd1.Manager "$@" >/dev/null
}
AddManagerMethod EnableUnitFiles asbb 'ba(sss)' 'ret = (False, [])'
AddManagerMethod DisableUnitFiles asb 'a(sss)' 'ret = []'
AddManagerMethod Reload '' '' ''

# pam_wrapper's settings for the console. The library itself is preloaded into
# the console alone (LAB_PAM_PRELOAD names it): in every other process it
# would make and remove a directory under /tmp at each start and end, and
# pam_wrapper picks those directories racily.
export PAM_WRAPPER=1 PAM_WRAPPER_SERVICE_DIR=$LAB_DIR/pam LAB_PAM_PRELOAD=libpam_wrapper.so
export PAM_WRAPPER_DISABLE_DEEPBIND=1 UID_WRAPPER_DISABLE_DEEPBIND=1
RunWatched "$@"
