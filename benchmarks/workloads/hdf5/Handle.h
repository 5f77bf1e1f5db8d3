#pragma once

#include <hdf5.h>

#include <stdexcept>
#include <utility>

namespace Workloads::Hdf5 {

/// Throws if a call of the library has failed.
template <typename Result>
Result checked(Result result) {
    if (result < 0) {
        throw std::runtime_error("a call of HDF5 failed");
    }
    return result;
}

/// An object of the library that is closed with `Close`.
template <herr_t (*Close)(hid_t)>
class Handle {
public:
    explicit Handle(hid_t id) : id_(checked(id)) {}
    Handle(Handle&& other) noexcept : id_(std::exchange(other.id_, H5I_INVALID_HID)) {}
    Handle& operator=(Handle&&) = delete;
    ~Handle() { close(); }

    operator hid_t() const { return id_; }

    void close() {
        if (id_ >= 0) {
            Close(std::exchange(id_, H5I_INVALID_HID));
        }
    }

private:
    hid_t id_;
};

using File = Handle<H5Fclose>;
using Group = Handle<H5Gclose>;
using Dataset = Handle<H5Dclose>;
using Space = Handle<H5Sclose>;
using Attribute = Handle<H5Aclose>;
using Properties = Handle<H5Pclose>;

} // namespace Workloads::Hdf5
