# One target per layer, each with an include root of its own: "com/strings.h" is found only by targets that
# link com. The roots are links in the build tree, so that a header stands beside its source file.

set(VTDN_INCLUDE_ROOTS "${CMAKE_BINARY_DIR}/include-roots")

# COM interfaces have no virtual destructor, and cannot have one: that warning is for the portable build.
add_library(vtdn_warnings INTERFACE)
if(MSVC)
    target_compile_options(vtdn_warnings INTERFACE /W4 /WX /permissive- /utf-8)
else()
    target_compile_options(
        vtdn_warnings
        INTERFACE -Wall -Wextra -Wpedantic -Werror -Wshadow -Wconversion -Wno-sign-conversion -Wold-style-cast
                  $<$<NOT:$<BOOL:${WIN32}>>:-Wnon-virtual-dtor> -Woverloaded-virtual -Wcast-align -Wunused
                  -Wnull-dereference -Wduplicated-cond -Wlogical-op -Wformat=2 -Wno-unknown-pragmas
                  # GCC 12 sees overlaps that cannot be in std::basic_string's assignments once they are inlined.
                  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
endif()

# Sanitizers of the build (the native preset sets them); third-party code is built with them too.
set(VTDN_SANITIZE "" CACHE STRING "Comma list for -fsanitize=, empty for none")
if(VTDN_SANITIZE)
    add_compile_options(-fsanitize=${VTDN_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${VTDN_SANITIZE})
endif()

function(vtdn_include_root target name dir)
    set(root "${VTDN_INCLUDE_ROOTS}/${target}")
    file(MAKE_DIRECTORY "${root}")
    if(NOT EXISTS "${root}/${name}")
        if(CMAKE_HOST_WIN32)
            file(TO_NATIVE_PATH "${root}/${name}" link)
            file(TO_NATIVE_PATH "${dir}" to)
            execute_process(COMMAND cmd /c mklink /J "${link}" "${to}" OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
        else()
            file(CREATE_LINK "${dir}" "${root}/${name}" SYMBOLIC)
        endif()
    endif()
    get_target_property(type ${target} TYPE)
    if(type STREQUAL "INTERFACE_LIBRARY")
        target_include_directories(${target} INTERFACE "${root}")
    else()
        target_include_directories(${target} PUBLIC "${root}")
    endif()
endfunction()

# vtdn_layer(com SOURCES a.cpp b.cpp LINKS common): the static library vtdn_com, whose headers are "com/...".
function(vtdn_layer name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINKS" ${ARGN})
    set(target vtdn_${name})
    if(arg_SOURCES)
        add_library(${target} STATIC ${arg_SOURCES})
        target_link_libraries(${target} PUBLIC ${arg_LINKS} PRIVATE vtdn_warnings)
    else()
        add_library(${target} INTERFACE)
        target_link_libraries(${target} INTERFACE ${arg_LINKS})
    endif()
    vtdn_include_root(${target} ${name} "${CMAKE_CURRENT_SOURCE_DIR}")
endfunction()
