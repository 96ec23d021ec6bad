# The lab's names and addresses, and the helpers scripts/lab.sh and
# scripts/lab/host.sh share: messages, waits, and removing a lab.
# Sourced, never run.

NETWORKD=/lib/systemd/systemd-networkd
LAB_TMP=${TMPDIR:-/tmp}
LAB_DOMAIN=lab.test
LAB_HOSTNAME=tesk-lab
LAB_GATEWAY=192.168.77.1
LAB_GATEWAY6=fd77::1
LAB_HOST_ADDRESS=192.168.77.10
LAB_HOST_ADDRESS6=fd77::10
# eth0 is $LAB_MAC_PREFIX:10, eth1 :11, eth2 :12 (locally administered).
LAB_MAC_PREFIX=02:7e:5c:00:00
# Seconds a service of the lab gets to come up; a loaded machine needs many.
LAB_START_TIMEOUT=${LAB_START_TIMEOUT:-90}

unavailable() {
  echo "lab: $*" >&2
  exit 2
}

fail() {
  echo "lab: $*" >&2
  exit 1
}

# True while process $1 exists and is not a zombie.
Running() {
  local state
  state=$(awk '/^State:/ { print $2 }' "/proc/$1/status" 2>/dev/null) || return 1
  [ -n "$state" ] && [ "$state" != Z ]
}

# Waits up to $2 seconds for process $1 to end; false if it still runs.
WaitEnded() {
  local end=$((SECONDS + $2))
  while Running "$1"; do
    [ "$SECONDS" -lt "$end" ] || return 1
    sleep 0.1
  done
}

# Ready WHAT PID LOG CMD...: waits until CMD succeeds while service PID (WHAT,
# logging to LOG) runs; fails with the end of its log when it ends or takes
# longer than the start limit.
Ready() {
  local what=$1 pid=$2 file=$3 end=$((SECONDS + LAB_START_TIMEOUT)) problem=
  shift 3
  until "$@" >/dev/null 2>&1; do
    if ! Running "$pid"; then
      problem="$what ended while starting"
    elif [ "$SECONDS" -ge "$end" ]; then
      problem="$what did not start within $LAB_START_TIMEOUT s"
    else
      sleep 0.1
      continue
    fi
    echo "lab: $problem; the end of its log:" >&2
    tail -n 20 "$file" >&2 || true
    exit 1
  done
}

# RunWatched CMD...: runs CMD with this script's standard input and the
# default reaction to Ctrl-C, and exits with its status. CMD runs in the
# background, so that a trap runs at once on a signal (it waits for a command
# in the foreground), yet keeps the terminal: without job control it stays in
# this script's process group. $watched is its process id meanwhile.
watched=
RunWatched() {
  local status=0
  { exec 3<&0; } 2>/dev/null || exec 3</dev/null # none when closed
  env --default-signal=INT,QUIT "$@" <&3 &
  watched=$!
  exec 3<&-
  wait "$watched" || status=$?
  watched=
  exit "$status"
}

# The processes in the network namespace bound to file $1.
NamespacePids() {
  local proc
  for proc in /proc/[0-9]*; do
    [ "$proc/ns/net" -ef "$1" ] && echo "${proc#/proc/}"
  done
  return 0
}

# Ends every process of lab directory $1's namespaces, unbinds them and
# removes the directory.
RemoveLab() {
  local dir=$1 ns pids pid end
  for ns in "$dir/ns/host" "$dir/ns/peer"; do
    [ -e "$ns" ] || continue
    pids=$(NamespacePids "$ns")
    if [ -n "$pids" ]; then
      kill -TERM $pids 2>/dev/null || true
      end=$((SECONDS + 5))
      for pid in $pids; do
        while Running "$pid" && [ "$SECONDS" -lt "$end" ]; do sleep 0.1; done
      done
      kill -KILL $(NamespacePids "$ns") 2>/dev/null || true
    fi
    while [ "$(findmnt -n -o FSTYPE --mountpoint "$ns" 2>/dev/null)" = nsfs ]; do
      umount "$ns" || break
    done
  done
  rm -rf "$dir"
}

# Removes the labs left by a lab script that was killed outright.
SweepStaleLabs() {
  local dir pid
  for dir in "$LAB_TMP"/tesklab-*.*; do
    [ -d "$dir" ] || continue
    pid=${dir##*/tesklab-}
    pid=${pid%%.*}
    if [ -r "/proc/$pid/cmdline" ] && tr '\0' ' ' <"/proc/$pid/cmdline" | grep -q 'lab\.sh'; then
      continue
    fi
    RemoveLab "$dir"
  done
}
