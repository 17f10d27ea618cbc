#!/usr/bin/env bash
# Smoke test of the main window: starts the real program under Xvfb on an
# example; `mirel --screenshot` lets it run, saves the window as a PNG and
# fails when the picture is not a window's (too small or nearly uniform).
# Usage: fenetre_capture.sh MIREL FILE.dat OUT.png
set -euo pipefail
mirel="$1"; programme="$2"; sortie="$3"
rm -f "$sortie"
sortie="$(realpath -m "$sortie")"; programme="$(realpath "$programme")"; mirel="$(realpath "$mirel")"
# A working folder with its own "Mirel.cfg" (a settings file in the working
# folder is the one used), the languages chosen, so that the language dialog
# of a first start does not wait.
travail="$(mktemp -d)"
trap 'rm -rf "$travail"' EXIT
version="$("$mirel" --version | awk '{print $2}')"
IFS=. read -r majeur mineur revision <<<"$version"
texte="$majeur.$(printf %02d "$mineur")"
[ "${revision:-0}" -gt 0 ] && texte="$texte$(printf "\\x$(printf %x $((96 + revision)))") "
printf "'Fichier de configuration du Programme Mirel V%s\r\n'Ne pas modifier / Do not change\r\nLangue = Français\r\nLangueMenu = Français\r\nLangueAide = Français\r\nLangueMasq = Français\r\nFichierDat = Mirel.dat\r\nDoubleClic = Non\r\nZmm = 1\r\nPatchs = 0\r\n" "$texte" > "$travail/Mirel.cfg"
cd "$travail"
export QT_QPA_PLATFORM=xcb XDG_CONFIG_HOME="$travail/xdg"
timeout 90 xvfb-run -a -s "-screen 0 1280x800x24" "$mirel" --screenshot "$sortie" "$programme"
test -s "$sortie" || { echo "no screenshot written" >&2; exit 1; }
echo "screenshot: $sortie"
