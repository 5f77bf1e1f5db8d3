#include "program/runMox.h"

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <thread>

namespace Program {

namespace {

std::string readToEnd(int file) {
    std::string text;
    std::array<char, 4096> piece{};
    for (ssize_t count = 0; (count = read(file, piece.data(), piece.size())) > 0;) {
        text.append(piece.data(), static_cast<std::size_t>(count));
    }
    return text;
}

class Pipe {
public:
    Pipe() {
        if (pipe(ends_.data()) != 0) {
            throw std::runtime_error("there is no pipe left");
        }
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    ~Pipe() { close(ends_[0]); }

    void becomes(int descriptor) const {
        dup2(ends_[1], descriptor);
        close(ends_[0]);
        close(ends_[1]);
    }

    void closeWritingEnd() const { close(ends_[1]); }

    std::string readAll() const { return readToEnd(ends_[0]); }

private:
    std::array<int, 2> ends_{};
};

// A file without a name.
class OutputFile {
public:
    OutputFile() : file_(std::tmpfile()) {
        if (file_ == nullptr) {
            throw std::runtime_error("there is no file for the output");
        }
    }
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile() { (void)std::fclose(file_); }

    void becomes(int descriptor) const { dup2(fileno(file_), descriptor); }

    std::string readAll() const {
        lseek(fileno(file_), 0, SEEK_SET);
        return readToEnd(fileno(file_));
    }

private:
    std::FILE* file_;
};

[[noreturn]] void becomeMox(std::vector<std::string> arguments, const Circumstances& circumstances) {
    std::string program = MOX_PROGRAM;
    std::vector<char*> words = {program.data()};
    for (std::string& argument : arguments) {
        words.push_back(argument.data());
    }
    words.push_back(nullptr);
    for (const auto& [name, value] : circumstances.environment) {
        setenv(name.c_str(), value.c_str(), 1);
    }
    if (circumstances.largestFile) {
        // Otherwise such a write ends the process.
        (void)std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{*circumstances.largestFile, *circumstances.largestFile};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    execv(program.c_str(), words.data());
    _exit(127);
}

} // namespace

End runMox(const std::vector<std::string>& arguments, const Circumstances& circumstances) {
    const Pipe output;
    const Pipe messages;
    const OutputFile file;
    const pid_t child = fork();
    if (child == 0) {
        if (circumstances.isOutputAFile) {
            file.becomes(STDOUT_FILENO);
        } else {
            output.becomes(STDOUT_FILENO);
        }
        messages.becomes(STDERR_FILENO);
        becomeMox(arguments, circumstances);
    }
    output.closeWritingEnd();
    messages.closeWritingEnd();
    if (circumstances.signal) {
        std::this_thread::sleep_for(circumstances.signal->after);
        kill(child, circumstances.signal->number);
    }
    End end;
    end.output = output.readAll();
    end.messages = messages.readAll();
    int status = 0;
    waitpid(child, &status, 0);
    if (circumstances.isOutputAFile) {
        end.output = file.readAll();
    }
    end.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    end.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    return end;
}

} // namespace Program
