# The lab host's services and files, run inside the lab: what the backend
# writes under TESK_ROOT is what the host's services see, the stand-ins for
# systemd and logind record what they are asked, libvirt's test driver has the
# lab's machines, and PAM lets root / tesk-demo in.
source "$(dirname "$0")/checks.sh"

for file in etc/resolv.conf etc/systemd/network/40-x.network run/systemd/network/05-x.network; do
  echo "# written at $RANDOM" >"$TESK_ROOT/$file"
  check "/$file is the lab root's" cmp "$TESK_ROOT/$file" "/$file"
done
check "/etc/machine-id is the lab root's" cmp "$TESK_ROOT/etc/machine-id" /etc/machine-id

busctl call org.freedesktop.login1 /org/freedesktop/login1 org.freedesktop.login1.Manager \
  PowerOff b false
check "logind's stand-in records PowerOff" grep -q 'PowerOff False' "$LAB_LOGIND_CALLS"
busctl call org.freedesktop.systemd1 /org/freedesktop/systemd1 \
  org.freedesktop.systemd1.Manager StartUnit ss ssh.service replace
check "systemd's stand-in records StartUnit" grep -q 'StartUnit "ssh.service"' "$LAB_SYSTEMD_CALLS"
check "a started unit is active" sh -c 'busctl get-property org.freedesktop.systemd1 \
  /org/freedesktop/systemd1/unit/ssh_service org.freedesktop.systemd1.Unit ActiveState |
  grep -qx "s \"active\""'

check "libvirt runs web01 and db01" \
  test "$(virsh -c "$TESK_LIBVIRT_URI" list --name | xargs)" = "web01 db01"
check "libvirt has build01 and spare01 shut off" \
  test "$(virsh -c "$TESK_LIBVIRT_URI" list --inactive --name | xargs)" = "build01 spare01"

# pam_wrapper is preloaded into the program that authenticates, as into the console.
check "PAM lets root in with tesk-demo" \
  sh -c 'echo tesk-demo | LD_PRELOAD=$LAB_PAM_PRELOAD pamtester tesk root authenticate'
check "PAM refuses a wrong password" \
  sh -c '! echo wrong | LD_PRELOAD=$LAB_PAM_PRELOAD pamtester tesk root authenticate'
finish
