@echo off
rem run_script PROGRAMS SCRIPT [COMPONENT STEPS]: runs a script over the stand-in, and with the component in it where
rem one is named, and leaves neither of them registered. PROGRAMS is the folder of all that was built.
regsvr32 /s "%~1\word_stand_in.dll"
if not "%~3"=="" regsvr32 /s "%~1\%~3"
cscript //nologo "%~2" "%~1" "%~4"
if not "%~3"=="" regsvr32 /s /u "%~1\%~3"
regsvr32 /s /u "%~1\word_stand_in.dll"
reg query HKCR\Word.Application >nul 2>nul
if not errorlevel 1 echo FAILED the stand-in is still registered
reg query HKCR\PLUVO.clsOpenPLUVO >nul 2>nul
if not errorlevel 1 echo FAILED the component is still registered
exit /b 0
