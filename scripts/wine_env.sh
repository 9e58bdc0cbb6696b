# Sourced by the Windows build and test scripts: a private Wine prefix, no debug chatter, no
# Mono or Gecko installers, and Wine's server started once with its standard streams closed.
# Wine's service processes inherit the standard streams of the program that first starts
# them; started under ctest they would hold its output pipes open and every test would wait
# until the server exits (or forever with a persistent server).
export WINEPREFIX=${WINEPREFIX:-${ODB_WIN_CACHE:-$HOME/.cache/odb_server/mingw-w64}/wineprefix}
export WINEDEBUG=${WINEDEBUG:--all}
export WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-mscoree,mshtml=}
unset DISPLAY

# wine_start: starts a persistent wineserver for $WINEPREFIX and boots the prefix.
wine_start() {
  mkdir -p "$WINEPREFIX"
  # Fails harmlessly when a server for this prefix is already running.
  wineserver -p </dev/null >/dev/null 2>&1 || true
  wine wineboot </dev/null >/dev/null 2>&1
}

# wine_stop: ends the wineserver of $WINEPREFIX and the processes it serves.
wine_stop() {
  wineserver -k </dev/null >/dev/null 2>&1 || true
}
