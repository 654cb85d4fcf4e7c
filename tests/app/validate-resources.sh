#!/bin/sh
# SPDX-License-Identifier: GPL-3.0-or-later
# Checks the desktop entry and the AppStream metadata with the desktop's own validators, when they are installed.
# Exit 77 (skipped) when neither is.
set -u
resources=${1:?usage: validate-resources.sh RESOURCES_DIR}
ran=0
status=0
if command -v desktop-file-validate >/dev/null 2>&1; then
    ran=1
    desktop-file-validate "$resources/org.lumaro.Lumaro.desktop" || status=1
fi
if command -v appstreamcli >/dev/null 2>&1; then
    ran=1
    appstreamcli validate --no-net "$resources/org.lumaro.Lumaro.metainfo.xml" || status=1
fi
if [ "$ran" -eq 0 ]; then
    echo "neither desktop-file-validate nor appstreamcli is installed: skipped"
    exit 77
fi
[ -f "$resources/org.lumaro.Lumaro.svg" ] || { echo "icon missing"; status=1; }
exit $status
