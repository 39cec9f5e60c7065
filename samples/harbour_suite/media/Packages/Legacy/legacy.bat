@rem Not meant for the sample machine: nothing may leave this file there.
@echo legacy> "C:\Harbour Legacy.txt"
