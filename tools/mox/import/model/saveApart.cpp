#include "saveApart.h"

#include "../../common/ApartReport.h"
#include "../../common/BlockSizeSetting.h"
#include "../../common/Failure.h"
#include "../../common/Platform.h"
#include "../../common/Terminal.h"
#include "../../common/utf8Path.h"
#include "../Compressor.h"
#include "BlockTooSmall.h"
#include "cannotBeWritten.h"

#include <fmt/core.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <memory>
#include <new>
#include <optional>
#include <system_error>
#include <type_traits>
#include <utility>

namespace MoxTool {

namespace {

Qel::Mox2::SaverOptions saverOptions() {
    Qel::Mox2::SaverOptions options;
    options.overwrite = false;
    options.sourceName = "mox import";
    options.sourceVersion = MOX_VERSION;
    return options;
}

// A model that can't be closed must not be destroyed either, since its destructor would end the program; it
// is then kept until the process ends.
void closeOrAbandon(std::unique_ptr<Qel::Mox2::Model>& model) noexcept {
    try {
        model->close();
    } catch (const std::exception&) {
        (void)model.release();
    }
}

/// @return what narrowing has lost.
FloatNarrowing save(const ImportPart& part, Terminal& terminal, ConversionSummary& summary) {
    const auto& request = part.request;
    auto model = std::make_unique<Qel::Mox2::Model>();
    try {
        model->saveTo(part.path, saverOptions());
        ImportTarget target(request, *model, terminal, summary);
        part.fill(target);
        target.choices.check(request.input);
        model->close();
        summary.compressor = Compressor::used();
        return target.narrowing;
    } catch (...) {
        closeOrAbandon(model);
        throw;
    }
}

using Report = ApartReport::Kind;

std::string boundText(const ImportRequest& request) {
    return fmt::format("needs more memory than its bound of {} MiB", request.mostMemory / Mebibyte);
}

constexpr const char* OtherBound = "; --memory sets another";

std::string memoryText(const ImportRequest& request) {
    return request.mostMemory == 0 ? "not enough memory" : boundText(request) + OtherBound;
}

// Libraries report that they get no memory as whatever they could not do without it.
std::string failureText(const Failure& failure, const ImportRequest& request, bool hasMissedMemory) {
    const std::string text = failure.what();
    return request.mostMemory != 0 && hasMissedMemory ? text + "; or it " + boundText(request) + OtherBound
                                                      : text;
}

// Both processes are of one program.
static_assert(std::is_trivially_copyable_v<FloatNarrowing>);

// Brings what narrowing has lost and a packed summary; to begin again takes another size of blocks.
ApartReport saveAndReport(const ImportPart& part, Terminal& terminal) {
    const auto& request = part.request;
    try {
        ConversionSummary summary(request.output);
        const auto narrowing = save(part, terminal, summary);
        return {Report::Done,
                std::string(reinterpret_cast<const char*>(&narrowing), sizeof(narrowing)) + summary.pack()};
    } catch (const BlockTooSmall& block) {
        return {Report::Again, std::to_string(block.safeSize)};
    } catch (const Failure& failure) {
        return {Report::Failed, failureText(failure, request, Platform::hasMissedMemory())};
    } catch (const std::bad_alloc&) {
        return {Report::Failed, Failure(request.input, memoryText(request)).what()};
    } catch (const std::exception& failure) {
        // zlib reports that it gets no memory.
        if (Platform::hasMissedMemory()) {
            return {Report::Failed, Failure(request.input, memoryText(request)).what()};
        }
        return {Report::Failed, cannotBeWritten(request, failure.what()).what()};
    }
}

// An allocation that failed leaves no trace in what was used, and much of what is bounded is never touched.
bool isNearBound(const Platform::ApartOutcome& outcome, const ImportRequest& request) {
    return outcome.mostMemory >= request.mostMemory / 4 && request.mostMemory != 0;
}

Failure deathOf(const Platform::ApartOutcome& outcome, const ImportRequest& request,
                const std::string& library) {
    if (outcome.hasMissedMemory) {
        return {request.input, boundText(request) + ", or is damaged" + OtherBound};
    }
    if (outcome.isCrash() && isNearBound(outcome, request)) {
        return {request.input, fmt::format("{} crashed on this file; it is damaged, or {}{}", library,
                                           boundText(request), OtherBound)};
    }
    return {request.input,
            deathText(outcome, library + " crashed on this file; it is likely damaged", "read", "import")};
}

class ApartSave {
public:
    ApartSave(const std::vector<ImportPart>& parts, std::size_t processes, const std::string& library,
              Terminal& terminal)
        : parts_(parts), library_(library), terminal_(terminal), blockSizes_(parts.size()) {
        for (const auto& part : parts) {
            saved_.push_back({ConversionSummary(part.request.output), {}});
        }
        works_.count = parts.size();
        works_.atOnce = std::clamp<std::size_t>(processes, 1, std::max<std::size_t>(parts.size(), 1));
        works_.work = [this](std::size_t place, std::FILE* messages) { return work(place, messages); };
        works_.end = [this](std::size_t place, const auto& outcome) { return take(place, outcome); };
    }

