// SPDX-License-Identifier: GPL-3.0-or-later
// `lumaro-cli tags FILE --toggle COLOUR [--json] [-q]` without loading Qt: the file's tag attribute and its
// XMP sidecar changed by the rules the window and lumaro-cli-exif use (TagAttribute, XmpMarkProperties,
// XmpSidecarText), so every program leaves the same attribute and the same sidecar bytes.
#pragma once

#include <optional>

namespace lumaro::cli {

class TagToggleFastPath
{
public:
    // Toggles the colour and returns the exit code when the words after "tags" are one UTF-8 path of a file
    // whose tags can be read and written as user.xdg.tags, `--toggle COLOUR` (or `--toggle=COLOUR`) with one
    // of the six colour names as written, and at most --json and -q/--quiet; the tags are UTF-8, the sidecar
    // (when the picture has one) is valid XMP and, when a new one is to be named, the settings give its
    // naming plainly. nullopt, with nothing printed and nothing changed, for anything else: lumaro-cli-exif
    // then answers, its words for every mistake and failure.
    static std::optional<int> run(int count, char* words[]);
};

} // namespace lumaro::cli
