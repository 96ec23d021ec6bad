# The lab host's network, run inside the lab: its NICs, networkd on its bus,
# leases from the peer's DHCP servers, the gateway, the name server, and the
# peer's ends of the cables.
source "$(dirname "$0")/checks.sh"

HasAddress() { ip "$1" -o addr show dev eth0 | grep -Eq "inet6? $2 "; }
NoCarrier() { ip -o link show dev eth0 | grep -q NO-CARRIER; }

for i in 0 1 2; do
  check "eth$i is there with its address" grep -qx "02:7e:5c:00:00:1$i" "/sys/class/net/eth$i/address"
done
check "networkd answers on the lab's bus" busctl call org.freedesktop.network1 \
  /org/freedesktop/network1 org.freedesktop.network1.Manager ListLinks
check "the host has the lab's name" test "$(hostname)" = "$LAB_HOSTNAME"

printf '[Match]\nName=eth0\n\n[Network]\nDHCP=yes\n' \
  >"$TESK_ROOT/etc/systemd/network/30-eth0.network"
check "networkd reloads" networkctl reload
eventually "eth0 leases its DHCPv4 address" 60 HasAddress -4 "$LAB_HOST_ADDRESS/24"
eventually "eth0 leases its DHCPv6 address" 60 HasAddress -6 "$LAB_HOST_ADDRESS6/128"
eventually "the gateway answers ping" 30 ping -c1 -W2 "$LAB_GATEWAY"
check "the name server knows the host" \
  sh -c 'getent ahostsv4 "$LAB_HOSTNAME.$LAB_DOMAIN" | grep -q "^$LAB_HOST_ADDRESS "'

nsenter --net="$LAB_PEER_NETNS" ip link set p0 down
eventually "eth0 loses its carrier with the peer's end down" 30 NoCarrier
finish
