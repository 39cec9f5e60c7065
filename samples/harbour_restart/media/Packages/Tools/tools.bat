@echo off
echo Tools>> "C:\Harbour Restart.txt"
