# vtdn_sqlite: the SQLite amalgamation in VTDN_SQLITE_DIR as a static library.
set(VTDN_SQLITE_DIR "" CACHE PATH "Folder with sqlite3.c and sqlite3.h")
if(NOT EXISTS "${VTDN_SQLITE_DIR}/sqlite3.c")
    message(FATAL_ERROR "No sqlite3.c in VTDN_SQLITE_DIR ('${VTDN_SQLITE_DIR}'). `./run` fetches it; by hand: "
                        "pass -DVTDN_SQLITE_DIR=<folder with the amalgamation>.")
endif()

add_library(vtdn_sqlite STATIC "${VTDN_SQLITE_DIR}/sqlite3.c")
target_include_directories(vtdn_sqlite SYSTEM PUBLIC "${VTDN_SQLITE_DIR}")
target_compile_definitions(
    vtdn_sqlite
    PRIVATE SQLITE_THREADSAFE=1
            SQLITE_DQS=0
            SQLITE_DEFAULT_FOREIGN_KEYS=1
            SQLITE_DEFAULT_MEMSTATUS=0
            SQLITE_OMIT_LOAD_EXTENSION
            SQLITE_OMIT_DEPRECATED
            SQLITE_OMIT_SHARED_CACHE
            # Long values come out of the page cache like short ones: by default each of their pages is read from
            # the file again.
            SQLITE_DIRECT_OVERFLOW_READ=0
            # Overlapped file handles make reads under Wine 4 to 10 times slower and are of use only to
            # programs that share a handle between processes.
            $<$<BOOL:${WIN32}>:SQLITE_WIN32_NO_OVERLAPPED>)
target_link_libraries(vtdn_sqlite PUBLIC $<$<PLATFORM_ID:Linux>:m>)
if(NOT MSVC)
    target_compile_options(vtdn_sqlite PRIVATE -w -O2)
    if(VTDN_SANITIZE)
        # The address sanitizer also watches what we hand to SQLite; its own arithmetic is not ours to check.
        target_compile_options(vtdn_sqlite PRIVATE -fno-sanitize=undefined)
    endif()
endif()
