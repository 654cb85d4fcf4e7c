// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/metadata/XmpSidecarText.h"

#include "platform/files/AsciiTrimmed.h"

#include <exiv2/exiv2.hpp>

namespace lumaro::platform::XmpSidecarText {

namespace {

bool holdsNoPacket(std::string_view bytes)
{
    std::string_view rest = asciiTrimmed(bytes);
    if (rest.starts_with("<?xml")) {
        const std::size_t end = rest.find("?>");
        rest = end == std::string_view::npos ? rest : asciiTrimmed(rest.substr(end + 2));
    }
    return rest.empty();
}

constexpr std::string_view declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
constexpr std::string_view emptyPacket =
    "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\">\n"
    " <rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\"/>\n"
    "</x:xmpmeta>\n";

} // namespace

bool decode(std::string_view bytes, Exiv2::XmpData& xmp)
{
    return holdsNoPacket(bytes) || Exiv2::XmpParser::decode(xmp, std::string(bytes)) == 0;
}

std::optional<std::string> encode(Exiv2::XmpData& xmp)
{
    std::string packet;
    if (Exiv2::XmpParser::encode(
            packet, xmp, Exiv2::XmpParser::omitPacketWrapper | Exiv2::XmpParser::useCompactFormat) != 0)
        return std::nullopt;
    return std::string(declaration) + (packet.empty() ? std::string(emptyPacket) : packet);
}

} // namespace lumaro::platform::XmpSidecarText
