# join(TARGET): compiles the sources of each directory as one where the preset's TOLVANE_JOIN matches the target's name. The
# headers take half of the time to compile a source; joined, the directory's sources read them once.
set(TOLVANE_JOIN "^$" CACHE STRING "Regular expression of the targets that join the sources of each directory")
function(join target)
  get_target_property(sources ${target} SOURCES)
  foreach(source ${sources})
    cmake_path(GET source PARENT_PATH directory)
    cmake_path(GET directory FILENAME directory)
    set_source_files_properties(${source} PROPERTIES UNITY_GROUP "${directory}")
  endforeach()
  if(target MATCHES "${TOLVANE_JOIN}")
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
  endif()
endfunction()
