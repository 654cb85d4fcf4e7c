// SPDX-License-Identifier: GPL-3.0-or-later
// What every fuzz harness shares: a quiet process with a Qt application object and one scratch folder.
#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace lumaro::fuzz {

// Parsers of files are fuzzed through real files, the way users feed them. The scratch folder lives for the
// process; each input rewrites what it needs.
class FuzzScratch
{
public:
    // Once, from LLVMFuzzerInitialize: log lines silenced (libFuzzer's own output stays readable), a
    // QCoreApplication made for Qt's plugins, the scratch folder created.
    static void initialise();
    static QString path(const QString& relative = {});
    // Writes `data` at `relative` (folders made as needed); returns the full path.
    static QString write(const QString& relative, const QByteArray& data);
    // Empties the scratch folder.
    static void clear();
};

inline QByteArray bytesOf(const uint8_t* data, size_t size)
{
    return QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
}

// A property the harness checks: when it does not hold, the input is a finding (libFuzzer saves it).
inline void require(bool holds, const char* property)
{
    if (holds)
        return;
    std::fprintf(stderr, "property broken: %s\n", property);
    std::abort();
}

} // namespace lumaro::fuzz

// Every harness defines LLVMFuzzerTestOneInput; this one is shared.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);
