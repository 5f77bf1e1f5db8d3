// The bulk work as a VTU file (VTK's XML format) with zlib: all fields as point data in the appended section, in
// blocks of 32 KiB, as VTK writes them.

#include "common/NumberedName.h"
#include "common/Work.h"
#include "common/sampleFields.h"

#include <zlib.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <vector>

namespace Workloads {

namespace {

constexpr int Level = 6;
constexpr std::size_t BlockSize = 32'768;

using Bytes = std::vector<unsigned char>;

class OutputFile {
public:
    explicit OutputFile(const std::string& path) : file_(std::fopen(path.c_str(), "wb")) {
        if (file_ == nullptr) {
            throw std::runtime_error("can't write " + path);
        }
    }

    void write(const void* bytes, std::size_t size) {
        if (std::fwrite(bytes, 1, size, file_.get()) != size) {
            throw std::runtime_error("can't write the file");
        }
    }
    void write(const std::string& text) { write(text.data(), text.size()); }
    void seek(long place) { (void)std::fseek(file_.get(), place, SEEK_SET); }

private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::unique_ptr<std::FILE, Close> file_;
};

// The number of blocks, their size, the size of a last one that is shorter, and the compressed size of each; then
// the blocks.
std::uint64_t writeCompressed(OutputFile& file, const std::vector<float>& values) {
    const auto* const bytes = reinterpret_cast<const unsigned char*>(values.data());
    const std::size_t size = values.size() * sizeof(float);
    std::vector<std::uint64_t> header = {(size + BlockSize - 1) / BlockSize, BlockSize, size % BlockSize};
    Bytes compressed;
    for (std::size_t start = 0; start < size; start += BlockSize) {
        const std::size_t length = std::min(BlockSize, size - start);
        const std::size_t place = compressed.size();
        uLongf room = compressBound(static_cast<uLong>(length));
        compressed.resize(place + room);
        if (compress2(compressed.data() + place, &room, bytes + start, static_cast<uLong>(length), Level) !=
            Z_OK) {
            throw std::runtime_error("zlib failed");
        }
        compressed.resize(place + room);
        header.push_back(room);
    }
    file.write(header.data(), header.size() * sizeof(std::uint64_t));
    file.write(compressed.data(), compressed.size());
    return header.size() * sizeof(std::uint64_t) + compressed.size();
}

// The offsets have a fixed width, so that the beginning can be written again once they are known.
std::string beginning(const std::vector<std::uint64_t>& offsets) {
    std::string text = "<VTKFile type=\"UnstructuredGrid\" version=\"1.0\" byte_order=\"LittleEndian\" "
                       "header_type=\"UInt64\" compressor=\"vtkZLibDataCompressor\">\n<UnstructuredGrid>\n"
                       "<Piece NumberOfPoints=\"" +
                       std::to_string(FieldRows) + "\" NumberOfCells=\"0\">\n<PointData>\n";
    NumberedName name("Displacement Step ");
    for (std::size_t i = 0; i < offsets.size(); ++i) {
        std::string offset = std::to_string(offsets[i]);
        offset.insert(0, 20 - offset.size(), '0');
        text += "<DataArray type=\"Float32\" Name=\"" + name(i) +
                "\" NumberOfComponents=\"3\" format=\"appended\" offset=\"" + offset + "\"/>\n";
    }
    return text + "</PointData>\n<Points>\n<DataArray type=\"Float32\" Name=\"Points\" "
                  "NumberOfComponents=\"3\" format=\"appended\" offset=\"0\"/>\n</Points>\n<Cells>\n"
                  "<DataArray type=\"Int64\" Name=\"connectivity\" format=\"ascii\"/>\n"
                  "<DataArray type=\"Int64\" Name=\"offsets\" format=\"ascii\"/>\n"
                  "<DataArray type=\"UInt8\" Name=\"types\" format=\"ascii\"/>\n</Cells>\n</Piece>\n"
                  "</UnstructuredGrid>\n<AppendedData encoding=\"raw\">\n_";
}

void saveBulk(std::uint64_t mebibytes, const std::string& path, Stopwatch& watch) {
    const std::vector<std::vector<float>> fields = bulkFields();

    watch.start("save");
    OutputFile file(path);
    std::vector<std::uint64_t> offsets(fieldsIn(mebibytes));
    file.write(beginning(offsets));
    std::uint64_t place = 0;
    for (std::size_t i = 0; i < offsets.size(); ++i) {
        offsets[i] = place;
        place += writeCompressed(file, fields[i % FieldCount]);
    }
    file.write("\n</AppendedData>\n</VTKFile>\n");
    file.seek(0);
    file.write(beginning(offsets));
}

} // namespace

const std::vector<Work>& works() {
    static const std::vector<Work> all = {{"bulk", "MiB of fields", saveBulk}};
    return all;
}

} // namespace Workloads
