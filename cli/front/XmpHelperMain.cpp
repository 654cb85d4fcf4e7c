// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli-xmp: a tag toggle, which also writes the XMP sidecar, without Qt: exiv2 and the C++ library are
// all it loads, so it starts in a few milliseconds where lumaro-cli-exif (Qt Core and exiv2) takes three
// times as long. lumaro-cli hands it every toggle; whatever it does not do plainly (TagToggleFastPath) goes
// on, byte for byte, to lumaro-cli-exif beside it.
#include "cli/front/HelperHandOver.h"
#include "cli/front/TagToggleFastPath.h"

#include <string_view>

using namespace lumaro::cli;

int main(int argc, char* argv[])
{
    if (argc >= 2 && std::string_view(argv[1]) == "tags") {
        if (const auto code = TagToggleFastPath::run(argc - 2, argv + 2))
            return *code;
    }
    return handOverToHelper("lumaro-cli-exif", ".", argc, argv);
}
