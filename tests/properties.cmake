# Properties of the programs' tests. ctest includes this file after it has listed the tests.

set(tests ${tolvane_tests_TESTS} ${tolvane_work_tests_TESTS})
set(heavy ${tests})
list(FILTER heavy INCLUDE REGEX Heavy)
set_tests_properties(${heavy} PROPERTIES LABELS heavy TIMEOUT 3600)

# A sanitizer's stop must not look like the status 1 of a command that ran.
set_tests_properties(${tests} PROPERTIES
  ENVIRONMENT "ASAN_OPTIONS=exitcode=99;UBSAN_OPTIONS=exitcode=99:print_stacktrace=1")
