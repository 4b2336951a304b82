#!/usr/bin/env bash
# Builds Quillon and runs every test, the way CI does:
#   1. gcc, Debug, AddressSanitizer + UndefinedBehaviorSanitizer (leaks fail), warnings as errors;
#   2. gcc, Release (-O3), warnings as errors: the build users ship, where the optimiser's
#      assumptions (aliasing, inlining) are strongest;
#   3. clang, RelWithDebInfo, warnings as errors;
#   4. a small outside program built against the installed package and through add_subdirectory;
#   5. the Python module (built with the clang preset) under pytest, with Debian's python3.
# Installs the Debian packages it needs when they are missing. Exits non-zero on any failure.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/setup-deps.sh
quillon_install_deps cmake ninja-build g++ clang libgtest-dev libgmock-dev libassimp-dev locales \
  python3-dev pybind11-dev python3-pybind11 python3-pytest python3-numpy

# A comma-decimal locale lets the formatting tests prove that files still get a ".".
if ! locale -a 2>/dev/null | grep -qi '^de_DE\.utf'; then
  if [ "$(id -u)" = 0 ] && [ -f /etc/locale.gen ]; then
    sed -i 's/^# *de_DE.UTF-8 UTF-8/de_DE.UTF-8 UTF-8/' /etc/locale.gen
    locale-gen >/dev/null 2>&1 || echo "note: could not generate de_DE.UTF-8; its tests are skipped"
  fi
fi

jobs=$(nproc 2>/dev/null || echo 2)
status=0
summary=""

run_preset() {
  local preset=$1
  shift
  echo "=== $preset: configure and build ==="
  cmake --preset "$preset" "$@" >/dev/null
  cmake --build --preset "$preset" -j "$jobs"
  echo "=== $preset: tests ==="
  local log
  log=$(mktemp)
  set +e
  ctest --preset "$preset" -j "$jobs" 2>&1 | tee "$log" | grep -vE '^ *([0-9]+/[0-9]+ Test +#[0-9]+: .* Passed|Start +[0-9]+: )'
  local rc=${PIPESTATUS[0]}
  set -e
  local line
  line=$(grep -E 'tests passed, [0-9]+ tests failed out of' "$log" || echo "no ctest summary")
  [ "$rc" = 0 ] || status=1
  summary+="$preset: $line"$'\n'
  rm -f "$log"
}

# The Python module goes with the clang build: it needs objects without sanitizers. It is built for
# Debian's interpreter, whatever python3 comes first on the PATH.
python=/usr/bin/python3
run_preset debug
run_preset release
run_preset clang -DQUILLON_BUILD_PYTHON=ON -DPython_EXECUTABLE="$python"

echo "=== consumer: installed package and add_subdirectory ==="
stage=build/consumer-stage
rm -rf "$stage" build/consumer-installed build/consumer-subdir
cmake --install build/clang --prefix "$stage" >/dev/null
cmake -S tests/consumer -B build/consumer-installed -G Ninja -DCMAKE_CXX_COMPILER=clang++ \
  -DCMAKE_PREFIX_PATH="$PWD/$stage" >/dev/null
cmake --build build/consumer-installed -j "$jobs" >/dev/null
build/consumer-installed/consumer
cmake -S tests/consumer -B build/consumer-subdir -G Ninja -DCMAKE_CXX_COMPILER=g++ \
  -DQUILLON_SOURCE="$PWD" >/dev/null
cmake --build build/consumer-subdir -j "$jobs" >/dev/null
build/consumer-subdir/consumer
summary+="consumer: installed package and add_subdirectory both built and ran"$'\n'

echo "=== python: pytest ==="
log=$(mktemp)
set +e
QUILLON_PYTHON_DIR="$PWD/build/clang/python" PYTHONDONTWRITEBYTECODE=1 \
  "$python" -m pytest -q -p no:cacheprovider python/tests 2>&1 | tee "$log"
rc=${PIPESTATUS[0]}
set -e
[ "$rc" = 0 ] || status=1
summary+="python: $(tail -n 1 "$log")"$'\n'
rm -f "$log"

echo
echo "=== summary ==="
printf '%s' "$summary"
exit $status
