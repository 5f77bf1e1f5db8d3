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

/// Whether the process's own log system, which drops all records, has been replaced.
bool hasReceiver();

} // namespace Qel::Log

/// Logs one record of severity Info, if there is a receiver: otherwise `message` is not even evaluated.
/// `sourceName` is the site's qualified name; `message` is what is streamed into the record, as in
/// QEL_LOG("QelTnf::Index::FlushFrozen", "Buffer " << id).
#define QEL_LOG(sourceName, message)                                                                         \
    do {                                                                                                     \
        if (::Qel::Log::hasReceiver()) {                                                                     \
            ::Qel::Log::Record<char> record(::Qel::Log::Severity::Info,                                      \
                                            ::Qel::Log::Origin(QEL_SOURCE_PATH, sourceName, __LINE__));      \
            /* Handing over the result of the insertion would choose the overload that prints. */            \
            record << message;                                                                               \
            ::Qel::Log::processLog() += record;                                                              \
        }                                                                                                    \
    } while (false)
