@rem Not meant for the sample machine: nothing may leave this file there.
@echo pilot> "C:\Harbour Pilot.txt"
