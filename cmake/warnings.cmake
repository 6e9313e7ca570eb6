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
  -Wextra-semi
  -Wformat=2
  -Wimplicit-fallthrough
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
)
# g++ has some that clang++, which builds the fuzz targets, does not know.
target_compile_options(tolvane_warnings INTERFACE
  $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-branches;-Wduplicated-cond;-Wlogical-op;-Wuseless-cast>
)
