# vtdn_gtest: GoogleTest and GoogleMock from the sources in VTDN_GTEST_DIR, with a main() for programs that
# have none of their own.
set(VTDN_GTEST_DIR "/usr/src/googletest" CACHE PATH "Folder with googletest/ and googlemock/")
if(NOT EXISTS "${VTDN_GTEST_DIR}/googletest/src/gtest-all.cc")
    message(FATAL_ERROR "No GoogleTest sources in ${VTDN_GTEST_DIR}. `./run` installs them; by hand: install "
                        "the package googletest, or pass -DVTDN_GTEST_DIR=<folder>.")
endif()

find_package(Threads REQUIRED)
add_library(vtdn_gtest STATIC "${VTDN_GTEST_DIR}/googletest/src/gtest-all.cc"
                              "${VTDN_GTEST_DIR}/googlemock/src/gmock-all.cc"
                              "${VTDN_GTEST_DIR}/googlemock/src/gmock_main.cc")
target_include_directories(vtdn_gtest SYSTEM PUBLIC "${VTDN_GTEST_DIR}/googletest/include"
                                                    "${VTDN_GTEST_DIR}/googlemock/include")
target_include_directories(vtdn_gtest PRIVATE "${VTDN_GTEST_DIR}/googletest" "${VTDN_GTEST_DIR}/googlemock")
target_link_libraries(vtdn_gtest PUBLIC Threads::Threads)
if(NOT MSVC)
    target_compile_options(vtdn_gtest PRIVATE -w)
endif()
