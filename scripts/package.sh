#!/usr/bin/env bash
# Builds the Debian packages tesk and tesk-sim (with their debug symbols in
# tesk-dbgsym and tesk-sim-dbgsym) into build-deb/, then lets lintian check
# them: any error or warning fails.
#   scripts/package.sh
# dpkg-buildpackage writes its packages beside the source tree, so the
# checkout's files (tracked and new, as they are now) are copied to
# build-deb/src and built there; the checkout itself stays as it was.
# scripts/package-check.sh checks the unit, the man pages and the install.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh

# The packages carry the program's own version (project() in CMakeLists.txt).
version=$(sed -n 's/^project(tesk VERSION \([^ ]*\) .*/\1/p' CMakeLists.txt)
packaged=$(dpkg-parsechangelog -S Version)
if [ "$packaged" != "$version" ]; then
  echo "debian/changelog has version $packaged, CMakeLists.txt $version: add a changelog entry" >&2
  exit 1
fi

out=build-deb
rm -rf "$out"
mkdir -p "$out/src"
if git rev-parse --is-inside-work-tree >/dev/null 2>&1; then
  git ls-files -z --cached --others --exclude-standard |
    while IFS= read -r -d '' file; do [ -e "$file" ] && printf '%s\0' "$file"; done |
    tar --null -T - -cf - | tar -xf - -C "$out/src"
else
  tar --exclude='./build*' -cf - . | tar -xf - -C "$out/src"
fi

# Two jobs: the machine is shared. debhelper gives the build a HOME of its
# own; ccache keeps using the cache it has.
export DEB_BUILD_OPTIONS="parallel=${PACKAGE_JOBS:-2}${DEB_BUILD_OPTIONS:+ $DEB_BUILD_OPTIONS}"
if command -v ccache >/dev/null 2>&1; then
  CCACHE_DIR=${CCACHE_DIR:-$(ccache -k cache_dir)}
  export CCACHE_DIR CCACHE_BASEDIR="$PWD/$out/src"
fi
(cd "$out/src" && nice dpkg-buildpackage -b -us -uc)

echo "== packages in $out/"
ls -1 "$out"/*.deb
echo "== lintian"
lintian --fail-on error,warning --info "$out"/*.changes
echo "lintian: no error, no warning"
