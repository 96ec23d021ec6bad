#!/usr/bin/env bash
# The lab: a real Linux host for the console's Linux backend, made of network
# namespaces on this machine, never touching the machine's own network or /etc
# (docs/lab.md).
#   scripts/lab.sh                 build, then start the console in the lab host
#   scripts/lab.sh -- CMD [ARGS]   run CMD in the lab host; exits with its status
# The lab host has eth0..eth2, cabled to a peer that serves DHCP, router
# advertisements and DNS; its own system bus with systemd-networkd, stand-ins
# for systemd and logind, a lab root for TESK_ROOT and a PAM stack for "tesk".
# Everything is gone when the script ends, however it ends. Exits 2 with one
# line on stderr when no lab can be made here (not root, no namespaces).
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
top=$(dirname "$here")
source "$here/lab/common.sh"

usage() {
  echo "usage: scripts/lab.sh [-- CMD [ARGS...]]" >&2
  exit 1
}

if [ $# -eq 0 ]; then
  console=1
elif [ "$1" = -- ] && [ $# -gt 1 ]; then
  console=
  shift
else
  usage
fi

[ "$(id -u)" -eq 0 ] || unavailable "needs root to make network namespaces; run it as root"
unshare --net --mount --uts true 2>/dev/null ||
  unavailable "cannot make network, mount and UTS namespaces on this machine"
for tool in ip nsenter unshare dnsmasq dbus-daemon busctl "$NETWORKD"; do
  command -v "$tool" >/dev/null || fail "$tool is missing; run scripts/install-deps.sh"
done
/usr/bin/python3 -c 'import dbusmock' 2>/dev/null ||
  fail "python3-dbusmock is missing; run scripts/install-deps.sh"
pam_matrix=$(find /usr/lib -path '*/pam_wrapper/pam_matrix.so' -print -quit)
[ -n "$pam_matrix" ] || fail "pam_matrix is missing; run scripts/install-deps.sh"

if [ -n "$console" ]; then
  nice -n 10 bash "$top/scripts/build.sh" build >&2
  set -- env LD_PRELOAD=libpam_wrapper.so "$top/build/tesk"
fi

SweepStaleLabs

LAB_DIR=$(mktemp -d "$LAB_TMP/tesklab-$$.XXXXXX")
chmod 755 "$LAB_DIR" # networkd runs as its own user and reads the root's files
dnsmasq=

# Ends whatever still runs in the lab, then removes the namespaces and files.
cleanup() {
  local status=$?
  trap '' INT TERM HUP
  if [ -n "$watched" ]; then
    kill -TERM "$watched" 2>/dev/null || true
    WaitEnded "$watched" 15 || kill -KILL "$watched" 2>/dev/null || true
    wait "$watched" 2>/dev/null || true
  fi
  [ -z "$dnsmasq" ] || kill -TERM "$dnsmasq" 2>/dev/null || true
  RemoveLab "$LAB_DIR" || true
  exit "$status"
}
trap cleanup EXIT
trap 'exit 130' INT
trap 'exit 143' TERM
trap 'exit 129' HUP

mkdir -p "$LAB_DIR"/{ns,log,bus,pam,peer}
touch "$LAB_DIR/ns/host" "$LAB_DIR/ns/peer"
unshare --net="$LAB_DIR/ns/peer" true && unshare --net="$LAB_DIR/ns/host" true ||
  unavailable "cannot keep network namespaces under $LAB_TMP"

# The lab root: the fixtures, the empty folders the backend writes into, and
# the libvirt node file.
root=$LAB_DIR/root
cp -R "$here/lab/root" "$root"
mkdir -p "$root"/{etc/systemd/network,run/systemd/network,run/pcscd,var/log,var/lib}
# The console starts on an installed host: its management bridge br0 over
# eth0 on DHCP, as the console itself writes it. Commands start with no
# network unless LAB_INSTALLED_NETWORK=1.
if [ -n "$console" ] || [ "${LAB_INSTALLED_NETWORK:-}" = 1 ]; then
  cp "$here"/lab/installed-network/* "$root/etc/systemd/network/"
fi

# The service "tesk" lets root / tesk-demo in; every other service ("other")
# lets nobody in.
echo "root:tesk-demo:tesk" >"$LAB_DIR/pam/passdb"
for service in tesk other; do
  for type in auth account password session; do
    echo "$type required $pam_matrix passdb=$LAB_DIR/pam/passdb"
  done >"$LAB_DIR/pam/$service"
done

# The peer: one bridge behind the host's three NICs, the gateway's addresses
# on it, and dnsmasq serving DHCPv4, DHCPv6, router advertisements and DNS.
peer() { nsenter --net="$LAB_DIR/ns/peer" "$@"; }
peer ip link set lo up
peer ip link add br0 type bridge forward_delay 0
for i in 0 1 2; do
  peer ip link add "p$i" type veth peer name "eth$i" address "$LAB_MAC_PREFIX:1$i" \
    netns "$LAB_DIR/ns/host"
  peer ip link set "p$i" master br0 up
done
peer ip addr add "$LAB_GATEWAY/24" dev br0
peer ip addr add "$LAB_GATEWAY6/64" dev br0 nodad
peer ip link set br0 up
nsenter --net="$LAB_DIR/ns/peer" env --default-signal=INT,QUIT dnsmasq --keep-in-foreground --conf-file=/dev/null \
  --no-hosts --no-resolv --user=root --group=root \
  --interface=br0 --bind-interfaces --pid-file="$LAB_DIR/peer/dnsmasq.pid" \
  --log-facility="$LAB_DIR/log/dnsmasq.log" --log-dhcp --log-queries \
  --dhcp-leasefile="$LAB_DIR/peer/leases" --dhcp-authoritative \
  --domain="$LAB_DOMAIN" --local="/$LAB_DOMAIN/" \
  --dhcp-range=192.168.77.100,192.168.77.199,255.255.255.0,1h \
  --dhcp-host="$LAB_MAC_PREFIX:10,$LAB_HOST_ADDRESS,$LAB_HOSTNAME" \
  --dhcp-range=fd77::100,fd77::1ff,64,1h --enable-ra \
  --host-record="$LAB_HOSTNAME.$LAB_DOMAIN,$LAB_HOSTNAME,$LAB_HOST_ADDRESS,$LAB_HOST_ADDRESS6" \
  --host-record="gateway.$LAB_DOMAIN,$LAB_GATEWAY,$LAB_GATEWAY6" \
  2>>"$LAB_DIR/log/dnsmasq.log" &
dnsmasq=$!
Ready dnsmasq "$dnsmasq" "$LAB_DIR/log/dnsmasq.log" test -s "$LAB_DIR/peer/dnsmasq.pid"

export LAB_DIR TESK_ROOT=$root TESK_BACKEND=linux
export LAB_HOST_NETNS=$LAB_DIR/ns/host LAB_PEER_NETNS=$LAB_DIR/ns/peer
export LAB_GATEWAY LAB_GATEWAY6 LAB_DOMAIN LAB_HOSTNAME LAB_HOST_ADDRESS LAB_HOST_ADDRESS6
export TESK_LIBVIRT_URI="test://$root/etc/libvirt/test-node.xml"
# The backend finds the hypervisor through its own option, as on a host.
mkdir -p "$root/etc/tesk"
printf 'libvirt.uri=%s\n' "$TESK_LIBVIRT_URI" >>"$root/etc/tesk/linux-host.conf"
export LAB_LOGIND_CALLS=$LAB_DIR/bus/logind.calls LAB_SYSTEMD_CALLS=$LAB_DIR/bus/systemd.calls

[ -z "$console" ] || echo "lab: the console on $root; log in as root / tesk-demo" >&2

RunWatched nsenter --net="$LAB_DIR/ns/host" \
  unshare --mount --uts --propagation private bash "$here/lab/host.sh" "$@"
