#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Installs everything Lumaro builds, tests and runs with, from Debian 12's own packages.
# Idempotent: packages already present are left alone. Works as root or through sudo.
set -euo pipefail

packages=(
  # toolchain; the test build is clang's, for its sanitizers and libFuzzer
  build-essential cmake ninja-build pkg-config git clang-14 libfuzzer-14-dev
  # Qt 6 (Widgets for the app, Core/Gui for everything else) and its image plugins (TIFF, WebP)
  qt6-base-dev qt6-base-dev-tools qt6-image-formats-plugins libgl-dev
  # shooting report: charts in the app (Qt Charts, which needs Qt's OpenGL module), SVG charts painted into PDFs
  qt6-charts-dev libqt6opengl6-dev qt6-svg-dev
  # Qt's own dialogs and buttons in Chinese like the rest of the window; a colour emoji font for the ✅ ❌ ⚠️ marks
  qt6-translations-l10n fonts-noto-color-emoji
  # image metadata and decoders
  libexiv2-dev libraw-dev libheif-dev libturbojpeg0-dev libjpeg62-turbo-dev
  # on-device analysis
  libopencv-dev opencv-data libtesseract-dev libleptonica-dev tesseract-ocr-eng tesseract-ocr-chi-sim
  # fonts the text-reading tests draw their pages with (Chinese and Latin)
  fonts-noto-cjk fonts-dejavu-core
  # favourites store and remembered cards; volume UUIDs and labels of memory cards; zip export of bundles
  libsqlite3-dev sqlite3 libblkid-dev libarchive-dev
  # tests: a real FAT card image, loop-mounted (fusefat where the kernel has no vfat)
  dosfstools fusefat
  # tests and benchmarks; strace stops or fails a command at a chosen system call (kill and fault tests); the
  # exiv2 command reads back the sidecars and ratings we write (without it those tests skip) and is the
  # report bench's peer
  libgtest-dev libgmock-dev googletest libbenchmark-dev strace exiv2
  # the desktop's own Trash tool (last restore fallback), desktop-file checks, peer tools for benches
  libglib2.0-bin desktop-file-utils appstream libvips-tools hyperfine libjpeg-turbo-progs attr
  # the report PDF rendered back in its test
  poppler-utils
  # online albums: rclone speaks every storage protocol (S3, B2, WebDAV, SFTP, Drive …) and serves WebDAV and
  # SFTP in tests; a headless browser shows a published album page in its test
  rclone chromium
  # storage accounts' secrets in the desktop keyring (Secret Service); a private GNOME Keyring for its tests
  libsecret-1-dev gnome-keyring
  # the home page's cities (each time zone's coordinates in zone1970.tab) and their time zones
  tzdata
  # model conversion (scripts/fetch-models.sh converts and checks in Debian's own Python)
  python3 python3-numpy python3-onnx python3-opencv
)

# fetch-models.sh fetches model packages with npm. A machine whose Node.js comes from elsewhere (NodeSource's
# nodejs carries its own npm) cannot take Debian's npm beside it: apt refuses with "held broken packages".
# Any working npm will do, so Debian's is only asked for where there is none.
if ! command -v npm >/dev/null; then
  packages+=(npm)
fi

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done

if [ ${#missing[@]} -eq 0 ]; then
  echo "install-deps: all ${#packages[@]} packages present"
  exit 0
fi

sudo_cmd=()
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || { echo "install-deps: run as root or install sudo" >&2; exit 2; }
  sudo_cmd=(sudo)
fi

echo "install-deps: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
"${sudo_cmd[@]}" apt-get update -qq
"${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
