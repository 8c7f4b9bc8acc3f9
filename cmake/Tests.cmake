# Test suites and benches of this build. Each is one line of tests.txt or bench.txt in the build folder, which
# `./run` reads; CTest knows the suites too.
enable_testing()
set_property(GLOBAL PROPERTY VTDN_SUITES "")
set_property(GLOBAL PROPERTY VTDN_BENCHES "")

# vtdn_test(binding_rules_test SOURCES a.cpp b.cpp LINKS vtdn_binding): a GoogleTest program of that name.
# Under a Windows preset it runs in Wine.
function(vtdn_test name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINKS" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ${arg_LINKS} vtdn_gtest vtdn_warnings)
    add_test(NAME ${name} COMMAND ${name})
    set_property(GLOBAL APPEND PROPERTY VTDN_SUITES "gtest\t${name}\t$<TARGET_FILE:${name}>")
endfunction()

# vtdn_script_test(clients_vbscript COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/vbscript.sh [arg...] [DEPENDS target...]):
# any other suite. Its last line on standard output is "N passed, N failed". It runs in the build folder and
# finds VTDN_SOURCE, VTDN_BUILD and VTDN_RUN (tools/win32 or tools/win64; empty when native) in its environment.
function(vtdn_script_test name)
    cmake_parse_arguments(arg "" "" "COMMAND;DEPENDS" ${ARGN})
    add_custom_target(${name}_needs ALL)
    if(arg_DEPENDS)
        add_dependencies(${name}_needs ${arg_DEPENDS})
    endif()
    add_test(NAME ${name} COMMAND ${arg_COMMAND})
    set_tests_properties(
        ${name} PROPERTIES ENVIRONMENT
                           "VTDN_SOURCE=${PROJECT_SOURCE_DIR};VTDN_BUILD=${CMAKE_BINARY_DIR};VTDN_RUN=${VTDN_RUN}"
                           WORKING_DIRECTORY "${CMAKE_BINARY_DIR}")
    list(JOIN arg_COMMAND "\t" command)
    set_property(GLOBAL APPEND PROPERTY VTDN_SUITES "script\t${name}\t${command}")
endfunction()

# vtdn_bench(component_bench SOURCES a.cpp LINKS vtdn_com): a program that `./run bench` runs in an empty folder.
# It prints one flat JSON object, key to number; bench/targets.json says what each key is and what to aim at.
function(vtdn_bench name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINKS" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ${arg_LINKS} vtdn_warnings)
    set_property(GLOBAL APPEND PROPERTY VTDN_BENCHES "$<TARGET_FILE:${name}>")
endfunction()

# Called once, after all are known.
function(vtdn_write_suites)
    set(properties VTDN_SUITES VTDN_BENCHES)
    set(files tests.txt bench.txt)
    foreach(property file IN ZIP_LISTS properties files)
        get_property(lines GLOBAL PROPERTY ${property})
        list(JOIN lines "\n" text)
        file(GENERATE OUTPUT "${CMAKE_BINARY_DIR}/${file}" CONTENT "${text}\n")
    endforeach()
endfunction()
