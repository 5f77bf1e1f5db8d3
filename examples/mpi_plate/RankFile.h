#pragma once

#include <Qel/Mox2/Model.h>

#include <csignal>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <unistd.h>

namespace Plate {

/// The file that one rank of a parallel application saves: "plate.3.mox" of rank 3. All are joined by
///
///     mox join plate.mox plate.*.mox
///
/// How the parts have to be named, so that they fit together:
///
/// - The root has the same name, type and attributes in all files; what differs stands below it.
/// - A shape has a path that no other rank gives, such as "/Plate/Rank 3". Groups above it can be common to all ranks:
///   groups of one path become one.
/// - Steps have the same names and attributes in all files. A step that only some ranks have saved is a step of the
///   whole all the same; the shapes of the others have no result in it.
/// - What identifies nodes and elements across the parts is in their datasets `Node Ids` and `Element IDs`.
///
/// What happens when a rank dies: the launcher asks all others to end (SIGTERM), and so does a batch system when the
/// time of a job is over. A model is whole only when it is closed, so a thread waits for that signal and closes the
/// file: it then has all steps that were complete, and can be joined with those of the others. Only the rank that
/// died itself leaves a file without an end, which lacks all that was still in memory: often everything.
///
/// Launchers give the processes little time before they kill them: one second with Open MPI, unless
/// `--mca odls_base_sigkill_timeout 5` or OMPI_MCA_odls_base_sigkill_timeout sets another.
class RankFile {
public:
    /// To be called first in main(): threads that MPI starts must not receive the signal.
    static void holdBackTermination() {
        const sigset_t signals = terminationSignal();
        pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    }

    /// @param path Of the whole, such as "plate.mox". A file of that rank is replaced.
    RankFile(const std::filesystem::path& path, int rank) : path_(pathOf(path, rank)) {
        Qel::Mox2::SaverOptions options;
        options.overwrite = true;
        options.sourceName = "mpi_plate";
        options.sourceVersion = "1.0";
        content_->model.saveTo(path_.string(), options);
        std::thread([content = content_] { closeAtTermination(*content); }).detach();
    }
    RankFile(const RankFile&) = delete;
    RankFile& operator=(const RankFile&) = delete;
    /// Closes the file, with what has been saved.
    ~RankFile() {
        try {
            close();
        } catch (const std::exception&) {
            return; // the failure that led here is reported; the file has no end
        }
    }

    static std::filesystem::path pathOf(const std::filesystem::path& whole, int rank) {
        auto name = whole.stem();
        name += "." + std::to_string(rank);
        name += whole.extension();
        return whole.parent_path() / name;
    }

    /// Saves something that is to be in the file as a whole or not at all, such as a step.
    /// @param fill Called at once with the model. Must not communicate: other ranks may have ended.
    template <typename Fill>
    void save(const Fill& fill) {
        const std::lock_guard lock(content_->mutex);
        fill(content_->model);
    }

    /// @throws anything that Model::close() throws; the file is then not whole.
    void close() { content_->close(); }

private:
    // The thread that waits for the signal keeps it until the process ends.
    struct Content {
        void close() {
            const std::lock_guard lock(mutex);
            if (!isClosed) {
                isClosed = true;
                model.close();
            }
        }

        std::mutex mutex; // of the rest
        Qel::Mox2::Model model;
        bool isClosed = false;
    };

    static sigset_t terminationSignal() {
        sigset_t signals;
        sigemptyset(&signals);
        sigaddset(&signals, SIGTERM);
        return signals;
    }

    // Ends the process by _exit: the main thread waits in MPI for ranks that are no more.
    [[noreturn]] static void closeAtTermination(Content& content) {
        const sigset_t signals = terminationSignal();
        int signal = 0;
        sigwait(&signals, &signal);
        try {
            content.close();
        } catch (const std::exception&) {
            _exit(EXIT_FAILURE); // the file has no end then, as that of a rank that died
        }
        _exit(128 + signal);
    }

    std::filesystem::path path_;
    std::shared_ptr<Content> content_ = std::make_shared<Content>();
};

} // namespace Plate
