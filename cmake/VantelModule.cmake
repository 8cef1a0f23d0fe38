# One static library per module folder: public headers in <Module>/include/<Module>/,
# sources in <Module>/src/. Sources are globbed so that adding a type means adding
# its files, nothing else.
function(vantel_module name)
  cmake_parse_arguments(ARG "" "" "PUBLIC_DEPS;PRIVATE_DEPS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/src/*.cpp)
  if(NOT sources)
    # A module whose code has not arrived yet still takes part in the graph.
    add_library(${name} INTERFACE)
    target_include_directories(${name} INTERFACE
      $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/include>
      $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
    target_link_libraries(${name} INTERFACE ${ARG_PUBLIC_DEPS})
    return()
  endif()
  add_library(${name} STATIC ${sources})
  # Position-independent, so that a plugin (Dolphin's thumbnailer) and SDK
  # users' shared libraries can link the archives too.
  set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE ON)
  target_include_directories(${name} PUBLIC
    $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/include>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  target_link_libraries(${name} PUBLIC ${ARG_PUBLIC_DEPS} PRIVATE ${ARG_PRIVATE_DEPS})
  target_compile_features(${name} PUBLIC cxx_std_20)
  if(VANTEL_SANITIZERS)
    # Instrumented archives call into the sanitizers' runtime, so every
    # program linking them needs it, installed consumers included.
    target_link_options(${name} INTERFACE -fsanitize=${VANTEL_SANITIZERS})
  endif()
endfunction()

# One GoogleTest executable per test source: add_vantel_test(Graphics2 color)
# builds tests/Graphics2/color_test.cpp linked against the module. A folder
# that sets VANTEL_TEST_TIMEOUT (seconds) gives each of its cases that limit.
function(add_vantel_test module name)
  set(target ${module}_${name}_test)
  add_executable(${target} ${CMAKE_CURRENT_SOURCE_DIR}/${name}_test.cpp ${ARGN})
  target_link_libraries(${target} PRIVATE ${module} vantel_test_support GTest::gtest GTest::gtest_main)
  set(properties)
  if(DEFINED VANTEL_TEST_TIMEOUT)
    set(properties PROPERTIES TIMEOUT ${VANTEL_TEST_TIMEOUT})
  endif()
  gtest_discover_tests(${target}
    WORKING_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}
    DISCOVERY_TIMEOUT 30
    ${properties})
endfunction()

# Registers every *_test.cpp of the calling folder against the module.
function(add_vantel_tests_in_folder module)
  file(GLOB tests CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*_test.cpp)
  foreach(test ${tests})
    get_filename_component(stem ${test} NAME_WE)
    string(REGEX REPLACE "_test$" "" name ${stem})
    add_vantel_test(${module} ${name})
  endforeach()
endfunction()
