#pragma once

#include <Qel/Log/LogSystem.h>
#include <Qel/Log/Record.h>
#include <Qel/Util/SourcePath.h>

namespace Qel::Log {

/// The log system of the process, which takes the records of all QEL_LOG sites.
LogSystem& processLog();

/// Replaces the log system of the process, to see what is logged. No other thread may log meanwhile.
/// @param replacement Must live until it is replaced in turn.
/// @return the former one.
LogSystem& replaceProcessLog(LogSystem& replacement);

} // namespace Qel::Log

/// Logs one record of severity Info. `sourceName` is the site's qualified name; `message` is what is streamed
/// into the record, as in QEL_LOG("QelTnf::Index::FlushFrozen", "Buffer " << id). Too costly for loops over
/// values.
#define QEL_LOG(sourceName, message)                                                                         \
    do {                                                                                                     \
        ::Qel::Log::Record<char> record(::Qel::Log::Severity::Info,                                          \
                                        ::Qel::Log::Origin(QEL_SOURCE_PATH, sourceName, __LINE__));          \
        /* Handing over the result of the insertion would choose the overload that prints. */                \
        record << message;                                                                                   \
        ::Qel::Log::processLog() += record;                                                                  \
    } while (false)
