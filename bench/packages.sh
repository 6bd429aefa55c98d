# The three packages by the same commands, without the generators. Runs in the installation, whose path it is given,
# with a slash at its end.
set -e
root=$1

manifest()
{
    printf ';The comment below contains SFX script commands\r\n\r\nSilent=2\r\n%s\r\n' "$2" >"$1"
}

mkdir -p "${root}template/Temp"
tar -zxvf "${root}template/OrvexClient_Linux64.tar.gz" -C "${root}template/Temp"
cp -r "${root}custom/" "${root}template/Temp/OrvexClient/"
mkdir -p "${root}OrvexSetup"
(cd "${root}template/Temp" && tar zcvf "${root}OrvexSetup/OrvexClient_Linux64_7.2 (E0408).tar.gz" *)
rm -rf "${root}template/Temp"

mkdir -p "${root}OrvexUpdate"
manifest "${root}OrvexUpdate/comment.txt" cusTimeStamp:1789000000
mkdir -p "${root}template/Temp"
tar -zxvf "${root}template/OrvexClient_Linux64.tar.gz" -C "${root}template/Temp"
cp -r "${root}custom/" "${root}template/Temp/OrvexClient/"
(cd "${root}template/Temp" && tar zcvf "${root}OrvexUpdate/Dot1X_OrvexClient_Linux64.tar.gz" *)
(cd "${root}OrvexUpdate" && "${root}7za" a "${root}OrvexUpdate/OrvexUpdate7.2 (E0408)_64.zip" \
    comment.txt Dot1X_OrvexClient_Linux64.tar.gz)
rm -f "${root}OrvexUpdate/Dot1X_OrvexClient_Linux64.tar.gz"
rm -rf "${root}template/Temp"
rm -f "${root}OrvexUpdate/comment.txt"

mkdir -p "${root}OrvexCusUpd"
manifest "${root}OrvexCusUpd/comment.txt" '@time: 1789000000'
tar zcvf "${root}OrvexCusUpd/Dot1X_OrvexCusUpd.tar.gz" custom
(cd "${root}OrvexCusUpd" && "${root}7za" a "${root}OrvexCusUpd/OrvexCusUpd7.2 (E0408)_64.zip" \
    comment.txt Dot1X_OrvexCusUpd.tar.gz)
rm -f "${root}OrvexCusUpd/Dot1X_OrvexCusUpd.tar.gz"
rm -f "${root}OrvexCusUpd/comment.txt"
