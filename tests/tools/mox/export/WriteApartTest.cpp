#include "export/writeApart.h"

#include "../common/Messages.h"
#include "common/Failure.h"

#include <gtest/gtest.h>

#ifndef _WIN32
#include <unistd.h>
#endif

#include <csignal>
#include <functional>
#include <new>
#include <string>
#include <vector>

namespace {

using MoxTool::ConversionSummary;
using MoxTool::ExportRequest;

class WriteApart : public testing::Test {
protected:
    static ExportRequest request() {
        ExportRequest request;
        request.input = "model.mox";
        request.output = "model.e";
        return request;
    }

    // The message with which an export fails that is written like this; empty if it succeeds.
    std::string failureOf(const std::function<void()>& write) {
        try {
            writeApart(request(), "libtest", messages.terminal(), [&] {
                write();
                return ConversionSummary("model.e");
            });
        } catch (const MoxTool::Failure& failure) {
            return failure.what();
        }
        return "";
    }

    Messages messages;
};

} // namespace

TEST_F(WriteApart, SummaryOfTheOtherProcessComesBack) {
    const auto summary = writeApart(request(), "libtest", messages.terminal(), [] {
        ConversionSummary written("model.e");
        written.shapes = 3;
        written.addSkipped("side sets", {"inlet"});
        return written;
    });
    ConversionSummary expected("model.e");
    expected.shapes = 3;
    expected.addSkipped("side sets", {"inlet"});
    EXPECT_EQ(summary.shapes, 3);
    EXPECT_EQ(summary.lines(), expected.lines());
}

#ifndef _WIN32
TEST_F(WriteApart, CrashIsOneLine) {
    for (const int signal : {SIGSEGV, SIGBUS, SIGABRT, SIGFPE}) {
        EXPECT_EQ(failureOf([signal] {
                      std::signal(signal, SIG_DFL);
                      std::raise(signal);
                  }),
                  "model.e: libtest crashed while writing it; was memory short?");
    }
    EXPECT_EQ(messages.text(), "");
}

TEST_F(WriteApart, EndOfTheProcessByTheLibraryIsACrashAsWell) {
    for (const int code : {0, 1}) {
        EXPECT_EQ(failureOf([code] { _exit(code); }),
                  "model.e: libtest crashed while writing it; was memory short?");
    }
}

TEST_F(WriteApart, KillAndOtherSignalsAreSaidToBeThat) {
    EXPECT_EQ(failureOf([] { std::raise(SIGKILL); }),
              "model.e: not written to its end, since the system killed the export; was memory short?");
    EXPECT_EQ(failureOf([] {
                  std::signal(SIGUSR1, SIG_DFL);
                  std::raise(SIGUSR1);
              }),
              "model.e: not written to its end, since the export was ended (User defined signal 1)");
}
#endif

TEST_F(WriteApart, LackOfMemoryNamesTheInputAsElsewhere) {
    EXPECT_EQ(failureOf([] { throw std::bad_alloc(); }), "model.mox: not enough memory");
}

TEST_F(WriteApart, FailureIsTheLineOfTheOtherProcess) {
    EXPECT_EQ(failureOf([] { throw MoxTool::Failure("model.e", "can't be written"); }),
              "model.e: can't be written");
}
