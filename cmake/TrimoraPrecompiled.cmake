# Headers that most sources include, parsed once for each kind of target instead of once for each source:
# that halves the time of a whole build. Every source still includes what it uses, so that it says what it
# needs; the presets without precompiled headers (asan for the floors below Qt, release, and coverage for tests,
# which are compiled one by one there) show that it does.
#
# A kind is compiled by one small target of its own with the very flags of the targets that use it.
set(_standard_headers <algorithm> <array> <cmath> <cstdint> <cstring> <filesystem> <functional> <map> <memory>
    <mutex> <optional> <span> <string> <string_view> <utility> <vector>)
set(_test_headers <gmock/gmock.h> <gtest/gtest.h>)
set(_toolkit_headers <QAbstractButton> <QApplication> <QPainter> <QWidget> <QtEvents>)

function(_trimora_precompiled kind type)
  cmake_parse_arguments(ARG "" "" "HEADERS;LIBRARIES" ${ARGN})
  set(target trimora_precompiled_${kind})
  set(stub ${CMAKE_BINARY_DIR}/precompiled/${kind}.cpp)
  if(NOT EXISTS ${stub})
    file(WRITE ${stub} "int main() {}\n")
  endif()
  if(type STREQUAL EXECUTABLE)
    add_executable(${target} ${stub})
    set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/precompiled)
  else()
    add_library(${target} STATIC ${stub})
  endif()
  target_link_libraries(${target} PRIVATE trimora_compiler ${ARG_LIBRARIES})
  if(type STREQUAL EXECUTABLE)
    target_compile_options(${target} PRIVATE ${TRIMORA_TEST_OPTIONS})
  endif()
  target_precompile_headers(${target} PRIVATE ${ARG_HEADERS})
endfunction()

if(TRIMORA_PRECOMPILED)
  _trimora_precompiled(floor LIBRARY HEADERS ${_standard_headers})
  if(TRIMORA_TESTS)
    _trimora_precompiled(test EXECUTABLE HEADERS ${_standard_headers} ${_test_headers}
      LIBRARIES trimora_test_compiler GTest::gmock)
  endif()
  if(TRIMORA_QT)
    _trimora_precompiled(floor_qt LIBRARY HEADERS ${_standard_headers} ${_toolkit_headers} LIBRARIES Qt6::Widgets)
    if(TRIMORA_TESTS)
      # Without Qt6::Test, which tells every folder another macro: the compiler would refuse the headers there.
      _trimora_precompiled(test_qt EXECUTABLE LIBRARIES trimora_test_compiler GTest::gmock Qt6::Widgets
        HEADERS ${_standard_headers} ${_test_headers} ${_toolkit_headers})
    endif()
  endif()
endif()

# trimora_precompile(TARGET KIND): the target takes the headers of its kind (floor or test; _qt with the toolkit).
function(trimora_precompile target kind)
  if(TRIMORA_PRECOMPILED STREQUAL "LARGE" AND kind STREQUAL "floor")
    return()
  endif()
  if(TRIMORA_PRECOMPILED)
    target_precompile_headers(${target} REUSE_FROM trimora_precompiled_${kind})
  endif()
endfunction()
