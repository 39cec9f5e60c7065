@echo %CD%> "C:\Harbour Signals.txt"
@exit /b 0
