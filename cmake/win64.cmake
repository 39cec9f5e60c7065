# 64-bit Windows: the same source, for machines and for Wine installations that run no 32-bit code.
set(mingw_triplet x86_64-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/windows.cmake)
set(CMAKE_CXX_FLAGS_INIT "-D_WIN32_WINNT=0x0502")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -s -Wl,--no-insert-timestamp")
