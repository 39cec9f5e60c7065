@rem Not meant for the sample machine: nothing may leave this file there.
@echo lighthouse> "C:\Harbour Lighthouse.txt"
