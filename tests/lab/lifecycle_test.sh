# The lab itself, run outside it: the command's status comes back, nothing of
# a lab is left after it ends normally or on SIGTERM, the machine keeps its
# host name, and without root the lab says so in one line and exits 2.
#   lifecycle_test.sh scripts/lab.sh
source "$(dirname "$0")/checks.sh"
lab=$1
[ "$(id -u)" -eq 0 ] || { echo "the lab needs root" >&2; exit 2; }

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# Each lab notes its folder and the inodes of its two namespaces.
note='echo "$LAB_DIR $(stat -L -c %i "$LAB_HOST_NETNS" "$LAB_PEER_NETNS" | xargs)" >"$0.tmp" && mv "$0.tmp" "$0"'

# True when no process runs in the network namespaces with these inodes.
NoneIn() {
  local proc
  for proc in /proc/[0-9]*/ns/net; do
    case "$(readlink "$proc" 2>/dev/null)" in "net:[$1]" | "net:[$2]") return 1 ;; esac
  done
}
Unmounted() { ! grep -qF "$1" /proc/self/mountinfo; }
NoProcess() { ! pgrep -f "$1"; }

NothingLeft() {
  local dir host peer
  read -r dir host peer <"$1"
  check "$2: the lab's folder is gone" test ! -e "$dir"
  check "$2: no mount is left" Unmounted "$dir"
  check "$2: no process runs in the lab's namespaces" NoneIn "$host" "$peer"
  check "$2: no process of the lab is left" NoProcess "$dir"
}

name=$(hostname)
status=0
bash "$lab" -- sh -c "$note; hostname lab-renamed; exit 7" "$work/first" || status=$?
check "the command's status is the lab's" test "$status" -eq 7
NothingLeft "$work/first" "after the command"
check "the machine keeps its host name" test "$(hostname)" = "$name"

bash "$lab" -- sh -c "$note; exec sleep 600" "$work/second" &
pid=$!
eventually "the lab starts" 120 test -s "$work/second"
kill -TERM "$pid"
status=0
wait "$pid" || status=$?
check "SIGTERM ends the lab with 143" test "$status" -eq 143
NothingLeft "$work/second" "after SIGTERM"

output=$(setpriv --reuid=65534 --regid=65534 --clear-groups bash "$lab" -- true 2>&1)
status=$?
check "without root the lab exits 2" test "$status" -eq 2
check "without root the lab says why in one line" test "$(echo "$output" | wc -l)" -eq 1 -a -n "$output"
finish