    std::vector<SavedPart> run() {
        if (!parts_.empty()) {
            shareMemory();
            Platform::runApart(works_);
            terminal_.clearProgress();
        }
        return std::move(saved_);
    }

private:
    void shareMemory() {
        for (auto& part : parts_) {
            part.request.mostMemory /= works_.atOnce;
        }
        works_.mostMemory = parts_.front().request.mostMemory;
    }

    std::string work(std::size_t place, std::FILE* messages) {
        terminal_.replaceStandardError(messages);
        if (parts_.size() > 1) {
            terminal_.hideProgress(); // all would write to one line
        }
        std::optional<BlockSizeSetting> setting;
        if (const auto size = blockSizes_[place]) {
            setting.emplace(*size);
        }
        return saveAndReport(parts_[place], terminal_).pack();
    }

    // The sizes of blocks are at least doubled each time, and what has been saved until then is little: the coordinates
    // come first.
    bool take(std::size_t place, const Platform::ApartOutcome& outcome) {
        const auto& part = parts_[place];
        terminal_.clearForeignProgress();
        const auto report = ApartReport::in(outcome);
        if (!report) {
            throw deathOf(outcome, part.request, library_);
        }
        if (report->kind == Report::Failed) {
            throw Failure(report->text);
        }
        if (report->kind == Report::Again) {
            blockSizes_[place] = static_cast<std::uint32_t>(std::stoul(report->text));
            std::error_code ignored; // saving anew fails if the file is still there
            std::filesystem::remove(pathOf(part.path), ignored);
            return false;
        }
        auto& saved = saved_[place];
        std::memcpy(&saved.narrowing, report->text.data(), sizeof(saved.narrowing));
        saved.summary =
            ConversionSummary::unpack(std::string_view(report->text).substr(sizeof(saved.narrowing)));
        showProgress();
        return true;
    }

    void showProgress() {
        ++done_;
        if (parts_.size() > 1) {
            terminal_.progress("importing", static_cast<double>(done_) / static_cast<double>(parts_.size()));
        }
    }

    std::vector<ImportPart> parts_;
    const std::string& library_;
    Terminal& terminal_;
    std::vector<std::optional<std::uint32_t>> blockSizes_; // other than the usual one
    std::vector<SavedPart> saved_;
    std::size_t done_ = 0;
    Platform::ApartWorks works_;
};

} // namespace

std::vector<SavedPart> saveApart(const std::vector<ImportPart>& parts, std::size_t processes,
                                 const std::string& library, Terminal& terminal) {
    return ApartSave(parts, processes, library, terminal).run();
}

} // namespace MoxTool
