# vtdn_pugixml: the pugixml sources in VTDN_PUGIXML_DIR as a static library.
set(VTDN_PUGIXML_DIR "" CACHE PATH "Folder with pugixml.cpp and pugixml.hpp")
if(NOT EXISTS "${VTDN_PUGIXML_DIR}/pugixml.cpp")
    message(FATAL_ERROR "No pugixml.cpp in VTDN_PUGIXML_DIR ('${VTDN_PUGIXML_DIR}'). `./run` fetches it; by hand: "
                        "pass -DVTDN_PUGIXML_DIR=<the src folder of pugixml 1.13>.")
endif()

add_library(vtdn_pugixml STATIC "${VTDN_PUGIXML_DIR}/pugixml.cpp")
target_include_directories(vtdn_pugixml SYSTEM PUBLIC "${VTDN_PUGIXML_DIR}")
# Public, because the header goes by them too.
target_compile_definitions(
    vtdn_pugixml
    PUBLIC PUGIXML_NO_XPATH
           PUGIXML_NO_STL
           PUGIXML_NO_EXCEPTIONS
           # Documents here have two elements: by default each would take 32 KB.
           PUGIXML_MEMORY_PAGE_SIZE=2048
           PUGIXML_MEMORY_OUTPUT_STACK=2048)
if(NOT MSVC)
    target_compile_options(vtdn_pugixml PRIVATE -w -O2)
endif()
