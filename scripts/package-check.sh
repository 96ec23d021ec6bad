#!/usr/bin/env bash
# Checks the packages scripts/package.sh built into build-deb/, as root on this
# machine:
#   - both man pages format without a warning (groff -man -ww -z) and show
#     with man -l; tesk-gallery's page leads to tesk-sim's;
#   - the unit's ExecStart, expanded as systemd expands it for tesk@tty1,
#     starts the console on virtual terminal 1 (of a simulated root);
#   - systemctl --root enables and disables tesk@tty1.service in a scratch
#     root;
#   - dpkg installs tesk: its files are in place (the tmpfiles.d line that
#     allows console logins among them), /etc/pam.d/tesk is a
#     conffile, no instance of the unit is enabled, and systemd-analyze
#     verify says nothing about the installed unit;
#   - dpkg --purge leaves every path dpkg -L listed as it was before the
#     install, and takes back the login file the install made in /run.
# The tesk package must not be installed when the check starts; it is purged
# again however the check ends.
set -euo pipefail
cd "$(dirname "$0")/.."
out=build-deb

fail() {
  echo "package check: $*" >&2
  exit 1
}

shopt -s nullglob
debs=("$out"/tesk_*.deb)
sims=("$out"/tesk-sim_*.deb)
[ "${#debs[@]}" -eq 1 ] && [ "${#sims[@]}" -eq 1 ] ||
  fail "no packages in $out/: run scripts/package.sh first"
deb=${debs[0]}
sim=${sims[0]}
# Whether dpkg knows the package tesk at all (installed, or its conffiles left).
known() {
  case $(dpkg-query -W -f='${Status}' tesk 2>/dev/null || true) in
    '' | *not-installed) return 1 ;;
    *) return 0 ;;
  esac
}
if known; then
  fail "the package tesk is installed on this machine; the check installs and purges it" \
    "itself: remove it first (dpkg --purge tesk)"
fi

work=$(mktemp -d)
installed=no
cleanup() {
  if [ "$installed" = yes ]; then dpkg --purge tesk >/dev/null 2>&1 || true; fi
  rm -rf "$work"
}
trap cleanup EXIT

# dpkg takes one lock for the whole machine; another install may hold it a
# moment.
retry_on_lock() {
  for _ in $(seq 60); do
    if "$@" >"$work/dpkg.log" 2>&1; then return 0; fi
    grep -q 'lock' "$work/dpkg.log" || { cat "$work/dpkg.log" >&2; return 1; }
    sleep 2
  done
  cat "$work/dpkg.log" >&2
  return 1
}

files="$work/files"
dpkg-deb -x "$deb" "$files"
dpkg-deb -x "$sim" "$files"

echo "== man pages"
for page in "$files"/usr/share/man/man8/tesk.8.gz "$files"/usr/share/man/man1/tesk-sim.1.gz; do
  warnings=$(zcat "$page" | groff -man -ww -z 2>&1) || fail "groff failed on $page: $warnings"
  [ -z "$warnings" ] || fail "groff warns about $page: $warnings"
  MANWIDTH=80 man -l "$page" >"$work/page.txt" 2>"$work/man.err" || fail "man -l $page failed"
  [ ! -s "$work/man.err" ] || fail "man -l $page: $(cat "$work/man.err")"
  grep -q '^SYNOPSIS' "$work/page.txt" || fail "man -l $page shows no synopsis"
  echo "$(basename "$page"): $(wc -l <"$work/page.txt") lines, no warning"
done
[ "$(readlink "$files/usr/share/man/man1/tesk-gallery.1.gz")" = tesk-sim.1.gz ] ||
  fail "tesk-gallery.1.gz does not lead to tesk-sim.1.gz"

