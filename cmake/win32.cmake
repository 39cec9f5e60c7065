# 32-bit Windows, from Windows 95 on: nothing newer than system version 4.0, and a header that says so.
set(mingw_triplet i686-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/windows.cmake)
set(CMAKE_CXX_FLAGS_INIT "-D_WIN32_WINNT=0x0400")
set(CMAKE_EXE_LINKER_FLAGS_INIT
    "-static -s -Wl,--major-os-version=4,--minor-os-version=0,--major-subsystem-version=4,--minor-subsystem-version=0,--disable-dynamicbase,--disable-nxcompat,--no-insert-timestamp")
