# Compiles every public header alone: one generated source a header, so that a header which leans
# on what somebody included before it does not build. The second include finds a missing guard.

set(sources)
foreach(header IN LISTS FUZZYLOGIC_PUBLIC_HEADERS)
  cmake_path(RELATIVE_PATH header BASE_DIRECTORY ${PROJECT_SOURCE_DIR})
  set(source ${PROJECT_BINARY_DIR}/check_headers/${header}.cpp)
  file(CONFIGURE OUTPUT ${source} CONTENT "#include \"@header@\"\n#include \"@header@\"\n" @ONLY)
  list(APPEND sources ${source})
endforeach()

add_library(fuzzylogic_check_headers OBJECT ${sources})
target_link_libraries(fuzzylogic_check_headers PRIVATE fuzzylogic)
