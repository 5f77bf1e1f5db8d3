#pragma once

#include <Qel/Tnf/Index.h>

#include <cstdint>
#include <cstdio>
#include <string>

namespace QelTnf {

/// The output file and the catalogue of its blocks. Constructed closed; opened, filled, written and closed
/// once.
class TnFile {
public:
    TnFile() = default;
    TnFile(const TnFile&) = delete;
    TnFile& operator=(const TnFile&) = delete;
    /// Closes the file and frees all blocks.
    virtual ~TnFile();

    /// Closes the file if it is open. The result of closing is not examined.
    virtual void CloseFile();

    /// Opens a file for writing. An existing one is emptied at once if `overwrite` is set.
    /// @throws Qel::Exception::FileOpenException "File exists." if the path exists and `overwrite` is not
    ///         set.
    /// @throws Qel::Exception::MiscelleneousException "File stream is already in use" if a file is open,
    ///         which stays so, or with the path if it can't be opened.
    void OpenFileForWriting(const std::string& path, bool overwrite);

    /// Opens a file in one of `fopen`'s modes, without a buffer in the C runtime: what is written reaches the
    /// system at once.
    void OpenFile(const std::string& path, const char* mode);

    /// See Index::SetBlockFlags().
    void SetBlockFlags(std::string name, unsigned flags);

    /// Appends an array to a name's stream, shuffled, and writes out the full blocks of the streams.
    ///
    /// The flags that let a block go out reach only the blocks that exist before the array is put, so a block
    /// goes out with the array after the one that filled it.
    /// @param data  `count` elements of `width` values each, the values of one element adjacent.
    /// @return the position of the array in the name's stream, before compression. An empty array gets a
    ///         position too, but changes nothing.
    /// @throws std::bad_alloc if the array has 4 GiB or more and there is no memory for a copy; nothing goes
    ///         in.
    /// @throws Qel::Exception::Exception what Index::Put() and Index::FlushFrozen() throw.
    std::uint64_t PutDataset(const std::string& name, const float* data, std::uint32_t count,
                             std::uint8_t width);
    std::uint64_t PutDataset(const std::string& name, const unsigned int* data, std::uint32_t count,
                             std::uint8_t width);

    /// The open file, or null.
    std::FILE* GetStream() const { return stream_; }
    Index& GetIndex() { return index_; }

private:
    template <typename T>
    std::uint64_t PutShuffled(const std::string& name, const T* data, std::uint32_t count,
                              std::uint8_t width);

    std::FILE* stream_ = nullptr;
    Index index_;
};

} // namespace QelTnf
