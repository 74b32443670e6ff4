# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT

# How every target of Lapsa is compiled: one interface target that lapsa_add_room() and lapsa_add_test() link.

add_library(lapsa_compiler INTERFACE)
add_library(Lapsa::compiler ALIAS lapsa_compiler)

target_compile_features(lapsa_compiler INTERFACE cxx_std_20)
target_compile_definitions(lapsa_compiler INTERFACE
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_URL_CAST_FROM_STRING
    QT_NO_FOREACH
    # Disables the calls that Qt has deprecated up to 6.10; the second name is the one before Qt 6.5.
    QT_DISABLE_DEPRECATED_UP_TO=0x060A00
    QT_DISABLE_DEPRECATED_BEFORE=0x060400
    $<$<CONFIG:Release>:QT_NO_DEBUG_OUTPUT>)
target_compile_options(lapsa_compiler INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast -Wnon-virtual-dtor -Woverloaded-virtual
    $<$<BOOL:${LAPSA_WERROR}>:-Werror>
    -fno-omit-frame-pointer)

if(LAPSA_SANITIZE)
    target_compile_options(lapsa_compiler INTERFACE -fsanitize=${LAPSA_SANITIZE})
    target_link_options(lapsa_compiler INTERFACE -fsanitize=${LAPSA_SANITIZE})
    if(LAPSA_SANITIZE MATCHES "undefined")
        # A finding ends the test instead of only being printed.
        target_compile_options(lapsa_compiler INTERFACE -fno-sanitize-recover=all)
    endif()
endif()

if(LAPSA_COVERAGE)
    target_compile_options(lapsa_compiler INTERFACE --coverage -fprofile-update=atomic)
    target_link_options(lapsa_compiler INTERFACE --coverage)
endif()

if(LAPSA_FUZZ)
    # Tells the fuzzer which lines an input reaches.
    target_compile_options(lapsa_compiler INTERFACE -fsanitize=fuzzer-no-link)
endif()
