#pragma once

#include <Qel/Exception/Exception.h>
#include <Qel/Util/Platform.h>
#include <Qel/Util/SourcePath.h>

#include <boost/assert/source_location.hpp>
#include <boost/current_function.hpp>
#include <boost/throw_exception.hpp>

/// Throws an exception of the library with its place of origin. Boost's own macro would give the bare
/// function name with some compilers, and the full path of the file with all.
#define QEL_THROW(exception)                                                                                 \
    ::boost::throw_exception(exception,                                                                      \
                             ::boost::source_location(QEL_SOURCE_PATH, __LINE__, BOOST_CURRENT_FUNCTION,     \
                                                      ::QelUtil::Platform::callColumn()))
