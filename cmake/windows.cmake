# What the two Windows toolchains share. The win32 thread model is named on purpose: the posix one pulls in a thread
# library that imports functions which old systems lack, so that the program would not even load there.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_CXX_COMPILER ${mingw_triplet}-g++-win32)
set(CMAKE_RC_COMPILER ${mingw_triplet}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${mingw_triplet})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
