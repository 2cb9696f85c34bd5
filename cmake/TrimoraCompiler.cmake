# How every source of the project is compiled: C++20 without extensions, warnings as errors,
# and no fused multiply-add that the source did not ask for (a picture must come out the same
# on every processor).
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
# Assertions stay on; only Release drops them. Symbols tell functions and lines, which is what a backtrace
# needs, and cost a third less to build than full ones; -DCMAKE_BUILD_TYPE=Debug gives those.
# With the sanitizers too: at -O1 clang takes two to seven times as long for kernels full of their checks.
set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O2 -g1")
find_package(Threads REQUIRED)

add_library(trimora_compiler INTERFACE)
target_compile_options(trimora_compiler INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast
  -Woverloaded-virtual -Wcast-align -Wimplicit-fallthrough -Werror
  -ffp-contract=off -fno-math-errno)
# g++ 12 takes some plain string concatenations for copies that overlap or reach too far.
target_compile_options(trimora_compiler INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict;-Wno-array-bounds>)
target_link_libraries(trimora_compiler INTERFACE Threads::Threads)
# A program loads the libraries that it calls, not all that are named for it: each one is time until the window comes.
target_link_options(trimora_compiler INTERFACE LINKER:--as-needed)

# Most of the time that a test took to build went into optimising matchers that run once.
set(TRIMORA_TEST_OPTIONS $<IF:$<CXX_COMPILER_ID:GNU>,-Og,-O0>)
# For tests, after trimora_compiler, which it takes something back of: the compiler goes by the last word.
add_library(trimora_test_compiler INTERFACE)
if(TRIMORA_SANITIZE)
  # A half of what was left went into symbols and into watching the matchers for undefined behaviour, where it
  # is the floors that are watched.
  target_compile_options(trimora_test_compiler INTERFACE -g0 -fno-sanitize=undefined)
endif()

# What is shipped makes a slip in memory end the program instead of being put to use.
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
target_compile_options(trimora_compiler INTERFACE
  $<$<CONFIG:Release>:-fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2>)
target_link_options(trimora_compiler INTERFACE $<$<CONFIG:Release>:LINKER:-z,relro,-z,now>)

if(TRIMORA_SANITIZE)
  target_compile_options(trimora_compiler INTERFACE
    -fsanitize=${TRIMORA_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(trimora_compiler INTERFACE -fsanitize=${TRIMORA_SANITIZE})
  # For tests of what the sanitizers do otherwise: memory, stacks, fatal signals.
  target_compile_definitions(trimora_compiler INTERFACE TRIMORA_SANITIZED)
endif()
if(TRIMORA_COVERAGE)
  target_compile_options(trimora_compiler INTERFACE --coverage -fprofile-update=atomic)
  target_link_options(trimora_compiler INTERFACE --coverage)
endif()
