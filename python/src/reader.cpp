// The module moxwriter._reader: files through the reader library, as plain values; moxwriter/_reading.py makes
// objects of them.

#include "ReadFile.h"

#include <MoxReader/Error.h>

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace py = pybind11;

namespace MoxPython {

namespace {

using MoxReader::Dataset;
using MoxReader::Node;

// Names in files are bytes, mostly UTF-8.
py::str toText(const std::string& bytes) {
    PyObject* const text =
        PyUnicode_DecodeUTF8(bytes.data(), static_cast<Py_ssize_t>(bytes.size()), "surrogateescape");
    if (text == nullptr) {
        throw py::error_already_set();
    }
    return py::reinterpret_steal<py::str>(text);
}

py::dict toDict(const MoxReader::Attributes& attributes) {
    py::dict result;
    for (const auto& [key, value] : attributes) {
        if (const auto* const text = std::get_if<std::string>(&value)) {
            result[toText(key)] = toText(*text);
        } else if (const auto* const number = std::get_if<std::uint32_t>(&value)) {
            result[toText(key)] = static_cast<std::int32_t>(*number);
        } else if (const auto* const real = std::get_if<float>(&value)) {
            result[toText(key)] = *real;
        } else {
            result[toText(key)] = std::get<double>(value);
        }
    }
    return result;
}

py::dict toDict(const MoxReader::Material& material) {
    py::dict result;
    result["diffuse"] = material.diffuse;
    result["specular"] = material.specular;
    result["emissive"] = material.emissive;
    result["ambient"] = material.ambient;
    result["transparency"] = material.transparency;
    result["shininess"] = material.shininess;
    return result;
}

py::dict toDict(const MoxReader::Group& group) {
    py::dict result;
    result["translation"] = group.translation;
    result["rotation"] = group.rotation;
    result["scale"] = group.scale;
    result["marked"] = group.kind == 1;
    result["attributes"] = toDict(group.attributes);
    return result;
}

// What a node has of its own; empty for a geometry, whose datasets come one by one.
py::dict contentOf(const Node& node) {
    if (const auto* const group = node.group()) {
        return toDict(*group);
    }
    return node.shape() != nullptr ? toDict(node.shape()->material) : py::dict();
}

py::tuple toTuple(const Node& node) {
    return py::make_tuple(node.id, node.parent, toText(node.name), toText(node.typeName));
}

// An entry, and the entry that holds its numbers; the latter is null if a link leads nowhere.
py::dict toDict(const Dataset& dataset, const Dataset* holder) {
    py::dict result;
    result["name"] = toText(dataset.name);
    result["step"] = toText(dataset.step);
    result["type"] = dataset.variableType;
    result["vibration"] = dataset.vibration;
    result["is_link"] = dataset.isLink;
    if (holder != nullptr) {
        result["holder"] = py::make_tuple(holder->nodeId, holder->index);
        result["attributes"] = toDict(dataset.attributes.empty() ? holder->attributes : dataset.attributes);
        result["element_tag"] = holder->elementTag;
        result["width"] = holder->width;
        result["size"] = holder->sizeInBytes;
    }
    return result;
}

// An array over the vector itself, which lives as long as the array.
template <typename T>
py::array toArray(std::vector<T>&& numbers, std::size_t width) {
    const auto columns = static_cast<py::ssize_t>(width);
    const auto rows = columns == 0 ? 0 : static_cast<py::ssize_t>(numbers.size()) / columns;
    const std::vector<py::ssize_t> shape =
        columns == 1 ? std::vector{rows} : std::vector<py::ssize_t>{rows, columns};
    if (numbers.empty()) {
        return py::array_t<T>(shape);
    }
    auto kept = std::make_unique<std::vector<T>>(std::move(numbers));
    const auto* const data = kept->data();
    const py::capsule owner(kept.get(), [](void* vector) { delete static_cast<std::vector<T>*>(vector); });
    static_cast<void>(kept.release());
    return py::array_t<T>(shape, data, owner);
}

py::array readArray(ReadFile& file, std::uint32_t node, std::uint32_t index) {
    auto read = [&] {
        const py::gil_scoped_release released;
        return file.read(node, index);
    }();
    return std::visit([&read](auto& numbers) { return toArray(std::move(numbers), read.width); },
                      read.numbers);
}

py::list nodeSets(ReadFile& file, std::uint32_t node) {
    const auto sets = [&] {
        const py::gil_scoped_release released;
        return file.readNodeSets(node);
    }();
    py::list result;
    for (const auto& set : sets) {
        result.append(py::make_tuple(toText(set.name), set.members));
    }
    return result;
}

py::list writersOf(const ReadFile& file) {
    py::list result;
    for (const auto& modifier : file.model().globalInformation().modifiers) {
        py::dict writer;
        writer["source"] = toText(modifier.sourceName);
        writer["source_version"] = toText(modifier.sourceVersion);
        writer["date"] = toText(modifier.date);
        writer["comment"] = toText(modifier.comment);
        result.append(writer);
    }
    return result;
}

void defineFile(const py::module_& module) {
    py::class_<ReadFile>(module, "File")
        .def(py::init([](const std::string& path) {
                 const py::gil_scoped_release released;
                 return std::make_unique<ReadFile>(path);
             }),
             py::arg("path"))
        .def("version", [](const ReadFile& file) { return toText(file.file().version()); })
        .def("size", [](const ReadFile& file) { return file.file().size(); })
        .def("writers", &writersOf)
        .def("nodes",
             [](const ReadFile& file) {
                 py::list result;
                 for (const auto& node : file.model().nodes()) {
                     result.append(toTuple(node));
                 }
                 return result;
             })
        .def(
            "content",
            [](const ReadFile& file, std::uint32_t node) { return contentOf(file.model().node(node)); },
            py::arg("node"))
        .def(
            "datasets",
            [](const ReadFile& file, std::uint32_t node) {
                py::list result;
                if (const auto* const geometry = file.model().node(node).geometry()) {
                    for (const auto& dataset : geometry->datasets) {
                        result.append(toDict(dataset, file.holderOf(dataset)));
                    }
                }
                return result;
            },
            py::arg("node"))
        .def("read", &readArray, py::arg("node"), py::arg("index"))
        .def("node_sets", &nodeSets, py::arg("node"));
}

template <typename T>
py::object orNone(const std::optional<T>& value) {
    return value ? py::cast(*value) : py::none();
}

void translateErrors() {
    py::register_local_exception_translator([](std::exception_ptr pointer) {
        try {
            std::rethrow_exception(pointer);
        } catch (const MoxReader::Error& error) {
            try {
                const auto& place = error.place();
                const py::object raised =
                    py::module_::import("moxwriter._errors")
                        .attr("_damage")(errorName(error.code()), py::bytes(error.what()),
                                         py::bytes(place.path), orNone(place.fileOffset),
                                         orNone(place.blockId), py::bytes(place.name),
                                         orNone(place.streamOffset), place.record);
                PyErr_SetObject(py::type::of(raised).ptr(), raised.ptr());
            } catch (py::error_already_set& failure) {
                failure.restore();
            }
        }
    });
}

} // namespace

} // namespace MoxPython

PYBIND11_MODULE(_reader, module) {
    MoxPython::translateErrors();
    MoxPython::defineFile(module);
    module.def(
        "require_whole",
        [](const std::string& path) {
            const py::gil_scoped_release released;
            MoxPython::requireWhole(path);
        },
        py::arg("path"));
}
