# Completion of tpv's orders, options and settings for bash.

_tpv_words() {
  case "$1 $2" in
    "tpv "*) echo "play store sql import export fiscal config help --screenshot --help --version" ;;
    "play "*) echo "--store --odbc --empty --ui --screen --screenshots --paper --user --now --help" ;;
    "store create") echo "--demo --empty --shop --odbc" ;;
    "store copy" | "store check" | "store release") echo "--odbc" ;;
    "store mend") echo "--odbc --yes" ;;
    "store backup") echo "--to --keep" ;;
    "store archive") echo "--before --no-shrink" ;;
    "store fill") echo "--tickets --days --articles --seed" ;;
    "store "*) echo "create copy check release mend backup restore archive fill --help" ;;
    "sql "*) echo "--odbc --help" ;;
    "import articles" | "import customers" | "import stock") echo "--store --odbc --dry-run --yes" ;;
    "import "*) echo "articles customers stock --help" ;;
    "export articles" | "export customers" | "export stock" | "export tickets" | "export lines" | \
      "export payments" | "export invoices" | "export closures") echo "--from --to --store --odbc" ;;
    "export "*) echo "articles customers stock tickets lines payments invoices closures --help" ;;
    "fiscal on") echo "pruebas real --odbc" ;;
    "fiscal export") echo "--from --to --store --odbc" ;;
    "fiscal send") echo "--store --odbc" ;;
    "fiscal "*) echo "on off set check export send --odbc --help" ;;
    "config set" | "config get" | "config unset")
      echo "Till.Number Till.DrawerMethod Till.DrawerCodes Paper.Default Paper.Tickets Paper.Reports Printers. CodeTable. SquareCode. Devices. Scanner.Layout" \
        "Sound.Command Mail.Server Mail.Port Mail.Security Mail.User Mail.Password Mail.From" \
        "Mail.CaFile Mail.Support Windows.TypeSize Backup.Folder Backup.Keep" \
        "Fiscal.Certificate Fiscal.Key Fiscal.Password Fiscal.Seal Fiscal.CaFile Fiscal.TestServer" ;;
    "config try-printer") echo "--qr" ;;
    "config "*) echo "list set get unset printers try-printer try-mail --help" ;;
    "help "*) echo "play store sql import export fiscal config" ;;
  esac
}

_tpv() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]}
  local order=tpv second=
  COMPREPLY=()
  ((COMP_CWORD > 1)) && order=${COMP_WORDS[1]}
  ((COMP_CWORD > 2)) && second=${COMP_WORDS[2]}
  case $before in
    --ui) mapfile -t COMPREPLY < <(compgen -W "headless qt" -- "$word") ;;
    --screenshots | --paper | --to) mapfile -t COMPREPLY < <(compgen -d -- "$word") ;;
    --store | --shop | --screenshot) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
    *)
      mapfile -t COMPREPLY < <(compgen -W "$(_tpv_words "$order" "$second")" -- "$word")
      [[ $word != -* && $order != config && $order != help ]] && ((COMP_CWORD > 1)) &&
        mapfile -t -O ${#COMPREPLY[@]} COMPREPLY < <(compgen -f -- "$word")
      ;;
  esac
  [[ ${COMPREPLY[0]-} == *. ]] && compopt -o nospace
  return 0
}
complete -o filenames -F _tpv tpv
