@echo off
echo Manuals>> "C:\Harbour Restart.txt"