echo "== the unit's command for tesk@tty1"
unit="$files/lib/systemd/system/tesk@.service"
command=$(sed -n 's/^ExecStart=//p' "$unit")
[ -n "$command" ] || fail "no ExecStart in the unit"
# systemd's expansion: the specifiers %I and %i, then $$ for a dollar sign.
command=${command//%I/tty1}
command=${command//%i/tty1}
command=${command//\$\$/\$}
# The packaged console, not the one in /usr/sbin: it is not installed yet.
command=${command//\/usr\/sbin\/tesk/$files/usr/sbin/tesk}
root="$work/root"
"$files/usr/bin/tesk-sim" init "$root" >/dev/null
# The console switches to its virtual terminal (a simulated root records it)
# before it draws anything; then it is ended.
eval "set -- $command"
TESK_ROOT=$root TERM=vt102 timeout 60 "$@" </dev/null >/dev/null 2>&1 &
console=$!
vt=
for _ in $(seq 300); do
  vt=$(grep -o '"activeVt": *[0-9]*' "$root/var/lib/simhost/state.json" | grep -o '[0-9]*$' || true)
  [ -z "$vt" ] || break
  sleep 0.1
done
kill "$console" 2>/dev/null || true
wait "$console" 2>/dev/null || true
[ "$vt" = 1 ] || fail "the unit's command for tesk@tty1 gave the console virtual terminal '$vt', not 1"
echo "tesk@tty1.service starts the console on virtual terminal 1"

echo "== systemctl --root enable"
scratch="$work/scratch"
dpkg-deb -x "$deb" "$scratch"
# The target the unit is wanted by, as on a host.
cp /lib/systemd/system/multi-user.target "$scratch/lib/systemd/system/"
link="$scratch/etc/systemd/system/multi-user.target.wants/tesk@tty1.service"
systemctl --root="$scratch" enable tesk@tty1.service
[ "$(readlink "$link")" = /lib/systemd/system/tesk@.service ] || fail "enable made no link $link"
systemctl --root="$scratch" disable tesk@tty1.service
[ ! -e "$link" ] && [ ! -L "$link" ] || fail "disable left $link"

echo "== dpkg install"
paths="$work/paths"
dpkg-deb --fsys-tarfile "$deb" | tar -t | sed -e 's|^\./|/|' -e 's|/$||' | grep -v '^\.\?$' >"$paths"
before="$work/before"
while IFS= read -r path; do
  if [ -e "$path" ] || [ -L "$path" ]; then echo "$path"; fi
done <"$paths" >"$before"
marker=/run/brelt/show-tesk-login
marker_before=no
[ ! -e "$marker" ] || marker_before=yes
retry_on_lock dpkg -i "$deb"
installed=yes
listed="$work/listed"
dpkg -L tesk | grep -vx '/\.' >"$listed"
for file in /usr/sbin/tesk /etc/pam.d/tesk /lib/systemd/system/tesk@.service /usr/lib/tmpfiles.d/tesk.conf \
  /usr/share/man/man8/tesk.8.gz /usr/share/doc/tesk/copyright; do
  [ -e "$file" ] || fail "$file is missing after the install"
done
[ -x /usr/sbin/tesk ] || fail "/usr/sbin/tesk is not executable"
if command -v systemd-tmpfiles >/dev/null 2>&1; then
  [ -e "$marker" ] || fail "the install did not make $marker (console logins stay refused)"
fi
cmp -s /etc/pam.d/tesk data/pam.d/tesk || fail "/etc/pam.d/tesk differs from data/pam.d/tesk"
dpkg-query -W -f='${Conffiles}\n' tesk | grep -q '^ /etc/pam.d/tesk ' ||
  fail "/etc/pam.d/tesk is not a conffile"
enabled=$(find /etc/systemd -name 'tesk@*' 2>/dev/null)
[ -z "$enabled" ] || fail "the install enabled $enabled"
verify=$(cd / && systemd-analyze verify /lib/systemd/system/tesk@tty1.service 2>&1 >/dev/null) ||
  fail "systemd-analyze verify failed: $verify"
[ -z "$verify" ] || fail "systemd-analyze verify: $verify"
echo "installed: $(wc -l <"$paths") paths, systemd-analyze verify quiet"

echo "== dpkg purge"
retry_on_lock dpkg --purge tesk
installed=no
! known || fail "dpkg still knows tesk after the purge"
left=0
while IFS= read -r path; do
  if [ -e "$path" ] || [ -L "$path" ]; then
    grep -qxF "$path" "$before" || { echo "left behind: $path" >&2; left=$((left + 1)); }
  fi
done <"$listed"
[ "$left" -eq 0 ] || fail "$left paths left behind by the purge"
[ "$marker_before" = yes ] || [ ! -e "$marker" ] || fail "the purge left $marker"
echo "purged: nothing left behind"
echo "package check: passed"
