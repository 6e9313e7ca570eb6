# shellcheck shell=bash
# Counting checks in scripts, to be sourced. A script that ends with `counted` says "N passed, N failed".

passed=0
failed=0

# check NAME COMMAND...: runs the command and counts; shows what it prints only when it fails. A function fails with the
# first of its commands that does.
check() {
  local name=$1 output status
  shift
  set +e
  output=$(
    set -e
    "$@" 2>&1
  )
  status=$?
  set -e
  if [ "$status" -eq 0 ]; then
    passed=$((passed + 1))
    echo "ok      $name"
  else
    failed=$((failed + 1))
    printf 'FAILED  %s\n%s\n' "$name" "$output"
  fi
}

# is WHAT EXPECTED ACTUAL: fails unless they are equal.
is() { [ "$2" = "$3" ] || { echo "$1: \"$3\" instead of \"$2\"" && return 1; }; }

# add COMMAND...: runs a command that ends with the line "N passed, N failed", and adds its counts. Without that line, or with
# nothing counted, the command counts as one failure. So does one that fails without counting a failure. Needs pipefail.
add() {
  local status=0 log
  log=$(mktemp)
  "$@" 2>&1 | tee "$log" || status=$?
  if [[ $(tail -n 1 "$log") =~ ^([0-9]+)\ passed,\ ([0-9]+)\ failed$ ]] && [[ ${BASH_REMATCH[0]} == *[1-9]* ]]; then
    passed=$((passed + BASH_REMATCH[1]))
    failed=$((failed + BASH_REMATCH[2]))
    [ "$status" -eq 0 ] || [ "${BASH_REMATCH[2]}" -gt 0 ] || failed=$((failed + 1))
  else
    echo "$1 ended without counting its tests (status $status)"
    failed=$((failed + 1))
  fi
  rm -f "$log"
}

# counted: shows the counts; fails when a check did, or when there was none.
counted() {
  echo "$passed passed, $failed failed"
  [ "$failed" -eq 0 ] && [ "$passed" -gt 0 ]
}
