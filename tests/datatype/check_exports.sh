#!/usr/bin/env bash
# Checks the library's dynamic symbols: the entry points and the graphics::datatype classes are
# exported, and nothing of the host (array library, utilities, class system, foundation) is defined.
set -euo pipefail
library=$1
symbols=$(nm -D --defined-only "$library" | c++filt | sed -E 's/^[0-9a-f]+ [A-Za-z] //')
status=0
for entry in KXInitialize_orbdatatypes KXTerminate_orbdatatypes QueryKXFcnTable_orbdatatypes \
  orbdatatypesShutdownForStandalone orbdatatypes_version orbdatatypes_build_date \
  'graphics::datatype::register_package' 'graphics::datatype::register_datatype' \
  'graphics::datatype::MeshAlphaDataType' 'graphics::datatype::MeshAlphaMC' 'graphics::datatype::MeshAlphaSC'; do
  if ! grep -qF -- "$entry" <<<"$symbols"; then
    echo "missing export: $entry"
    status=1
  fi
done
host_names='(objsys|fl|gui_objects|matrix|TL|zx|graphicsutil)::'
host=$(grep -E "^((typeinfo|typeinfo name|vtable|VTT) for )?((zx|ut)[A-Z]|get(ContextKXRID|ContextIndex)|$host_names)" <<<"$symbols" || true)
if [[ -n $host ]]; then
  echo "host symbols defined by the library:"
  echo "$host"
  status=1
fi
exit $status
