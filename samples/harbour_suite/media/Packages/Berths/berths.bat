@rem Not meant for the sample machine: nothing may leave this file there.
@echo berths> "C:\Harbour Berths.txt"
