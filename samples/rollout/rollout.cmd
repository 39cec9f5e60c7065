@echo off
rem Installs a product on this machine. To be called at every start of the machine: what is done is not done again, and a
rem run that waits for its restart goes on.
rem
rem   rollout.cmd PROGRAM INI PRODUCT VERSION RESULTS [BASE]
rem
rem   PROGRAM  the installation assistant on the medium: "\\server\media\harbour\QX Installation Assistant.exe"
rem   INI      the application ini beside it
rem   PRODUCT  [Product] Name of that ini
rem   VERSION  [Product] Version of that ini
rem   RESULTS  where the results of all machines go, each in a folder of its name: \\server\results
rem   BASE     LogFilePath of the ini, where it has one
rem
rem Ends with
rem   0     the product is installed (now or before)
rem   3010  the machine restarts: the call at its next start goes on
rem   1     the product failed; its log and its record are in RESULTS
rem   2, 3, 4 and others: as the assistant ended; nothing can be said of the product
setlocal
if "%~5"=="" (
  echo rollout.cmd: write rollout.cmd PROGRAM INI PRODUCT VERSION RESULTS [BASE]
  exit /b 64
)
set BASE=%~6
if "%BASE%"=="" set BASE=c:\program files\Tarvel\Installation
set LOGS=%BASE%\QX Installation Assistant\%~3
set PRODUCTS=HKLM\Software\Tarvel\Installation\Products
set RECORD=%PRODUCTS%\%~3
set PLACE=%~5\%COMPUTERNAME%

call :restart_is_pending
if not errorlevel 1 goto run
call :is_done "%~4"
if not errorlevel 1 exit /b 0

:run
start "" /wait "%~1" /s "/is=%~2"
set CODE=%ERRORLEVEL%
call :restart_is_pending
if not errorlevel 1 exit /b 3010
rem What the assistant calls a success is one when the record says so as well.
if "%CODE%"=="0" (
  call :is_done "%~4"
  if errorlevel 1 set CODE=1
)
if "%CODE%"=="0" goto collect
if "%CODE%"=="1" goto collect
exit /b %CODE%

:collect
if not exist "%PLACE%" mkdir "%PLACE%"
if exist "%LOGS%\QX Installation Assistant.html" copy /y "%LOGS%\QX Installation Assistant.html" "%PLACE%\%~3.html" >nul
if exist "%LOGS%\MSI Log Files\*.log" copy /y "%LOGS%\MSI Log Files\*.log" "%PLACE%" >nul
rem Some reg.exe ask before they write over a file, and some do not know the switch that answers them.
if exist "%PLACE%\%~3.reg" del "%PLACE%\%~3.reg"
reg export "%RECORD%" "%PLACE%\%~3.reg" >nul 2>nul
exit /b %CODE%

rem Errorlevel 0 when a run waits for the restart that it asked for.
:restart_is_pending
reg query "%PRODUCTS%" /v Rebooted 2>nul | find "True" >nul
exit /b %ERRORLEVEL%

rem Errorlevel 0 when this version is recorded as installed, by a run that came to its end: that dates its record.
:is_done
reg query "%RECORD%" /v Succeeded 2>nul | find "0xffffffff" >nul
if errorlevel 1 exit /b 1
reg query "%RECORD%" /v "Install Date" >nul 2>nul
if errorlevel 1 exit /b 1
rem Between the columns stand tabs or blanks, as the system's reg.exe has them.
for /f "tokens=1,2*" %%A in ('reg query "%RECORD%" /v Version') do if "%%A"=="Version" if "%%C"=="%~1" exit /b 0
exit /b 1
