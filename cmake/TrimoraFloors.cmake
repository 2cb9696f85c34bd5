# Floors of the house. src/layers.txt is the one table of who may include whom: a floor's CMake
# target links exactly the floors that its line names, and its headers are reachable only through
# that link, so a forbidden include does not compile.
#
# Headers are included as "floor/Header.h". To let each library expose its own folder and nothing
# beside it, the build tree holds one folder per floor with a single link to the real one.

# The lines of the table look so:  name: floor floor ...   (# begins a comment)
file(STRINGS ${CMAKE_SOURCE_DIR}/src/layers.txt _layer_lines REGEX "^[a-z]")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/layers.txt)
foreach(_line IN LISTS _layer_lines)
  string(REGEX MATCH "^([a-z/]+):([^#]*)" _ "${_line}")
  set(_floor ${CMAKE_MATCH_1})
  separate_arguments(_below UNIX_COMMAND "${CMAKE_MATCH_2}")
  set(TRIMORA_FLOOR_${_floor}_BELOW "${_below}")
endforeach()

function(_trimora_target_name out folder)
  string(REPLACE "/" "_" name ${folder})
  set(${out} trimora_${name} PARENT_SCOPE)
endfunction()

# trimora_floor(FOLDER [QT] SOURCES ... [LIBRARIES ...] [PUBLIC_LIBRARIES ...] [TESTS ...] [TEST_LIBRARIES ...])
#   FOLDER          the folder below src/, as in layers.txt
#   LIBRARIES       outside libraries that only the floor's sources need
#   PUBLIC_LIBRARIES  outside libraries that its headers need too
#   TESTS           test sources, linked with this floor, those below it and src/testing
#   QT              the floor needs Qt: its sources may hold meta objects, its tests run in a
#                   QApplication on the offscreen platform and fail at any warning of the toolkit
function(trimora_floor folder)
  cmake_parse_arguments(ARG "QT" "" "SOURCES;LIBRARIES;PUBLIC_LIBRARIES;TESTS;TEST_LIBRARIES" ${ARGN})
  if(NOT DEFINED TRIMORA_FLOOR_${folder}_BELOW)
    message(FATAL_ERROR "${folder} has no line in src/layers.txt")
  endif()
  _trimora_target_name(target ${folder})

  set(exposed ${CMAKE_BINARY_DIR}/floors/${folder})
  cmake_path(GET folder PARENT_PATH parent)
  file(MAKE_DIRECTORY ${exposed}.include/${parent})
  file(CREATE_LINK ${CMAKE_SOURCE_DIR}/src/${folder} ${exposed}.include/${folder} SYMBOLIC)

  if(ARG_SOURCES)
    add_library(${target} STATIC ${ARG_SOURCES})
    set(scope PUBLIC)
    target_link_libraries(${target} PRIVATE trimora_compiler ${ARG_LIBRARIES})
    if(TRIMORA_COVERAGE AND NOT folder STREQUAL "cutengine/kernels")
      # What is inlined brings branches of other people's headers onto our lines. The kernels would take for ever.
      target_compile_options(${target} PRIVATE -O0)
    endif()
    if(ARG_QT)
      trimora_precompile(${target} floor_qt)
    else()
      trimora_precompile(${target} floor)
    endif()
  else()
    add_library(${target} INTERFACE)
    set(scope INTERFACE)
  endif()
  target_include_directories(${target} ${scope} ${exposed}.include)
  target_link_libraries(${target} ${scope} ${ARG_PUBLIC_LIBRARIES} Threads::Threads)
  foreach(below IN LISTS TRIMORA_FLOOR_${folder}_BELOW)
    _trimora_target_name(below_target ${below})
    target_link_libraries(${target} ${scope} $<TARGET_NAME_IF_EXISTS:${below_target}>)
  endforeach()

  if(TRIMORA_TESTS AND ARG_TESTS AND (TRIMORA_QT_TESTS OR NOT ARG_QT))
    set(qt)
    if(ARG_QT)
      set(qt QT)
    endif()
    trimora_test(${target}_test ${qt} SOURCES ${ARG_TESTS} LIBRARIES ${target} ${ARG_TEST_LIBRARIES})
  endif()
endfunction()

# trimora_test(NAME [QT [OWN_APPLICATION]] SOURCES ... LIBRARIES ...): one GoogleTest program whose tests CTest
# runs one by one. OWN_APPLICATION: its tests make the toolkit's application object themselves.
include(GoogleTest)
function(trimora_test name)
  cmake_parse_arguments(ARG "QT;OWN_APPLICATION" "" "SOURCES;LIBRARIES;PROPERTIES" ${ARGN})
  if(ARG_QT)
    if(ARG_OWN_APPLICATION)
      list(APPEND ARG_LIBRARIES Qt6::Test)
    else()
      list(APPEND ARG_LIBRARIES trimora_qt_test)
    endif()
    list(APPEND ARG_PROPERTIES ENVIRONMENT QT_QPA_PLATFORM=offscreen ENVIRONMENT_MODIFICATION
      LSAN_OPTIONS=set:suppressions=${CMAKE_SOURCE_DIR}/tests/lsan-suppressions.txt:print_suppressions=0)
  endif()
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE trimora_compiler trimora_test_compiler trimora_testing ${ARG_LIBRARIES}
    GTest::gmock)
  target_compile_options(${name} PRIVATE ${TRIMORA_TEST_OPTIONS})
  if(TRIMORA_PRECOMPILED)
    # Much of a test is templates of matchers, which are compiled once for each source: four sources in one take
    # two thirds of the time.
    set_target_properties(${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 4)
    list(FILTER ARG_SOURCES EXCLUDE REGEX "Test\\.cpp$")
    set_source_files_properties(${ARG_SOURCES} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
  endif()
  if(ARG_QT)
    trimora_precompile(${name} test_qt)
  else()
    trimora_precompile(${name} test)
  endif()
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 300 ${ARG_PROPERTIES})
endfunction()
