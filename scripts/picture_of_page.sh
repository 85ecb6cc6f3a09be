#!/bin/sh
# usage: picture_of_page.sh PAGE.html PICTURE.png     the top of a page of qel bench as a picture, by Chromium
set -eu
page=$(readlink -f "$1")
command -v chromium > /dev/null || { echo "no Chromium: no picture" >&2; exit 0; }
profile=$(mktemp -d)
trap 'rm -rf "$profile"' EXIT
chromium --headless --no-sandbox --disable-gpu --disable-dev-shm-usage --hide-scrollbars "--user-data-dir=$profile" \
  --window-size=1100,1010 "--screenshot=$2" "file://$page" > /dev/null 2>&1
