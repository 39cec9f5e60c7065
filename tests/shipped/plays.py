"""What Wine plays falsely, and what may differ between the 32-bit program and the 64-bit one."""
from rehearsal import EVERY, Difference

DIFFERENCES = (
    Difference('rows', r'Drive C has [\d,]+ Mb free', 'Drive C has so much free', (EVERY,), 'the drive is in use meanwhile'),
    Difference('rows', r'Available space=\d+', 'Available space', (EVERY,), 'the drive is in use meanwhile'),
)
FALSELY = ()
