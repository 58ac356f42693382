# Shared by the commands at the root; sourced by bash, from any directory.
set -euo pipefail
ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
JOBS=$(nproc)

# Runs a command silently; shows all its output if it fails.
quietly() {
  local said status=0
  said=$(mktemp)
  "$@" >"$said" 2>&1 || status=$?
  if [ "$status" -ne 0 ]; then
    cat "$said" >&2
    echo "failed: ${*:1:8}" >&2
  fi
  rm -f "$said"
  return "$status"
}

# install_packages GROUP...: installs missing packages of these groups or, if not root, lists them and stops.
install_packages() {
  command -v dpkg-query >/dev/null || return 0
  local group package missing=()
  while read -r group package; do
    [[ " $* " == *" $group "* ]] || continue
    dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed || missing+=("$package")
  done < <(grep -v '^#' "$ROOT/scripts/packages")
  [ "${#missing[@]}" -gt 0 ] || return 0
  if [ "$(id -u)" -ne 0 ]; then
    echo "Please install these packages first: ${missing[*]}" >&2
    exit 1
  fi
  quietly apt-get update
  quietly env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}"
}

# want_packages GROUP...: the same for tests that are skipped without the packages.
want_packages() {
  (install_packages "$@") || echo "Tests that need them will be skipped." >&2
}

# build PRESET TARGET CMAKE_OPTION...: configures build/PRESET and builds the target there.
build() {
  local preset=$1 target=$2
  shift 2
  (cd "$ROOT" && quietly cmake --preset "$preset" "$@")
  quietly cmake --build "$ROOT/build/$preset" -j "$JOBS" --target "$target"
}

# run_tests PRESET: the whole suite of a built preset. If all tests pass, only ctest's summary is shown.
run_tests() {
  local said status=0
  said=$(mktemp)
  ctest --test-dir "$ROOT/build/$1" -j "$JOBS" --output-on-failure --no-tests=error >"$said" 2>&1 || status=$?
  if [ "$status" -eq 0 ]; then
    sed -n '/tests passed/,$p' "$said"
  else
    grep -Ev '^ +Start +[0-9]+:| +Passed +[0-9.]+ sec$' "$said"
  fi
  rm -f "$said"
  return "$status"
}
