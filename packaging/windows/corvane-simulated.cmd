@echo off
rem SPDX-License-Identifier: MIT
rem Starts Corvane with the simulated instruments, whatever VISA is installed: Windows looks for
rem visa32.dll in the program's own folder first, and simulator holds a copy of the program.
setlocal
set "PATH=%~dp0;%PATH%"
set "QT_PLUGIN_PATH=%~dp0."
start "" /D "%~dp0." "%~dp0simulator\corvane.exe"
