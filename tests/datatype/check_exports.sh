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
# Host names are looked for in the mangled names, where a symbol's own namespace comes first: an
# instantiation of a standard template over host types (std::exchange<objsys::...>) is not the host's.
mangled=$(nm -D --defined-only "$library" | sed -E 's/^[0-9a-f]+ [A-Za-z] //')
host_namespaces='(6objsys|2fl|11gui_objects|6matrix|2TL|2zx|13graphicsutil)'
host=$(grep -E "^((zx|ut)[A-Z]|get(ContextKXRID|ContextIndex)|_Z(T[ISV])?N(K)?$host_namespaces)" <<<"$mangled" | c++filt || true)
if [[ -n $host ]]; then
  echo "host symbols defined by the library:"
  echo "$host"
  status=1
fi
exit $status
