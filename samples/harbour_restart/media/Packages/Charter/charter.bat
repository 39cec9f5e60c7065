@echo off
echo Charter>> "C:\Harbour Restart.txt"
