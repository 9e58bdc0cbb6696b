#!/usr/bin/env bash
# Checks that every folder includes only folders below it (docs/architecture.md draws the
# layers). Reads the quoted #include lines of every source file under the given project
# root (default: this script's project) and prints each include that crosses a layer
# upward or sideways. Exits 1 when it found any, 0 otherwise.
set -euo pipefail

root=${1:-$(cd "$(dirname "$0")/.." && pwd)}
cd "$root"

# Folders each folder may include besides itself; access/, model/ and results/ (the
# handlers) meet only through context/. A folder missing here (tests/) may include any.
declare -A allowed=(
  [platform]=""
  [wire]="platform"
  [odb]="platform"
  [context]="odb wire platform"
  [access]="context odb wire platform"
  [model]="context odb wire platform"
  [results]="context odb wire platform"
  [server]="access model results context odb wire platform"
  [client]="wire platform"
  [tools]="client server access model results context odb wire platform"
  [bench]="tools client server access model results context odb wire platform"
)

bad=0
for folder in "${!allowed[@]}"; do
  [[ -d $folder ]] || continue
  while IFS= read -r hit; do
    file=${hit%%:*}
    rest=${hit#*:}
    line=${rest%%:*}
    target=$(sed -E 's/^[^"]*"([^"/]+)\/.*$/\1/' <<<"${rest#*:}")
    [[ $target == "$folder" || ! -d $target ]] && continue
    if [[ " ${allowed[$folder]} " != *" $target "* ]]; then
      echo "$file:$line: $folder/ must not include $target/" >&2
      bad=1
    fi
  done < <(grep -rnE '^[[:space:]]*#[[:space:]]*include[[:space:]]*"[^"/]+/' "$folder" \
             --include='*.h' --include='*.hpp' --include='*.cpp' --include='*.cc' || true)
done

# Operating-system headers belong to platform/ alone: the other folders build unchanged for
# Linux and Windows.
os_headers='windows|winnetwk|winbase|io|process|unistd|fcntl|poll|pthread|signal|spawn|dirent'
os_headers+='|dlfcn|sys/wait|sys/stat|sys/mman|sys/syscall'
for folder in "${!allowed[@]}"; do
  [[ -d $folder && $folder != platform ]] || continue
  while IFS= read -r hit; do
    echo "$hit: operating-system header outside platform/" >&2
    bad=1
  done < <(grep -rnE "^[[:space:]]*#[[:space:]]*include[[:space:]]*<($os_headers)\.h>" "$folder" \
             --include='*.h' --include='*.hpp' --include='*.cpp' --include='*.cc' || true)
done

exit $bad
