# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT

# lapsa_add_room(NAME SOURCES file... [USES target...] [PRIVATELY_USES target...])
#
# Creates the static library Lapsa::NAME of the current folder. Its only include root is that folder, and its link line
# lists everything it may use: a dependency that is not listed here does not compile.
function(lapsa_add_room NAME)
    cmake_parse_arguments(PARSE_ARGV 1 ROOM "" "" "SOURCES;USES;PRIVATELY_USES")
    add_library(lapsa_${NAME} STATIC ${ROOM_SOURCES})
    add_library(Lapsa::${NAME} ALIAS lapsa_${NAME})
    set_target_properties(lapsa_${NAME} PROPERTIES AUTOMOC ON LAPSA_ROOM ON)
    target_include_directories(lapsa_${NAME} PUBLIC "${CMAKE_CURRENT_SOURCE_DIR}")
    target_link_libraries(lapsa_${NAME}
        PUBLIC ${ROOM_USES}
        PRIVATE Lapsa::compiler ${ROOM_PRIVATELY_USES})
    lapsa_precompile(lapsa_${NAME})
endfunction()

# lapsa_add_test(NAME USES target... [LABELS label...] [TIMEOUT seconds] [ENVIRONMENT name=value...])
#
# Creates a Qt Test executable from NAME.cpp of the current folder. The timeout only ends a test that hangs; Qt Test has
# its own for each function, five minutes by default. Tests that need no display get the label "offscreen".
function(lapsa_add_test NAME)
    cmake_parse_arguments(PARSE_ARGV 1 TEST "" "TIMEOUT" "USES;LABELS;ENVIRONMENT")
    if(NOT TEST_TIMEOUT)
        set(TEST_TIMEOUT 300)
    endif()
    math(EXPR limit "${TEST_TIMEOUT} * 1000")
    # One call of moc instead of AUTOMOC, which takes three steps for a target: a quarter of the time of a build.
    set(moc "${CMAKE_CURRENT_BINARY_DIR}/${NAME}_moc/${NAME}.moc")
    qt_generate_moc(${NAME}.cpp "${moc}")
    add_executable(${NAME} ${NAME}.cpp "${moc}")
    target_include_directories(${NAME} PRIVATE "${CMAKE_CURRENT_BINARY_DIR}/${NAME}_moc")
    target_link_libraries(${NAME} PRIVATE Lapsa::compiler Lapsa::testcompiler Qt6::Test ${TEST_USES})
    lapsa_precompile(${NAME})
    add_test(NAME ${NAME} COMMAND ${NAME})
    set_tests_properties(${NAME} PROPERTIES
        TIMEOUT ${TEST_TIMEOUT}
        LABELS "${TEST_LABELS}"
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;QTEST_FUNCTION_TIMEOUT=${limit};${TEST_ENVIRONMENT}")
    if(NOT "desktop" IN_LIST TEST_LABELS)
        lapsa_label_tests(offscreen ${NAME})
    endif()
endfunction()

# lapsa_add_test_object(NAME HEADER)
#
# For a header of the current folder, with objects of its own, that the test includes.
function(lapsa_add_test_object NAME HEADER)
    qt_wrap_cpp(moc ${HEADER})
    target_sources(${NAME} PRIVATE ${HEADER} ${moc})
endfunction()

# lapsa_label_tests(LABEL test...)
#
# Gives tests of the current folder a label, for running (ctest -L) and building them (the target LABEL_tests).
function(lapsa_label_tests LABEL)
    if(NOT TARGET ${LABEL}_tests)
        add_custom_target(${LABEL}_tests)
    endif()
    add_dependencies(${LABEL}_tests ${ARGN})
    set_property(TEST ${ARGN} APPEND PROPERTY LABELS ${LABEL})
endfunction()
