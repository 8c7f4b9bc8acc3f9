# 64-bit Windows with MinGW-w64, posix threads.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(VTDN_TRIPLE x86_64-w64-mingw32)
set(VTDN_RUN "${CMAKE_CURRENT_LIST_DIR}/../tools/win64")
include("${CMAKE_CURRENT_LIST_DIR}/mingw.cmake")
