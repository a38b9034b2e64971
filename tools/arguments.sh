# shellcheck shell=bash
# How the commands of the root folder read what they are told. To be sourced, after tools/console.sh.
# Nothing is installed or built for arguments that are wrong.
#
#   read_arguments MOST OPTIONS "$@"  leaves the words in the array ARGUMENTS, no more than MOST, and
#                                     the options, of those that there are, in OPTION[--name]; one that
#                                     is listed as --name= takes the next word as its value.
#                                     --help prints the comment at the head of the command
#   number WHAT TEXT LEAST            refuses what is no whole number from LEAST on
#   refuse TEXT                       ends the command: it has been told something wrong

refuse() {
  printf './%s: %s\n' "${0##*/}" "$*" >&2
  printf 'See ./%s --help.\n' "${0##*/}" >&2
  exit 2
}

# shellcheck disable=SC2034  # for the caller
read_arguments() {
  local most="$1" options=" $2 " word
  shift 2
  declare -gA OPTION=()
  ARGUMENTS=()
  while (($# > 0)); do
    word="$1"
    shift
    case "$word" in
      --help | -h)
        sed -n '2,/^[^#]/ s/^# \{0,1\}//p' "$ROOT/${0##*/}"
        exit 0
        ;;
      -*)
        if [[ "$options" == *" $word= "* ]]; then
          (($# > 0)) || refuse "$word wants a value"
          OPTION[$word]="$1"
          shift
        else
          [[ "$options" == *" $word "* ]] || refuse "there is no option $word"
          OPTION[$word]=true
        fi
        ;;
      *) ARGUMENTS+=("$word") ;;
    esac
  done
  ((${#ARGUMENTS[@]} <= most)) || refuse "there is no use for \"${ARGUMENTS[most]}\""
}

number() {
  [[ "$2" =~ ^(0|[1-9][0-9]{0,8})$ ]] && (($2 >= $3)) ||
    refuse "$1 is to be a whole number from $3 on, and is \"$2\""
}
