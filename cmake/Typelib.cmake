# IDL to type library, header and identifiers: MIDL on Windows, MinGW's widl elsewhere.

if(CMAKE_HOST_WIN32)
    find_program(VTDN_MIDL midl REQUIRED)
else()
    find_program(VTDN_WIDL ${VTDN_TRIPLE}-widl REQUIRED)
endif()

# vtdn_idl(<target> IDL x.idl [OUT_DIR dir] [INCLUDES dir...] [USES target...] [TLB] [HEADER] [IIDS])
#
# Makes x.tlb (TLB), x.h (HEADER) and x_i.c (IIDS) in OUT_DIR, all three when none is named. Whoever links
# <target> includes x.h as <x.h> and gets the identifiers; the property VTDN_TLB of <target> is the full
# path of x.tlb. USES names other vtdn_idl targets: their IDL and headers can be imported and their type
# libraries named in importlib. INCLUDES are further folders to find both in.
function(vtdn_idl target)
    cmake_parse_arguments(arg "TLB;HEADER;IIDS" "IDL;OUT_DIR" "INCLUDES;USES" ${ARGN})
    if(NOT (arg_TLB OR arg_HEADER OR arg_IIDS))
        set(arg_TLB ON)
        set(arg_HEADER ON)
        set(arg_IIDS ON)
    endif()
    if(NOT arg_OUT_DIR)
        set(arg_OUT_DIR "${CMAKE_CURRENT_BINARY_DIR}")
    endif()
    file(MAKE_DIRECTORY "${arg_OUT_DIR}")
    cmake_path(ABSOLUTE_PATH arg_IDL NORMALIZE)
    cmake_path(GET arg_IDL STEM stem)
    cmake_path(GET arg_IDL PARENT_PATH idl_dir)
    set(base "${arg_OUT_DIR}/${stem}")

    # Folders to search, and every IDL file in them, since neither compiler lists what it read.
    set(dirs "${idl_dir}" ${arg_INCLUDES})
    set(inputs "")
    foreach(used IN LISTS arg_USES)
        get_target_property(used_dirs ${used} VTDN_IDL_DIRS)
        get_target_property(used_tlb ${used} VTDN_TLB)
        list(APPEND dirs ${used_dirs})
        if(used_tlb)
            list(APPEND inputs "${used_tlb}")
        endif()
    endforeach()
    list(REMOVE_DUPLICATES dirs)
    list(TRANSFORM dirs APPEND "/*.idl" OUTPUT_VARIABLE patterns)
    file(GLOB idl_files CONFIGURE_DEPENDS ${patterns})
    list(APPEND inputs ${idl_files})

    set(outputs "")
    set(sources "")
    if(arg_TLB)
        list(APPEND outputs "${base}.tlb")
    endif()
    if(arg_HEADER)
        list(APPEND outputs "${base}.h")
        list(APPEND sources "${base}.h")
    endif()
    if(arg_IIDS)
        list(APPEND outputs "${base}_i.c")
        list(APPEND sources "${base}_i.c")
    endif()
    if(CMAKE_HOST_WIN32)
        _vtdn_midl()
    else()
        _vtdn_widl()
    endif()

    if(arg_IIDS)
        add_library(${target} STATIC ${sources})
        set(scope PUBLIC)
    else()
        add_library(${target} INTERFACE)
        set(scope INTERFACE)
    endif()
    add_custom_target(${target}_files DEPENDS ${outputs})
    add_dependencies(${target} ${target}_files)
    target_include_directories(${target} SYSTEM ${scope} "${arg_OUT_DIR}")
    target_link_libraries(${target} ${scope} ${arg_USES})
    set_target_properties(${target} PROPERTIES VTDN_IDL_DIRS "${dirs};${arg_OUT_DIR}")
    if(arg_TLB)
        set_target_properties(${target} PROPERTIES VTDN_TLB "${base}.tlb")
    endif()
endfunction()

# The two compilers. Both read the variables of vtdn_idl.
function(_vtdn_midl)
    list(TRANSFORM dirs PREPEND "/I" OUTPUT_VARIABLE search)
    set(env win32)
    if(CMAKE_SIZEOF_VOID_P EQUAL 8)
        set(env x64)
    endif()
    add_custom_command(
        OUTPUT ${outputs}
        COMMAND "${VTDN_MIDL}" /nologo /env ${env} ${search} /out "${arg_OUT_DIR}" /tlb ${stem}.tlb /h ${stem}.h
                /iid ${stem}_i.c "${arg_IDL}"
        DEPENDS ${inputs}
        COMMENT "MIDL ${stem}.idl"
        VERBATIM)
endfunction()

# widl writes one kind of output per call.
function(_vtdn_widl)
    list(TRANSFORM dirs PREPEND "-I" OUTPUT_VARIABLE search)
    list(TRANSFORM dirs PREPEND "-L" OUTPUT_VARIABLE search_tlb)
    foreach(file IN LISTS outputs)
        set(stamp "")
        if(file MATCHES "\\.tlb$")
            set(switch -t)
            set(stamp COMMAND "${PROJECT_SOURCE_DIR}/cmake/stamp-tlb" "${file}")
        elseif(file MATCHES "\\.h$")
            set(switch -h)
        else()
            set(switch -u)
        endif()
        add_custom_command(
            OUTPUT "${file}"
            COMMAND "${VTDN_WIDL}" ${search} ${search_tlb} ${switch} -o "${file}" "${arg_IDL}"
            ${stamp}
            DEPENDS ${inputs}
            COMMENT "widl ${file}"
            VERBATIM)
    endforeach()
endfunction()
