# Shared compile settings and the helpers that every folder's CMakeLists uses.

add_library(orb_settings INTERFACE)
target_compile_options(orb_settings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
                                              -Wold-style-cast -Woverloaded-virtual -Wswitch)
if(ORB_WERROR)
  target_compile_options(orb_settings INTERFACE -Werror)
endif()
if(ORB_SANITIZE)
  set(ORB_SANITIZER_FLAGS -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_compile_options(orb_settings INTERFACE ${ORB_SANITIZER_FLAGS})
  target_link_options(orb_settings INTERFACE ${ORB_SANITIZER_FLAGS})
endif()

# orb_host_library(NAME SOURCES ... DEPENDS ...): one shared library of the reference host.
function(orb_host_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS" ${ARGN})
  add_library(${name} SHARED ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/host)
  target_link_libraries(${name} PUBLIC ${ARG_DEPENDS} PRIVATE orb_settings)
endfunction()

# orb_test(NAME SOURCES ... DEPENDS ...): one GoogleTest program, registered with CTest.
function(orb_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_DEPENDS} GTest::gtest GTest::gmock GTest::gtest_main orb_settings)
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST)
endfunction()

# orb_benchmark(NAME SOURCES ... DEPENDS ...): one Google Benchmark program.
function(orb_benchmark name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_DEPENDS} benchmark::benchmark benchmark::benchmark_main orb_settings)
endfunction()
