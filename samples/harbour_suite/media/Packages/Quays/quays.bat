@exit /b 0
