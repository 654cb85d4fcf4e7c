// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/front/TagsFastPath.h"

#include "cli/ExitCode.h"
#include "cli/front/LineEscape.h"
#include "cli/front/WriteAll.h"

#include "platform/files/PathKind.h"
#include "platform/files/TagAttribute.h"

#include <cstdio>
#include <string>
#include <string_view>

namespace lumaro::cli {

namespace {

// The one file the words name besides quiet options, or null.
const char* plainFile(int count, char* words[])
{
    const char* file = nullptr;
    for (int i = 0; i < count; ++i) {
        const std::string_view word = words[i];
        if (word == "-q" || word == "--quiet")
            continue;
        if (word.empty() || word.front() == '-' || file)
            return nullptr;
        file = words[i];
    }
    return file;
}

} // namespace

std::optional<int> TagsFastPath::run(int count, char* words[])
{
    const char* file = plainFile(count, words);
    if (!file || !platform::PathKind::isFile(file))
        return std::nullopt;
    int error = 0;
    const auto value = platform::TagAttribute::read(file, &error);
    if (!value)
        return std::nullopt;
    std::string joined;
    for (const std::string& name : platform::TagAttribute::names(*value)) {
        if (!joined.empty())
            joined += ',';
        joined += name;
    }
    writeAll(stdout, escapedLineBytes(joined) + "\n");
    return exitOk;
}

} // namespace lumaro::cli
