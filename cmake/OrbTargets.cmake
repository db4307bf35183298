# Shared compile settings and the helpers that every folder's CMakeLists uses.

add_library(orb_settings INTERFACE)
target_compile_options(orb_settings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
                                              -Wold-style-cast -Woverloaded-virtual -Wswitch)
# GCC 12 at -O3 reports std::string's own operator+ as an overlapping memcpy (GCC bug 105651), a false
# positive that no rewrite of the callers avoids for good; the check is dropped for that compiler only.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 12
   AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(orb_settings INTERFACE -Wno-restrict)
endif()
if(ORB_WERROR)
  target_compile_options(orb_settings INTERFACE -Werror)
endif()
if(ORB_SANITIZE)
  set(ORB_SANITIZER_FLAGS -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_compile_options(orb_settings INTERFACE ${ORB_SANITIZER_FLAGS})
  target_link_options(orb_settings INTERFACE ${ORB_SANITIZER_FLAGS})
endif()
# The fuzz build instruments every library for coverage as well as the sanitizers; fuzz/ links the
# fuzzers themselves with libFuzzer's main.
if(ORB_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    message(FATAL_ERROR "ORB_FUZZ needs clang (-DCMAKE_CXX_COMPILER=clang++)")
  endif()
  set(ORB_SANITIZER_FLAGS -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_compile_options(orb_settings INTERFACE ${ORB_SANITIZER_FLAGS} -fsanitize=fuzzer-no-link)
  target_link_options(orb_settings INTERFACE ${ORB_SANITIZER_FLAGS})
endif()

# Where an installed tree keeps its headers; the build tree uses the source folders.
set(ORB_INSTALL_INCLUDE_DIR ${CMAKE_INSTALL_INCLUDEDIR}/orbdatatypes)
# Installed libraries and programs find their siblings in the prefix's library folder.
set(ORB_INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")

# orb_versioned_library(TARGET): the file name carries the version and the SONAME its major number
# (liborbdatatypes.so.1), so that an incompatible release installs beside this one.
function(orb_versioned_library target)
  set_target_properties(${target} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
endfunction()

# orb_host_library(NAME SOURCES ... DEPENDS ...): one shared library of the reference host, installed
# with its headers (host/NAME/**.h and .def) and exported as orbdatatypes::NAME.
function(orb_host_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS" ${ARGN})
  add_library(${name} SHARED ${ARG_SOURCES})
  add_library(orbdatatypes::${name} ALIAS ${name})
  target_include_directories(${name} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/host>
                                            $<INSTALL_INTERFACE:${ORB_INSTALL_INCLUDE_DIR}>)
  target_link_libraries(${name} PUBLIC ${ARG_DEPENDS} PRIVATE orb_settings)
  target_compile_features(${name} PUBLIC cxx_std_20)
  # The file carries the host prefix (liborbhost-utillib.so.1) so that it cannot collide with a library
  # of the user's; the target keeps its short name.
  # Only what the headers mark (KX_HOST_API, or a KX_HOST_API_BEGIN/END run) is exported.
  set_target_properties(${name} PROPERTIES OUTPUT_NAME orbhost-${name} INSTALL_RPATH "$ORIGIN"
                                           CXX_VISIBILITY_PRESET hidden)
  orb_versioned_library(${name})
  install(TARGETS ${name} EXPORT orbdatatypesTargets
          LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development)
  install(DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}/ DESTINATION ${ORB_INSTALL_INCLUDE_DIR}/${name}
          COMPONENT development FILES_MATCHING PATTERN "*.h" PATTERN "*.def")
endfunction()

# orb_with_jvm_sanitizer_options(TARGET): in a sanitized build, the sanitizer defaults that a program
# running a Java machine in its process needs (host/javabridgelib/jvm_sanitizer_options.cpp).
function(orb_with_jvm_sanitizer_options target)
  if(ORB_SANITIZE)
    target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/host/javabridgelib/jvm_sanitizer_options.cpp)
    target_compile_definitions(${target}
      PRIVATE ORB_JVM_LEAK_SUPPRESSIONS="${PROJECT_SOURCE_DIR}/host/javabridgelib/lsan-jvm.supp")
  endif()
endfunction()

# orb_test(NAME SOURCES ... DEPENDS ... [LABELS ...]): one GoogleTest program, registered with CTest.
function(orb_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS;LABELS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_DEPENDS} GTest::gtest GTest::gmock GTest::gtest_main orb_settings)
  if(ARG_LABELS)
    if("java" IN_LIST ARG_LABELS)
      orb_with_jvm_sanitizer_options(${name})
    endif()
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST PROPERTIES LABELS "${ARG_LABELS}")
  else()
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST)
  endif()
endfunction()

# orb_benchmark(NAME SOURCES ... DEPENDS ...): one Google Benchmark program.
function(orb_benchmark name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_DEPENDS} benchmark::benchmark benchmark::benchmark_main orb_settings)
endfunction()
