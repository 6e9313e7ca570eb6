# The one list of warnings, all of them errors.
add_library(tolvane_warnings INTERFACE)
target_compile_options(tolvane_warnings INTERFACE
  -Werror
  -Wall
  -Wextra
  -Wpedantic
  -Wcast-align
  -Wcast-qual
  -Wconversion
  -Wdouble-promotion
  -Wduplicated-branches
  -Wduplicated-cond
  -Wextra-semi
  -Wformat=2
  -Wimplicit-fallthrough
  -Wlogical-op
  -Wmissing-declarations
  -Wnon-virtual-dtor
  -Wnull-dereference
  -Wold-style-cast
  -Woverloaded-virtual
  -Wredundant-decls
  -Wshadow
  -Wsign-conversion
  -Wundef
  -Wunused
  -Wuseless-cast
)
