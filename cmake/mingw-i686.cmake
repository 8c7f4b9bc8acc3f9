# 32-bit Windows with MinGW-w64, posix threads. SSE arithmetic, because x87 excess precision changes singles.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(VTDN_TRIPLE i686-w64-mingw32)
set(VTDN_RUN "${CMAKE_CURRENT_LIST_DIR}/../tools/win32")
include("${CMAKE_CURRENT_LIST_DIR}/mingw.cmake")
string(APPEND CMAKE_C_FLAGS_INIT " -march=pentium4 -mfpmath=sse -mstackrealign")
string(APPEND CMAKE_CXX_FLAGS_INIT " -march=pentium4 -mfpmath=sse -mstackrealign")
