# shellcheck shell=bash
# Counting checks in scripts, to be sourced. A script that ends with `counted` says "N passed, N failed".

passed=0
failed=0

# check NAME COMMAND...: runs the command and counts; shows what it prints only when it fails.
check() {
  local name=$1 output
  shift
  if output=$("$@" 2>&1); then
    passed=$((passed + 1))
    echo "ok      $name"
  else
    failed=$((failed + 1))
    printf 'FAILED  %s\n%s\n' "$name" "$output"
  fi
}

# counted: shows the counts; fails when a check did, or when there was none.
counted() {
  echo "$passed passed, $failed failed"
  [ "$failed" -eq 0 ] && [ "$passed" -gt 0 ]
}
