#!/usr/bin/env bash
# Fails when a tracked file speaks of where a rule was written down instead of
# what the code does: section numbers of a design document, or comparisons
# with another program. This script itself is the one place that names them.
set -euo pipefail
cd "$(dirname "$0")/.."
motif='\bparts? [0-9]+\.[0-9]+|\bspec(ification)?s?\b|\boriginal\b|\bVB6\b'
if git grep -I -n -i -E "$motif" -- . ':!scripts/textes_propres.sh'; then
  echo "These lines say where a rule came from rather than what it does." >&2
  exit 1
fi
echo "Every tracked line speaks of what the code does."
