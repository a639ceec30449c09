# What a builder may choose, and the compiler settings that every target shares.

include(CMakeDependentOption)
option(VAMBA_PICTURES "Draw boards as PNG, SVG and PDF (needs Pango and Cairo)" ON)
cmake_dependent_option(VAMBA_DESKTOP "Show boards on the desktop (needs GTK 3 and gtk-layer-shell)" ON "VAMBA_PICTURES" OFF)
option(BUILD_TESTING "Build the tests (scripts/packages-test.txt lists what they need)" OFF)
option(VAMBA_BENCHES "Build the benchmarks" OFF)
option(VAMBA_FUZZERS "Build the fuzzers (clang only)" OFF)
option(VAMBA_WARNINGS_AS_ERRORS "Treat compiler warnings as errors" OFF)
set(VAMBA_SANITIZE "" CACHE STRING "Sanitizers to build with: 'address,undefined' or 'thread'")

set(CMAKE_CXX_STANDARD 23)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "" FORCE)
endif()

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()

if((BUILD_TESTING OR VAMBA_BENCHES) AND NOT VAMBA_DESKTOP)
  message(FATAL_ERROR "The tests and benchmarks are of the whole program: turn VAMBA_PICTURES and VAMBA_DESKTOP on")
endif()

# Position-independent executables, also where the compiler does not default to them.
include(CheckPIESupported)
check_pie_supported(LANGUAGES C CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

add_library(vamba_compile_options INTERFACE)
target_compile_options(vamba_compile_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wcast-qual -Wconversion -Wsign-conversion
  $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual>
  -Wno-missing-field-initializers # designated initialisers leave defaulted members out on purpose
  $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized> # g++ 12 sees moved-from variants as uninitialised
  $<$<CXX_COMPILER_ID:GNU>:-Wno-array-bounds> # g++ 12 sees long strings as written over the room of short ones
  $<$<AND:$<CXX_COMPILER_ID:GNU>,$<BOOL:$<TARGET_PROPERTY:UNITY_BUILD>>>:-Wno-subobject-linkage> # files compiled as one are no header with private names
  # What g++ checks better: clang looks into headers of the C and C++ libraries, and across files compiled as one.
  $<$<CXX_COMPILER_ID:Clang>:-Wno-c99-extensions -Wno-deprecated-declarations -Wno-shadow>
  $<$<CXX_COMPILER_ID:Clang>:SHELL:-Xclang -fno-pch-timestamp> # the same precompiled headers from the same files, for ccache
  $<$<BOOL:${VAMBA_WARNINGS_AS_ERRORS}>:-Werror>)
target_link_options(vamba_compile_options INTERFACE -Wl,--as-needed)
if(NOT VAMBA_SANITIZE)
  # Unused functions are left out, so that a start touches fewer pages.
  target_compile_options(vamba_compile_options INTERFACE -ffunction-sections -fdata-sections)
  target_link_options(vamba_compile_options INTERFACE -Wl,--gc-sections)
endif()

# Hardening: limit what a memory error can do. No file names the folder that it was built in, and two builds in two
# folders give the same bytes: with or without ccache, which may pass the compiler relative paths.
file(RELATIVE_PATH source_from_build ${CMAKE_BINARY_DIR} ${CMAKE_SOURCE_DIR}/src)
target_compile_options(vamba_compile_options INTERFACE
  -fstack-protector-strong -fstack-clash-protection
  $<$<STREQUAL:${CMAKE_SYSTEM_PROCESSOR},x86_64>:-fcf-protection>
  -ffile-prefix-map=${CMAKE_SOURCE_DIR}=. -ffile-prefix-map=${CMAKE_BINARY_DIR}=.
  -ffile-prefix-map=${source_from_build}=./src)
target_link_options(vamba_compile_options INTERFACE -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
string(TOUPPER "${CMAKE_BUILD_TYPE}" buildType)
set(vamba_checks_library_calls OFF) # the checks need an optimiser
if(NOT VAMBA_SANITIZE AND "${CMAKE_CXX_FLAGS} ${CMAKE_CXX_FLAGS_${buildType}}" MATCHES "-O[123s]")
  set(vamba_checks_library_calls ON)
  target_compile_options(vamba_compile_options INTERFACE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
endif()

if(VAMBA_SANITIZE)
  target_compile_options(vamba_compile_options INTERFACE
    -fsanitize=${VAMBA_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(vamba_compile_options INTERFACE -fsanitize=${VAMBA_SANITIZE})
  target_compile_definitions(vamba_compile_options INTERFACE VAMBA_SANITIZED)
endif()
if(VAMBA_SANITIZE MATCHES "address" AND NOT VAMBA_FUZZERS)
  # AddressSanitizer's runtime is a library of its own, which tests load before those that they add to a program.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    set(runtime libclang_rt.asan-${CMAKE_SYSTEM_PROCESSOR}.so)
  else()
    set(runtime libasan.so)
  endif()
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${runtime}
    OUTPUT_VARIABLE vamba_address_sanitizer OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    get_filename_component(folder ${vamba_address_sanitizer} DIRECTORY)
    target_link_options(vamba_compile_options INTERFACE -shared-libasan -Wl,-rpath,${folder})
  endif()
endif()
if(VAMBA_FUZZERS)
  # Coverage feedback from the libraries under test too; each fuzzer links its own main.
  target_compile_options(vamba_compile_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
