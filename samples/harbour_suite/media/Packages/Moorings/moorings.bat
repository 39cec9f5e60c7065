@echo moored> "C:\Harbour Moorings.txt"
@exit /b 0
