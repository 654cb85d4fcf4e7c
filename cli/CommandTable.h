// SPDX-License-Identifier: GPL-3.0-or-later
// The one list of lumaro-cli commands, in the order `lumaro-cli --help` shows them. Included more than once,
// each time with LIGHT and HEAVY defined to what the includer needs (declarations, table rows): no guard.
//
// LIGHT(name, summary, run): runs inside `lumaro-cli-light`, which loads only Qt Core, SQLite and the C
//   library, and so starts in a few milliseconds: for what a script calls per file (list, trash, tags, fav).
// HEAVY(name, summary, run): needs a decoder, EXIF or analysis library (Qt Gui, libjpeg-turbo, exiv2,
//   libraw, libheif, OpenCV, Tesseract), whose loading alone costs tens of milliseconds; `lumaro-cli` hands
//   it over to `lumaro-cli-heavy` (the same front end with every command linked in) by exec.
//
// EXIF(name, summary, run): reads or writes EXIF and XMP (exiv2) but decodes no picture: `lumaro-cli` hands
//   it over to `lumaro-cli-exif`, which loads exiv2 beside Qt Core and SQLite, not the decoders and analysis
//   libraries, whose loading alone (hundreds of milliseconds from a cold disk) would be most of an import.
//
// SPLIT(name, summary, lightRun, exifRun): `lumaro-cli-light` runs lightRun, which returns handOverToExif
//   for what needs exiv2 (tags --toggle writes the XMP sidecar); lumaro-cli-exif and lumaro-cli-heavy run
//   exifRun.
//
// PAINTING(name, summary, run): a heavy command that paints (a PDF needs fonts): lumaro-cli-heavy makes a
//   QGuiApplication for it, on the offscreen platform.
//
// lumaro-cli, the Qt-free front end, reads this list too (cli/front/CommandDirectory.cpp): it hands each
// command to the program of its kind; only a plain `list` and the overview it answers itself.
//
// A new command: one line here, its file in the matching list of cli/CMakeLists.txt (light, exif or heavy). A
// light command that starts needing a heavy library fails the `LightCommands` test: move its line to HEAVY.

LIGHT("list", "Print a folder's pictures in browsing order", runList)
PAINTING("pose", "Name each person's pose (level 1 and 2) with its reason", runPose)
HEAVY("thumbs", "Write a JPEG thumbnail of every picture of a folder", runThumbs)
LIGHT("trash", "Move files to the Trash and print where each went", runTrash)
SPLIT("tags", "Print a picture's tags, or toggle one colour tag", runTagsReading, runTags)
EXIF("info", "Print pictures' shooting data: camera, lens, exposure, size, rating", runInfo)
EXIF("rate", "Give pictures stars, a pick or a reject in their XMP sidecars", runRate)
HEAVY("rotate", "Turn pictures 90 degrees to the left on disk", runRotate)
HEAVY("index", "Analyse a folder's pictures into _index/vision_index_*.json", runIndex)
LIGHT("fav", "Mark pictures as favourites, list and audit them", runFav)
HEAVY("channel", "Add, list, rename, move or remove the window's folder channels", runChannel)
HEAVY("bundle", "Gather pictures from any folders into named bundles and export them", runBundle)
LIGHT("group", "Prefix each run of related pictures with \"_G<n>_\"", runGroup)
LIGHT("ungroup", "Take the \"_G<n>_\" group prefixes off again", runUngroup)
LIGHT("clean", "Show, or with --yes trash, the RAW files whose JPG was not kept", runClean)
LIGHT("pick", "Copy the RAW files that have a JPG into RAW_PICK", runPick)
EXIF("card", "Recognise a memory card's camera family and count its files", runCard)
EXIF("import", "Import a memory card into the next rollNN folder", runImport)
PAINTING("report", "The shooting report of a folder: exposures, pace, lenses, culling", runReport)
HEAVY("histogram", "The tone histogram of a picture and its clipped shares", runHistogram)
HEAVY("roll", "Publish a folder as an online album on your own storage (rclone)", runRoll)
LIGHT("sun", "Sunrise, sunset, golden and blue hour of a day at a place", runSun)
HEAVY("watermark", "Read poster identifiers off saved pictures; sort them by poster", runWatermark)
PAINTING("board", "Print a folder as board index sheets (contact sheets) into its _index", runBoard)
