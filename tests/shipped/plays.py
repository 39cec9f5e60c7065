"""What Wine plays falsely, and what may differ between the 32-bit program and the 64-bit one."""
from differences import EVERY, Difference

DIFFERENCES = (
    Difference('rows', r'Drive C has [\d,]+ Mb free', 'Drive C has so much free', (EVERY,), 'the drive is in use meanwhile'),
    Difference('rows', r'Available space=\d+', 'Available space', (EVERY,), 'the drive is in use meanwhile'),
)
# Which systems, and what of them these runs show nothing of.
FALSELY = (
    ('all', 'functions that came later are there: that the program loads on the old system is for the check of its imports'),
    ('all', 'the program alone is told the old version: msiexec, wscript, cmd.exe and the packages run as on a newer system'),
    ('all', 'a restart is noted in place of being made; what the logon starts then is started by Wine'),
    ('all', 'no package restarts the machine by itself: 1641 comes from a stand-in for msiexec'),
    ('win95 win98', 'Windows Installer and Windows Script Host are there from the start'),
    ('win95 win98', '%UserProfile% and its Startup folder are there: the one that the registry names is not needed'),
    ('win95 win98', 'batch files run by cmd.exe, which tells their exit codes: COMMAND.COM is not there'),
    ('win95 win98', 'accounts, rights, services and an event log are there'),
)
