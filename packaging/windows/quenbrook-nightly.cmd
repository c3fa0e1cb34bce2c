@echo off
rem The night of the shop in this folder: the jobs of the days since the last good night, then the
rem transfer of all that is finished. Ends with 1 where either failed.
setlocal
pushd "%~dp0"
if not exist quenbrookctl.exe exit /b 1
set status=0
quenbrookctl.exe nightly >>quenbrook-night.log 2>&1 || set status=1
quenbrookctl.exe transfer >>quenbrook-night.log 2>&1 || set status=1
popd
exit /b %status%
