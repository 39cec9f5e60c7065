/* Numbers of the program's resources, shared with its resource script. */
#pragma once

#define PROGRAM_ICON 1
