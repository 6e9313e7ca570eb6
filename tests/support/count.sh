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

# counted: shows the counts; fails when a check did, or when there was none.
counted() {
  echo "$passed passed, $failed failed"
  [ "$failed" -eq 0 ] && [ "$passed" -gt 0 ]
}
