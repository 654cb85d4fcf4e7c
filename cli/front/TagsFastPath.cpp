// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/front/TagsFastPath.h"

#include "cli/ExitCode.h"
#include "cli/front/JsonText.h"
#include "cli/front/LineEscape.h"
#include "cli/front/WriteAll.h"

#include "platform/files/PathKind.h"
#include "platform/files/TagAttribute.h"
#include "platform/files/Utf8Sequence.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace lumaro::cli {

namespace {

// The one file the words name besides quiet options and --json, or null.
const char* plainFile(int count, char* words[], bool* json)
{
    const char* file = nullptr;
    for (int i = 0; i < count; ++i) {
        const std::string_view word = words[i];
        if (word == "-q" || word == "--quiet")
            continue;
        if (word == "--json") {
            *json = true;
            continue;
        }
        if (word.empty() || word.front() == '-' || file)
            return nullptr;
        file = words[i];
    }
    return file;
}

} // namespace

std::optional<int> TagsFastPath::run(int count, char* words[])
{
    bool json = false;
    const char* file = plainFile(count, words, &json);
    if (!file || !platform::PathKind::isFile(file))
        return std::nullopt;
    int error = 0;
    const auto value = platform::TagAttribute::read(file, &error);
    if (!value)
        return std::nullopt;
    const std::vector<std::string> names = platform::TagAttribute::names(*value);
    if (json) {
        // A name that is not UTF-8 reaches JSON through Qt's own conversion: lumaro-cli-light's to write.
        if (!std::all_of(names.begin(), names.end(),
                         [](const std::string& name) { return platform::isValidUtf8(name); }))
            return std::nullopt;
        writeAll(stdout, jsonArray(names) + "\n");
        return exitOk;
    }
    std::string joined;
    for (const std::string& name : names) {
        if (!joined.empty())
            joined += ',';
        joined += name;
    }
    writeAll(stdout, escapedLineBytes(joined) + "\n");
    return exitOk;
}

} // namespace lumaro::cli
