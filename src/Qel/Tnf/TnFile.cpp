#include <Qel/Tnf/TnFile.h>

#include <Qel/Exception/Throw.h>
#include <Qel/Log/Log.h>
#include <Qel/Tnf/Format.h>
#include <Qel/Tnf/Shuffle.h>
#include <Qel/Util/Platform.h>

#include <cstddef>
#include <limits>
#include <memory>
#include <new>
#include <utility>

namespace QelTnf {

TnFile::~TnFile() {
    TnFile::CloseFile();
}

void TnFile::CloseFile() {
    constexpr const char* sourceName = "QelTnf::TnFile::CloseFile";
    QEL_LOG(sourceName, "Closing file ...");
    if (stream_ != nullptr) {
        (void)std::fclose(std::exchange(stream_, nullptr));
        QEL_LOG(sourceName, "File closed.");
    }
}

void TnFile::OpenFileForWriting(const std::string& path, bool overwrite) {
    if (!overwrite && QelUtil::Platform::pathExists(path)) {
        QEL_THROW(Qel::Exception::FileOpenException("File exists."));
    }
    OpenFile(path, "wb");
}

void TnFile::OpenFile(const std::string& path, const char* const mode) {
    if (stream_ != nullptr) {
        QEL_THROW(Qel::Exception::MiscelleneousException("File stream is already in use"));
    }
    stream_ = std::fopen(path.c_str(), mode);
    if (stream_ == nullptr) {
        QEL_THROW(Qel::Exception::MiscelleneousException("Unable to open file \"" + path + "\""));
    }
    // Writes are large, and a buffer would hold the first bytes back and report a failed write at the next
    // seek.
    (void)std::setvbuf(stream_, nullptr, _IONBF, 0);
}

void TnFile::SetBlockFlags(std::string name, unsigned flags) {
    index_.SetBlockFlags(std::move(name), static_cast<unsigned char>(flags));
}

std::uint64_t TnFile::PutDataset(const std::string& name, const float* const data, std::uint32_t count,
                                 std::uint8_t width) {
    return PutShuffled(name, data, count, width);
}

std::uint64_t TnFile::PutDataset(const std::string& name, const unsigned int* const data, std::uint32_t count,
                                 std::uint8_t width) {
    return PutShuffled(name, data, count, width);
}

template <typename T>
std::uint64_t TnFile::PutShuffled(const std::string& name, const T* const data, std::uint32_t count,
                                  std::uint8_t width) {
    const std::uint64_t position = index_.GetStreamSize(name);
    if (count == 0 || width == 0) {
        return position;
    }
    SetBlockFlags(name, Format::BlockFreezable | Format::BlockCompressed);

    // The number of values wraps at 32 bits, and only the wrapped number of values goes into the file.
    const std::uint32_t values = count * width;
    const std::uint64_t bytes = std::uint64_t{values} * sizeof(T);
    if (bytes <= std::numeric_limits<std::uint32_t>::max()) {
        shuffleComponents(data, values, width, index_.Extend(name, static_cast<std::uint32_t>(bytes)));
    } else {
        // A put takes the low 32 bits of a size: only the beginning of these planes goes into the file.
        if (bytes > std::numeric_limits<std::size_t>::max()) {
            throw std::bad_alloc();
        }
        const std::unique_ptr<unsigned char[]> shuffled(new unsigned char[static_cast<std::size_t>(bytes)]);
        shuffleComponents(data, values, width, shuffled.get());
        index_.Put(name, shuffled.get(), bytes);
    }
    index_.FlushFrozen(stream_);
    return position;
}

} // namespace QelTnf
