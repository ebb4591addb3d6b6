@echo off
rem SPDX-License-Identifier: MIT
rem Registers the drawing component beside this file, or withdraws it: register.cmd [/u]
rem With an administrator's rights for every user of this machine, otherwise for the present user.
regsvr32 /s %1 "%~dp0OrvanelCanvas.dll"
if errorlevel 1 (
    echo OrvanelCanvas.dll could not be registered.
    exit /b 1
)
