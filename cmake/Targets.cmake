# SPDX-License-Identifier: GPL-3.0-or-later
# How targets are declared. Each declaration is also written to architecture.txt in the build folder, which the
# architecture test holds against the #include lines of the sources.
file(WRITE ${CMAKE_BINARY_DIR}/architecture.txt "")

function(_mg_sources OUT FOLDER)
  file(GLOB found CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${FOLDER}/*.cpp ${CMAKE_SOURCE_DIR}/${FOLDER}/*.h
       ${CMAKE_SOURCE_DIR}/${FOLDER}/*.ui ${CMAKE_SOURCE_DIR}/${FOLDER}/*.qrc)
  set(${OUT} ${found} PARENT_SCOPE)
endfunction()

# The headers of the libraries that nearly every file of a kind reads, compiled once a kind and build folder.
# Sources still name what they use: the fuzz preset compiles them without this.
function(_mg_precompiled KIND LIBRARIES HEADERS)
  if(NOT MG_PCH)
    return()
  endif()
  set(source ${CMAKE_BINARY_DIR}/precompiled/${KIND}.cpp)
  file(CONFIGURE OUTPUT ${source} CONTENT "")
  add_library(precompiled_${KIND} OBJECT ${source})
  set_target_properties(precompiled_${KIND} PROPERTIES AUTOMOC OFF AUTOUIC OFF AUTORCC OFF)
  target_link_libraries(precompiled_${KIND} PRIVATE ${LIBRARIES})
  target_precompile_headers(precompiled_${KIND} PRIVATE ${HEADERS})
endfunction()

_mg_precompiled(LOGIC "Qt6::Core"
  "<QObject>;<QString>;<QStringList>;<QPointer>;<QCoreApplication>;<QFile>;<QDateTime>;<QHash>;<algorithm>;<array>;<functional>;<memory>;<optional>;<vector>")
_mg_precompiled(UI "Qt6::Core;Qt6::Gui;Qt6::Widgets"
  "<QtWidgets>;<algorithm>;<array>;<functional>;<memory>;<optional>;<vector>")

function(_mg_use_precompiled NAME KIND)
  if(MG_PCH)
    target_precompile_headers(${NAME} REUSE_FROM precompiled_${KIND})
  endif()
endfunction()

# mg_library(NAME LOGIC|UI FOLDER USES target...)
function(mg_library NAME KIND FOLDER)
  cmake_parse_arguments(ARG "" "" "USES" ${ARGN})
  set(dir ${FOLDER})
  if(KIND STREQUAL "UI")
    set(dir ${FOLDER}/ui)
  endif()
  _mg_sources(sources ${dir})
  file(APPEND ${CMAKE_BINARY_DIR}/architecture.txt "${NAME}|${KIND}|${dir}|${ARG_USES}\n")
  if(NOT sources MATCHES "\\.cpp")
    add_library(${NAME} INTERFACE)
    target_include_directories(${NAME} INTERFACE ${CMAKE_SOURCE_DIR}/src ${CMAKE_SOURCE_DIR})
    target_link_libraries(${NAME} INTERFACE ${ARG_USES})
    return()
  endif()
  add_library(${NAME} STATIC ${sources})
  # A header that is new must reach the meta-object compiler in a build folder that exists already.
  set(headers ${sources})
  list(FILTER headers INCLUDE REGEX "\\.h$")
  set_target_properties(${NAME} PROPERTIES AUTOGEN_TARGET_DEPENDS "${headers}")
  target_include_directories(${NAME} PUBLIC ${CMAKE_SOURCE_DIR}/src ${CMAKE_SOURCE_DIR})
  target_link_libraries(${NAME} PUBLIC ${ARG_USES})
  _mg_use_precompiled(${NAME} ${KIND})
  target_compile_definitions(${NAME} PRIVATE
    MG_VERSION_MAJOR=${PROJECT_VERSION_MAJOR} MG_VERSION_MINOR=${PROJECT_VERSION_MINOR}
    MG_VERSION_REVISION=${PROJECT_VERSION_PATCH})
endfunction()

# mg_program(NAME FOLDER USES target...)
function(mg_program NAME FOLDER)
  cmake_parse_arguments(ARG "" "" "USES" ${ARGN})
  _mg_sources(sources ${FOLDER})
  file(APPEND ${CMAKE_BINARY_DIR}/architecture.txt "${NAME}|PROGRAM|${FOLDER}|${ARG_USES}\n")
  if(NOT sources MATCHES "\\.cpp")
    return()
  endif()
  add_executable(${NAME} ${sources})
  target_link_libraries(${NAME} PRIVATE ${ARG_USES})
  target_compile_definitions(${NAME} PRIVATE MG_VERSION="${PROJECT_VERSION}")
endfunction()

# mg_tests(NAME FOLDER USES target...): one program and one ctest entry for the test files of a folder.
# CORE: the program loads no widgets, so that it proves what runs without them.
function(mg_tests NAME FOLDER)
  cmake_parse_arguments(ARG "CORE" "TIMEOUT" "USES;NEEDS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${FOLDER}/*.cpp ${CMAKE_SOURCE_DIR}/${FOLDER}/*.h)
  if(NOT sources MATCHES "\\.cpp")
    return()
  endif()
  add_executable(test_${NAME} ${sources})
  if(ARG_CORE)
    target_link_libraries(test_${NAME} PRIVATE ${ARG_USES} test_core)
  else()
    target_link_libraries(test_${NAME} PRIVATE ${ARG_USES} test_support)
    _mg_use_precompiled(test_${NAME} TEST)
  endif()
  target_compile_definitions(test_${NAME} PRIVATE MG_SOURCE_DIR="${CMAKE_SOURCE_DIR}" MG_BINARY_DIR="${CMAKE_BINARY_DIR}"
    MG_PROGRAM_DIR="${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
  foreach(program ${ARG_NEEDS})
    if(TARGET ${program})
      add_dependencies(test_${NAME} ${program})
    endif()
  endforeach()
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 300)
  endif()
  add_test(NAME ${NAME} COMMAND test_${NAME})
  set_tests_properties(${NAME} PROPERTIES TIMEOUT ${ARG_TIMEOUT})
endfunction()

# mg_bench(NAME FILE USES target...)
function(mg_bench NAME FILE)
  cmake_parse_arguments(ARG "" "" "USES" ${ARGN})
  add_executable(bench_${NAME} ${FILE})
  target_link_libraries(bench_${NAME} PRIVATE ${ARG_USES} benchmark::benchmark)
  target_compile_definitions(bench_${NAME} PRIVATE MG_SOURCE_DIR="${CMAKE_SOURCE_DIR}"
    MG_PROGRAM_DIR="${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
endfunction()

# mg_fuzz(NAME FILE USES target...): built only by the fuzz preset, where the target "fuzz" builds them all; its corpus
# lies in tests/fuzz/corpus/NAME.
if(MG_FUZZ)
  add_custom_target(fuzz)
endif()
function(mg_fuzz NAME FILE)
  cmake_parse_arguments(ARG "" "" "USES" ${ARGN})
  if(NOT MG_FUZZ)
    return()
  endif()
  add_executable(fuzz_${NAME} ${FILE})
  target_link_libraries(fuzz_${NAME} PRIVATE ${ARG_USES})
  target_link_options(fuzz_${NAME} PRIVATE -fsanitize=fuzzer)
  add_dependencies(fuzz fuzz_${NAME})
endfunction()
