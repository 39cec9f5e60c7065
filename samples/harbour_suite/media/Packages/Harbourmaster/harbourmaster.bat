@echo in charge> "C:\Harbour Master.txt"
@exit /b 0
