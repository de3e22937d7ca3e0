# The rules that every target of the project shares.

add_library(velumar_options INTERFACE)
target_include_directories(velumar_options INTERFACE ${CMAKE_SOURCE_DIR}/src)
if(MSVC)
  target_compile_options(velumar_options INTERFACE /W3 /utf-8 /permissive- /fp:precise)
else()
  target_compile_options(velumar_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wnon-virtual-dtor
    -Wold-style-cast -Woverloaded-virtual -Werror)
  # An exact replay needs exact floats: no fused or reordered arithmetic.
  target_compile_options(velumar_options INTERFACE -ffp-contract=off)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 sees overlapping copies in inlined std::string insertions, and uninitialised texts in
  # moved std::variants, where there are none.
  target_compile_options(velumar_options INTERFACE -Wno-restrict -Wno-maybe-uninitialized)
endif()
if(MINGW)
  # GCC assumes that an inline function changes the registers that its own copy changes, but the
  # linker may keep another object's copy.
  target_compile_options(velumar_options INTERFACE -fno-ipa-ra)
endif()
if(WIN32)
  # Windows 10, wide functions, and no macros that take over names of ours.
  target_compile_definitions(velumar_options INTERFACE
    NOMINMAX UNICODE WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0A00)
endif()
if(UNIX)
  # A program loads only the libraries that it calls; velumar-cli needs no network.
  target_link_options(velumar_options INTERFACE -Wl,--as-needed)
endif()
if(VELUMAR_SANITIZE)
  target_compile_options(velumar_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize=vptr -fno-sanitize-recover=all
    -fno-omit-frame-pointer)
  target_link_options(velumar_options INTERFACE -fsanitize=address,undefined)
endif()

if(VELUMAR_COVERAGE)
  target_compile_options(velumar_options INTERFACE -fprofile-instr-generate -fcoverage-mapping)
  target_link_options(velumar_options INTERFACE -fprofile-instr-generate)
endif()

