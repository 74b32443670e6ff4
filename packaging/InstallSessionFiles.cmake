# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT

# Run by `cmake --install`: the files by which the session starts Lapsa. The bus and systemd want the whole path of the
# program, which only the installation knows.

cmake_path(ABSOLUTE_PATH CMAKE_INSTALL_PREFIX NORMALIZE OUTPUT_VARIABLE prefix)

# Sets `result` to the folder below the prefix, or to itself where it is absolute.
function(below_prefix folder result)
    cmake_path(ABSOLUTE_PATH folder BASE_DIRECTORY "${prefix}" NORMALIZE)
    set(${result} "${folder}" PARENT_SCOPE)
endfunction()

below_prefix("${program_folder}" program_folder)
below_prefix("${bus_services}" bus_services)
below_prefix("${user_units}" user_units)
if(prefix STREQUAL "/usr" AND NOT IS_ABSOLUTE "${system_settings}")
    # The settings of what lies in /usr lie in /etc.
    set(system_settings "/${system_settings}")
endif()
below_prefix("${system_settings}" system_settings)

# Both readers take one quoted word. The bus reads it as a shell would, after the escapes of the file's own form; to
# systemd two more characters mean something.
set(bus_command "${program_folder}/lapsa")
string(REPLACE "%" "%%" unit_command "${bus_command}")
string(REPLACE "$" "$$" unit_command "${unit_command}")
if(bus_command MATCHES "[^A-Za-z0-9_./+-]")
    string(REGEX REPLACE "([\"\\$`])" "\\\\\\1" bus_command "${bus_command}")
    string(REPLACE "\\" "\\\\" bus_command "\"${bus_command}\"")
    string(REGEX REPLACE "([\"\\])" "\\\\\\1" unit_command "${unit_command}")
    set(unit_command "\"${unit_command}\"")
endif()

set(LAPSA_COMMAND "${bus_command}")
configure_file("${templates}/org.lapsa.Lapsa.service.in" "${made}/org.lapsa.Lapsa.service" @ONLY)
file(INSTALL "${made}/org.lapsa.Lapsa.service" DESTINATION "${bus_services}")

set(LAPSA_COMMAND "${unit_command}")
configure_file("${templates}/app-org.lapsa.Lapsa.service.in" "${made}/app-org.lapsa.Lapsa.service" @ONLY)
file(INSTALL "${made}/app-org.lapsa.Lapsa.service" DESTINATION "${user_units}")

file(INSTALL "${templates}/org.lapsa.Lapsa.autostart.desktop" DESTINATION "${system_settings}/xdg/autostart"
    RENAME org.lapsa.Lapsa.desktop)
