# The environment every test runs in: screens on the offscreen platform, a
# UTF-8 locale for the Chinese texts.
function(tarvel_register_test name)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LANG=C.UTF-8;LC_ALL=C.UTF-8"
    TIMEOUT 600)
endfunction()

# tarvel_add_test(NAME SOURCES ... LIBS ...): a GoogleTest executable run by ctest.
function(tarvel_add_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_LIBS} tarvel_testsupport GTest::gtest GTest::gtest_main)
  tarvel_register_test(${name})
endfunction()

# tarvel_add_qtest(NAME SOURCES ... LIBS ...): a Qt Test executable (one test
# class with its own QTEST_MAIN) for screens.
function(tarvel_add_qtest name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_LIBS} tarvel_testsupport Qt6::Test)
  tarvel_register_test(${name})
endfunction()
