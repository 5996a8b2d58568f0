# Sourced by the Wine scripts: the environment in which every program of ours runs.
#   wine_env PREFIX
# Russian locale (code page 1251), headless, quiet but for missing modules. Wine takes the code
# page from the name of the locale and the spelling of file names from the locale itself, so a
# folder of our own lends the C.utf8 locale that every Debian has under the Russian name.
wine_env() {
  export WINEPREFIX="$1"
  export WINEDEBUG="${WINEDEBUG:--all,err+module}"
  export WINEDLLOVERRIDES='mscoree=;mshtml=;winemenubuilder.exe='
  export LC_ALL=ru_RU.UTF-8 LOCPATH="$1.locale"
  unset DISPLAY
  if ! [ -e "$LOCPATH/ru_RU.UTF-8" ]; then
    mkdir -p "$LOCPATH"
    ln -sfn /usr/lib/locale/C.utf8 "$LOCPATH/ru_RU.UTF-8"
  fi
}
