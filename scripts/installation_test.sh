#!/usr/bin/env bash
# Installs a build into a temporary prefix and checks what a desktop and a
# user see: the launcher, the metainfo, the file type, the icon, and the
# installed program running an installed example headless, with the
# library's commands found in its data folder. With --deb, also builds the
# Debian package and checks its contents and dependencies.
#   scripts/installation_test.sh BUILD_DIR [--deb]
set -euo pipefail
build=$(cd "$1" && pwd)
deb=${2:-}
id=org.mirel.Mirel
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
fail() { echo "FAIL: $*" >&2; exit 1; }

prefix=$tmp/prefix
cmake --install "$build" --prefix "$prefix" >/dev/null
for f in bin/mirel share/applications/$id.desktop share/icons/hicolor/scalable/apps/$id.svg \
         share/mime/packages/$id.xml share/metainfo/$id.metainfo.xml \
         share/mirel/MCE_Trou.dmk share/mirel/MCE_Platine.dat share/mirel/examples/voltmetre.dat; do
  [ -s "$prefix/$f" ] || fail "$f is not installed"
done

desktop-file-validate "$prefix/share/applications/$id.desktop" || fail "the launcher is not valid"
for lang in fr de es; do
  for key in Comment Keywords; do
    grep -q "^$key\[$lang\]=" "$prefix/share/applications/$id.desktop" || fail "no $key in $lang"
  done
done
appstreamcli validate --no-net "$prefix/share/metainfo/$id.metainfo.xml" >/dev/null ||
  fail "the metainfo is not valid: $(appstreamcli validate --no-net "$prefix/share/metainfo/$id.metainfo.xml")"

# The file type compiles and claims command files.
if command -v update-mime-database >/dev/null; then
  update-mime-database "$prefix/share/mime" >/dev/null 2>&1
  grep -q 'text/x-mirel:\*\.dat' "$prefix/share/mime/globs2" || fail "command files are not given the Mirel type"
fi

# The icon is the dial the build drew: an SVG with strokes in it.
icon=$prefix/share/icons/hicolor/scalable/apps/$id.svg
grep -q '<svg' "$icon" || fail "the icon is not an SVG"
[ "$(grep -c '<path\|<polyline' "$icon")" -ge 10 ] || fail "the icon has almost nothing drawn"

# The installed program runs an installed example headless.
export QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8 HOME=$tmp/home XDG_CONFIG_HOME=$tmp/home/.config
mkdir -p "$HOME"
"$prefix/bin/mirel" dump "$prefix/share/mirel/examples/voltmetre.dat" > "$tmp/voltmetre.json" ||
  fail "the installed program fails on an installed example"
grep -q '"Line"\|"line"' "$tmp/voltmetre.json" || fail "the installed example draws nothing"

# From any folder, the library's commands come from the program's data folder.
mkdir -p "$tmp/travail"
printf 'MCE_Trou = 0, 0, 4\n' > "$tmp/travail/trou.dat"
(cd "$tmp/travail" && "$prefix/bin/mirel" dump trou.dat > "$tmp/trou.json") ||
  fail "the installed program does not find the library's commands: $(cat "$tmp/trou.json")"

if [ "$deb" = "--deb" ]; then
  (cd "$build" && cpack -G DEB -B "$tmp/paquet" >/dev/null 2>&1) || fail "cpack could not build the package"
  paquet=$(ls "$tmp"/paquet/mirel_*.deb)
  dpkg-deb -c "$paquet" > "$tmp/contenu"
  for f in ./usr/bin/mirel ./usr/share/applications/$id.desktop ./usr/share/mirel/MCE_Trou.dmk \
           ./usr/share/icons/hicolor/scalable/apps/$id.svg ./usr/share/mime/packages/$id.xml \
           ./usr/share/metainfo/$id.metainfo.xml; do
    grep -q " $f\$" "$tmp/contenu" || fail "the package lacks $f"
  done
  depends=$(dpkg-deb -f "$paquet" Depends)
  for d in libqt6widgets6 libqt6svg6 qt6-qpa-plugins fonts-liberation2; do
    grep -q "$d" <<<"$depends" || fail "the package does not depend on $d: $depends"
  done
fi
echo "installation checked in $prefix"
