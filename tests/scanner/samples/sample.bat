@echo off
rem Copies the build output, written against the cmd reference.
setlocal enabledelayedexpansion
set "TARGET=%~1"
if "%TARGET%"=="" set TARGET=dist
:: make the folder once
if not exist "%TARGET%" mkdir "%TARGET%"
for %%f in (build\*.exe build\*.dll) do (
    copy /y "%%f" "%TARGET%\" > nul
    set /a COUNT+=1
)
echo Copied !COUNT! files to %TARGET%
goto :end
:end
endlocal