if(VELUMAR_FUZZ)
  # Every library reports to the fuzzer which of its branches an input has taken.
  target_compile_options(velumar_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

# One library per folder of src/ that has a CMakeLists.txt, subfolders too. A library links and
# includes only what its USES and PRIVATE name, and what those use, so a dependency that points the
# wrong way fails the configuration.
#   velumar_library(platform_posix SOURCES file_lock.cpp ... USES base platform)
function(velumar_library name)
  cmake_parse_arguments(LIB "" "" "SOURCES;USES;PRIVATE" ${ARGN})
  set(target velumar_${name})
  add_library(${target} STATIC ${LIB_SOURCES})
  target_link_libraries(${target} PUBLIC velumar_options PRIVATE ${LIB_PRIVATE})
  foreach(use IN LISTS LIB_USES)
    target_link_libraries(${target} PUBLIC velumar_${use})
  endforeach()
  set(used ${LIB_USES} ${LIB_PRIVATE})
  list(TRANSFORM used REPLACE "^velumar_" "")
  velumar_folder_of(${CMAKE_CURRENT_SOURCE_DIR} folder)
  velumar_set_reach(${name} "${used}" ${folder})
  velumar_check_includes(${name} ${folder} "${LIB_SOURCES}")
endfunction()

# Compiles the signals of a library's classes: of each header that says Q_OBJECT. CMake's AUTOMOC
# gives the meta-object compiler every include path, and it then reads the toolkit's headers again for
# each of ours: a quarter of the time of a build.
function(velumar_signals name)
  file(GLOB headers CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  foreach(header IN LISTS headers)
    file(STRINGS ${header} objects REGEX "^ *Q_OBJECT$")
    if(objects)
      qt_wrap_cpp(compiled ${header})
    endif()
  endforeach()
  target_sources(velumar_${name} PRIVATE ${compiled})
endfunction()

# Reads the toolkit's headers as velumar_charts has compiled them. A unity build doesn't: it reads them
# only a few times, which takes less time than compiling them.
function(velumar_use_toolkit_headers target)
  if(NOT CMAKE_UNITY_BUILD)
    target_precompile_headers(${target} REUSE_FROM velumar_charts)
  endif()
endfunction()

# Several libraries under one name, to be linked and used together.
function(velumar_bundle name)
  cmake_parse_arguments(BUNDLE "" "" "USES" ${ARGN})
  add_library(velumar_${name} INTERFACE)
  foreach(use IN LISTS BUNDLE_USES)
    target_link_libraries(velumar_${name} INTERFACE velumar_${use})
  endforeach()
  velumar_set_reach(${name} "${BUNDLE_USES}")
endfunction()

# Sets `result` to the library's folder that a path below src/ belongs to: "platform/posix" for
# src/platform/posix/locale.h.
function(velumar_folder_of path result)
  while(NOT EXISTS ${path}/CMakeLists.txt)
    cmake_path(GET path PARENT_PATH path)
  endwhile()
  file(RELATIVE_PATH folder ${CMAKE_SOURCE_DIR}/src ${path})
  set(${result} ${folder} PARENT_SCOPE)
endfunction()

# Notes which folders the users of a library may include: its own (ARGN) and those of its uses.
function(velumar_set_reach name uses)
  set(reach ${ARGN})
  foreach(use IN LISTS uses)
    get_property(used GLOBAL PROPERTY velumar_reach_${use})
    list(APPEND reach ${used})
  endforeach()
  list(REMOVE_DUPLICATES reach)
  set_property(GLOBAL PROPERTY velumar_reach_${name} ${reach})
endfunction()

# Fails the configuration if a file of a folder includes a header of a folder that it may not use.
function(velumar_check_includes name folder sources)
  get_property(allowed GLOBAL PROPERTY velumar_reach_${name})
  file(GLOB_RECURSE files CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  list(TRANSFORM sources PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  list(APPEND files ${sources})
  foreach(file IN LISTS files)
    velumar_folder_of(${file} owner)
    if(NOT owner STREQUAL folder)
      continue()
    endif()
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
    file(STRINGS ${file} includes REGEX "^#include \"[a-z0-9_]+/")
    foreach(line IN LISTS includes)
      string(REGEX REPLACE "^#include \"([^\"]*)\".*" "\\1" header "${line}")
      velumar_folder_of(${CMAKE_SOURCE_DIR}/src/${header} included)
      if(NOT included IN_LIST allowed)
        message(FATAL_ERROR "${file}: ${name} may not use ${header} (allowed: ${allowed})")
      endif()
    endforeach()
  endforeach()
endfunction()

# A program that draws without a display: a static Qt holds only the plugins that are asked for.
function(velumar_draws_offscreen target)
  find_package(Qt6 REQUIRED COMPONENTS Gui)
  if(TARGET Qt6::QOffscreenIntegrationPlugin)
    qt_import_plugins(${target} INCLUDE Qt6::QOffscreenIntegrationPlugin)
  endif()
endfunction()

# One test program per folder of tests/.
function(velumar_test name)
  cmake_parse_arguments(TEST "" "" "SOURCES;USES" ${ARGN})
  set(target ${name}_tests)
  add_executable(${target} ${TEST_SOURCES})
  target_include_directories(${target} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  target_link_libraries(${target} PRIVATE velumar_options GTest::gtest_main GTest::gmock)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # GCC 12 sees writes beyond short texts that are put together in one expression.
    target_compile_options(${target} PRIVATE -Wno-array-bounds -Wno-stringop-overflow)
  endif()
  target_precompile_headers(${target} REUSE_FROM velumar_test_headers)
  foreach(use IN LISTS TEST_USES)
    target_link_libraries(${target} PRIVATE velumar_${use})
  endforeach()
  set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  add_test(NAME ${name} COMMAND ${target})
endfunction()
