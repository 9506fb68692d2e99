# To be sourced by what makes packages: the options that they share. Sets `root`, and ends the caller on wrong usage.
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
export LC_ALL=C.UTF-8 TZ=UTC
export SOURCE_DATE_EPOCH="${SOURCE_DATE_EPOCH:-$(git -C "$root" log -1 --format=%ct 2>/dev/null || date +%s)}"

fail() { echo "$(basename "$0" .sh): $2" >&2; exit "$1"; }

bin= sign= publisher= output=
version=$(sed -n 's/^project(nmshell VERSION \([0-9.]*\).*/\1/p' "$root/CMakeLists.txt")

# read_options OPTIONS ARGUMENT ...: takes those of -b BIN, -v VERSION, --sign COMMAND, --publisher NAME that OPTIONS names, and one
# output.
read_options() {
  local allowed=" $1 "
  shift
  while [ $# -gt 0 ]; do
    if [[ $1 == -* ]]; then
      [[ $allowed == *" $1 "* ]] || fail 2 "there is no option $1"
      [ $# -gt 1 ] || fail 2 "$1 needs a value"
    fi
    case $1 in
      -b) bin=$(cd "$2" && pwd); shift ;;
      -v) version=$2; shift ;;
      --sign) sign=$2; shift ;;
      --publisher) publisher=$2; shift ;;
      *) [ -z "$output" ] || fail 2 "one output, please: $1"; output=$1 ;;
    esac
    shift
  done
}

# check_version MAJOR MINOR PATCH: each of the three numbers of the version is at most so large.
check_version() {
  local number='(0|[1-9][0-9]{0,4})'
  [[ $version =~ ^$number\.$number\.$number$ ]] && [ "${BASH_REMATCH[1]}" -le "$1" ] && [ "${BASH_REMATCH[2]}" -le "$2" ] &&
    [ "${BASH_REMATCH[3]}" -le "$3" ] || fail 2 "the version must be three numbers, at most $1.$2.$3: $version"
}

# sign_file FILE: by the command that was given, if any.
sign_file() { [ -z "$sign" ] || bash -c "$sign \"\$1\"" sign "$1" >&2 || fail 1 "not signed: $1"; }
