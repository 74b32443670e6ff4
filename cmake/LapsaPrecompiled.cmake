# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT

# lapsa_precompile(TARGET)
#
# Parses the headers of Qt Core once for many targets, where LAPSA_PRECOMPILED is on. Only some builds do so: in the others
# a source that lacks an include does not compile. What a target may link does not change.
#
# There is one set for libraries and one for programs, whose code the compiler places differently.
set(lapsa_precompiled_headers
    <QByteArray> <QDateTime> <QDir> <QFile> <QHash> <QList> <QObject> <QPointer> <QSet> <QString> <QStringList> <QUrl>
    <QUuid> <QJsonArray> <QJsonDocument> <QJsonObject>
    <algorithm> <chrono> <functional> <map> <memory> <optional> <ranges> <string> <tuple> <utility> <variant> <vector>)

if(LAPSA_PRECOMPILED)
    file(WRITE "${PROJECT_BINARY_DIR}/precompiled/library.cpp" "")
    file(WRITE "${PROJECT_BINARY_DIR}/precompiled/program.cpp" "int main() {}\n")
    add_library(lapsa_precompiled_library OBJECT "${PROJECT_BINARY_DIR}/precompiled/library.cpp")
    add_executable(lapsa_precompiled_program "${PROJECT_BINARY_DIR}/precompiled/program.cpp")
    foreach(target lapsa_precompiled_library lapsa_precompiled_program)
        target_link_libraries(${target} PRIVATE Lapsa::compiler Qt6::Core)
        target_precompile_headers(${target} PRIVATE ${lapsa_precompiled_headers})
    endforeach()
endif()

function(lapsa_precompile TARGET)
    if(NOT LAPSA_PRECOMPILED)
        return()
    endif()
    get_target_property(type ${TARGET} TYPE)
    if(type STREQUAL "EXECUTABLE")
        target_precompile_headers(${TARGET} REUSE_FROM lapsa_precompiled_program)
    else()
        target_precompile_headers(${TARGET} REUSE_FROM lapsa_precompiled_library)
    endif()
endfunction()
