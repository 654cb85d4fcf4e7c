// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/front/TagToggleFastPath.h"

#include "cli/ExitCode.h"
#include "cli/front/JsonText.h"
#include "cli/front/LineEscape.h"
#include "cli/front/WriteAll.h"

#include "platform/files/FileBytes.h"
#include "platform/files/FileRewrite.h"
#include "platform/files/PathKind.h"
#include "platform/files/SettingsFileValue.h"
#include "platform/files/SidecarNames.h"
#include "platform/files/TagAttribute.h"
#include "platform/files/Utf8Sequence.h"
#include "platform/files/XdgHomes.h"
#include "platform/metadata/Exiv2Setup.h"
#include "platform/metadata/XmpMarkProperties.h"
#include "platform/metadata/XmpSidecarText.h"

#include <exiv2/exiv2.hpp>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace lumaro::cli {

namespace {

namespace Properties = platform::XmpMarkProperties;

// The settings key PictureRater keeps the naming of new sidecars under.
constexpr std::string_view namingKey = "LMR_SidecarNaming";
// XmpSidecar reads at most this much of a sidecar.
constexpr long long largestSidecar = 16 * 1024 * 1024;

struct Request
{
    std::string file;
    std::string colour;
    bool json = false;
};

std::optional<Request> plainRequest(int count, char* words[])
{
    Request request;
    bool toggled = false;
    for (int i = 0; i < count; ++i) {
        const std::string_view word = words[i];
        if (word == "-q" || word == "--quiet")
            continue;
        if (word == "--json") {
            request.json = true;
        } else if ((word == "--toggle" && i + 1 < count) || word.starts_with("--toggle=")) {
            if (toggled)
                return std::nullopt;
            toggled = true;
            request.colour = word == "--toggle" ? words[++i] : word.substr(std::strlen("--toggle="));
        } else if (word.empty() || word.front() == '-' || !request.file.empty()) {
            return std::nullopt;
        } else {
            request.file = word;
        }
    }
    if (!toggled || request.file.empty() || !Properties::isColourName(request.colour) ||
        !platform::isValidUtf8(request.file))
        return std::nullopt;
    return request;
}

std::vector<std::string> toggled(std::vector<std::string> tags, const std::string& colour)
{
    const auto found = std::find(tags.begin(), tags.end(), colour);
    if (found != tags.end())
        tags.erase(found); // names are never repeated
    else
        tags.push_back(colour);
    return tags;
}

// Where a new sidecar of `picture` goes: NAME.EXT.xmp, or STEM.xmp when the settings ask for Lightroom's
// naming; nullopt when the settings do not say plainly.
std::optional<std::string> newSidecarPath(const std::string& picture)
{
    const auto folder = platform::XdgHomes::plainAppDir(platform::XdgHomes::Home::config);
    if (!folder)
        return std::nullopt;
    const auto naming = platform::SettingsFileValue::read(*folder + "/lumaro.conf", namingKey);
    if (naming.found == platform::SettingsFileValue::Found::unclear)
        return std::nullopt;
    const std::size_t slash = picture.rfind('/');
    const std::size_t dot = picture.rfind('.');
    const bool stemNamed = naming.text == "stem" && dot != std::string::npos &&
                           (slash == std::string::npos ? dot > 0 : dot > slash + 1);
    return stemNamed ? picture.substr(0, dot) + ".xmp" : picture + ".xmp";
}

struct SidecarChange
{
    std::string path;
    bool existed = false;
    std::optional<platform::FileRewrite> rewrite; // none when there is no sidecar and none is needed
};

// The sidecar with `colours`, written beside it but not yet in place; nullopt when it cannot be read, is not
// valid XMP, or the new file cannot be written.
std::optional<SidecarChange> preparedSidecar(const std::string& picture,
                                             const std::vector<std::string>& colours)
{
    SidecarChange change;
    for (const std::string& candidate : platform::sidecarCandidates(picture)) {
        if (platform::PathKind::isFile(candidate.c_str())) {
            change.path = candidate;
            change.existed = true;
            break;
        }
    }
    if (!change.existed) {
        const auto path = newSidecarPath(picture);
        if (!path)
            return std::nullopt;
        change.path = *path;
    }
    platform::prepareExiv2();
    try {
        Exiv2::XmpData xmp;
        if (change.existed) {
            const auto bytes = platform::readFileBytes(change.path.c_str(), largestSidecar);
            if (!bytes || !platform::XmpSidecarText::decode(*bytes, xmp))
                return std::nullopt;
        }
        Properties::setColours(xmp, colours);
        if (!change.existed && xmp.empty())
            return change; // nothing to keep: no file
        const auto text = platform::XmpSidecarText::encode(xmp);
        if (!text)
            return std::nullopt;
        change.rewrite.emplace(change.existed ? platform::FileRewrite::forExistingFile(change.path, *text)
                                              : platform::FileRewrite::forNewFile(change.path, *text));
    } catch (...) {
        return std::nullopt; // exiv2 throws on what it cannot parse: lumaro-cli-exif words it
    }
    if (!change.rewrite->ready())
        return std::nullopt;
    return change;
}

std::string joined(const std::vector<std::string>& names, std::string_view separator)
{
    std::string text;
    for (const std::string& name : names)
        text += (text.empty() ? "" : std::string(separator)) + name;
    return text;
}

int sidecarFailed(const Request& request, const SidecarChange& sidecar)
{
    const std::string message = escapedLineBytes(request.file) +
                                ": tags written, sidecar not: " + sidecar.path + ": " +
                                std::strerror(sidecar.rewrite->error());
    if (request.json)
        writeAll(stdout, "{\"error\":" + jsonString(message) +
                             ",\"exitCode\":" + std::to_string(exitPartial) + "}\n");
    writeAll(stderr, "lumaro-cli tags: " + message + "\n");
    return exitPartial;
}

} // namespace

std::optional<int> TagToggleFastPath::run(int count, char* words[])
{
    const auto request = plainRequest(count, words);
    if (!request || !platform::PathKind::isFile(request->file.c_str()))
        return std::nullopt;
    int error = 0;
    const auto value = platform::TagAttribute::read(request->file.c_str(), &error);
    if (!value)
        return std::nullopt; // a file system without attributes keeps tags in its folder's index file
    const std::vector<std::string> tags = toggled(platform::TagAttribute::names(*value), request->colour);
    if (!std::all_of(tags.begin(), tags.end(),
                     [](const std::string& tag) { return platform::isValidUtf8(tag); }))
        return std::nullopt;
    std::vector<std::string> colours;
    std::copy_if(tags.begin(), tags.end(), std::back_inserter(colours), Properties::isColourName);
    // Everything that could refuse is settled before the first change: the sidecar waits, written in full
    // beside its place, while the attribute is set.
    auto sidecar = preparedSidecar(request->file, colours);
    if (!sidecar || !platform::TagAttribute::write(request->file.c_str(), tags, &error))
        return std::nullopt;
    if (sidecar->rewrite && !(sidecar->existed ? sidecar->rewrite->replace() : sidecar->rewrite->create()))
        return sidecarFailed(*request, *sidecar);
    writeAll(stdout, (request->json ? jsonArray(tags) : escapedLineBytes(joined(tags, ","))) + "\n");
    return exitOk;
}

} // namespace lumaro::cli
