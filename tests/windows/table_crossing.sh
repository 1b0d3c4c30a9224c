#!/usr/bin/env bash
# Tables cross between the Linux and the Windows build: a table with memos and a compound
# index, written by each build (the Windows one under wine64), is read by the other with the
# same records, tag orders, tags and check, and both builds write the same bytes. An encrypted
# table crosses the same way with its password.
#   table_crossing.sh LINUX_FENNRICK WINDOWS_FENNRICK_EXE   (WINEPREFIX set by the caller)
set -Eeuo pipefail
linux=$1
windows=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# A command that fails without a word would otherwise end the script silently.
trap 'echo "table crossing: failed (status $?) at line $LINENO: $BASH_COMMAND" >&2' ERR

on_linux() { "$linux" "$@"; }
# Paths go to the Windows program through drive Z:, Wine's view of the Unix root.
on_windows() {
    local args=()
    for arg in "$@"; do
        if [[ $arg == /* ]]; then arg="Z:${arg//\//\\}"; fi
        args+=("$arg")
    done
    /usr/lib/wine/wine64 "$windows" "${args[@]}"
}

cat >"$work/records.jsonl" <<'JSON'
{"CODE":"C003","NAME":"Société Générale","AMOUNT":"1250.50","DAY":"20240301","PAID":true,"NOTE":"first line\nsecond line, été"}
{"CODE":"C001","NAME":"Brasserie du Parc","AMOUNT":"-17.25","DAY":"20231231","PAID":false,"NOTE":""}
{"CODE":"C002","NAME":"àbc Müller & Söhne","AMOUNT":"0","DAY":"20240229","PAID":true,"NOTE":"a memo long enough to take more than one block of the memo file: 0123456789012345678901234567890123456789012345678901234567890123456789"}
{"CODE":"C004","NAME":"zeta","AMOUNT":"99999999.99","PAID":false,"NOTE":"x"}
JSON
echo "crossing-password" >"$work/password"

write_table() {
    local build=$1 dir=$2
    mkdir -p "$dir"
    $build table create "$dir/T.DBF" --fields "CODE,C,10,0;NAME,C,40,0;AMOUNT,N,12,2;DAY,D,8,0;PAID,L,1,0;NOTE,M,10,0"
    $build table load "$dir/T.DBF" <"$work/records.jsonl"
    $build table index "$dir/T.DBF" --tag CODE --key CODE
    $build table index "$dir/T.DBF" --tag NAME --key "UPPER(NAME)"
    $build table index "$dir/T.DBF" --tag AMOUNT --key AMOUNT --descending
    $build table index "$dir/T.DBF" --tag PAIDDAY --key "DTOS(DAY)" --for "PAID"
    $build table delete "$dir/T.DBF" --recno 2
}

read_table() {
    local build=$1 file=$2
    shift 2
    $build table dump "$file" "$@"
    for tag in CODE NAME AMOUNT PAIDDAY; do $build table dump "$file" --tag "$tag" "$@"; done
    $build table tags "$file" "$@"
    # The check names the file in each build's own form of the path.
    $build table check "$file" "$@" | sed -E 's/^.*T\.DBF: //'
}

same() {
    if ! diff -u "$1" "$2"; then
        echo "table crossing: $3" >&2
        exit 1
    fi
}

write_table on_linux "$work/linux"
write_table on_windows "$work/windows"
for file in T.DBF T.CDX T.FPT; do
    cmp "$work/linux/$file" "$work/windows/$file" || {
        echo "table crossing: $file differs between the builds" >&2
        exit 1
    }
done
for side in linux windows; do
    read_table on_linux "$work/$side/T.DBF" >"$work/$side-read-on-linux"
    read_table on_windows "$work/$side/T.DBF" | tr -d '\r' >"$work/$side-read-on-windows"
    same "$work/$side-read-on-linux" "$work/$side-read-on-windows" "the $side table reads differently"
done
grep -q "Société Générale" "$work/linux-read-on-windows"

# Encrypted by one build, read by the other.
cp -r "$work/linux" "$work/linux-encrypted"
cp -r "$work/windows" "$work/windows-encrypted"
on_linux table encrypt "$work/linux-encrypted/T.DBF" --password-file "$work/password"
on_windows table encrypt "$work/windows-encrypted/T.DBF" --password-file "$work/password"
for side in linux windows; do
    read_table on_windows "$work/$side-encrypted/T.DBF" --password-file "$work/password" |
        tr -d '\r' >"$work/$side-encrypted-on-windows"
    read_table on_linux "$work/$side-encrypted/T.DBF" --password-file "$work/password" \
        >"$work/$side-encrypted-on-linux"
    same "$work/linux-read-on-linux" "$work/$side-encrypted-on-windows" \
        "the table encrypted on $side reads differently on Windows"
    same "$work/linux-read-on-linux" "$work/$side-encrypted-on-linux" \
        "the table encrypted on $side reads differently on Linux"
done
if grep -q "Brasserie" "$work/windows-encrypted/T.DBF"; then
    echo "table crossing: the encrypted table holds plain text" >&2
    exit 1
fi
echo "table crossing: both directions agree"
