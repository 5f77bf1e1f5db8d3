// The module moxwriter._writer: the calls of Qel::Mox2::Model for Python. Arguments come as moxwriter/_writing.py
// prepares them: names as bytes, attributes as (key, kind, value), arrays as contiguous float32 or uint32.

#include "Compressor.h"
#include "SavedModel.h"
#include "translateErrors.h"

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace py = pybind11;

namespace MoxPython {

namespace {

using namespace Qel::Mox2;

// Letters for the kinds of values that Attributes and NodeProperties take, as _writing.py gives them.
template <typename SetT>
void setValue(const SetT& set, char kind, const py::handle& value) {
    switch (kind) {
    case 'i':
        set(value.cast<int>());
        break;
    case 'f':
        set(value.cast<float>());
        break;
    case 's':
        set(value.cast<std::string>());
        break;
    case 'I':
        set(value.cast<std::vector<int>>());
        break;
    case 'F':
        set(value.cast<std::vector<float>>());
        break;
    default:
        throw py::value_error("there is no such kind of value");
    }
}

Attributes toAttributes(const py::sequence& items) {
    Attributes attributes;
    for (const py::handle item : items) {
        const auto [key, kind, value] = item.cast<std::tuple<std::string, char, py::object>>();
        if (kind == 'u') {
            attributes.set(key, value.cast<unsigned int>());
        } else if (kind == 'U') {
            attributes.set(key, value.cast<std::vector<unsigned int>>());
        } else {
            const auto set = [&attributes, &key = key](const auto& number) { attributes.set(key, number); };
            setValue(set, kind, value);
        }
    }
    return attributes;
}

NodeProperties toProperties(const py::sequence& items) {
    NodeProperties properties;
    for (const py::handle item : items) {
        const auto [key, kind, value] = item.cast<std::tuple<int, char, py::object>>();
        const auto set = [&properties, property = static_cast<PropertyType>(key)](const auto& number) {
            properties.set(property, number);
        };
        setValue(set, kind, value);
    }
    return properties;
}

StepList toSteps(const py::sequence& items) {
    StepList steps(items.size());
    std::size_t index = 0;
    for (const py::handle item : items) {
        const auto [name, attributes] = item.cast<std::pair<std::string, py::sequence>>();
        steps.set(index, Step{name, toAttributes(attributes)});
        ++index;
    }
    return steps;
}

py::list toList(const Array1d<unsigned int>& ids) {
    py::list list;
    for (std::size_t i = 0; i < ids.size(); ++i) {
        list.append(ids[i]);
    }
    return list;
}

// Without the GIL from the copy into the library's own array on.
template <typename T>
void addArray(SavedModel& model, const ArrayCall& call, const py::array& array) {
    const auto* const numbers = static_cast<const T*>(array.data());
    const auto rows = static_cast<std::size_t>(array.shape(0));
    const auto columns = static_cast<std::size_t>(array.shape(1));
    const py::gil_scoped_release released;
    model.addArray(call, numbers, rows, columns);
}

void addAnyArray(SavedModel& model, const std::optional<std::string>& name, int type, const py::array& array,
                 const std::vector<unsigned int>& ids, const py::sequence& steps,
                 const py::sequence& attributes) {
    const bool isTable = array.ndim() == 2 && (array.flags() & py::array::c_style) != 0;
    const ArrayCall call{name, static_cast<DatasetType>(type), Array1d<unsigned int>(ids), toSteps(steps),
                         toAttributes(attributes)};
    if (isTable && array.dtype().equal(py::dtype::of<float>())) {
        addArray<float>(model, call, array);
    } else if (isTable && array.dtype().equal(py::dtype::of<unsigned int>())) {
        addArray<unsigned int>(model, call, array);
    } else {
        throw py::type_error("the array must be a C-contiguous table of float32 or uint32");
    }
}

void defineModel(const py::module_& module) {
    py::class_<SavedModel>(module, "Model")
        .def(py::init<std::uint32_t>(), py::arg("block_size"))
        .def(
            "save_to",
            [](SavedModel& model, const std::string& path, bool overwrite, const std::string& name,
               const std::string& version, const std::string& comment) {
                model.run([&](Model& it) {
                    it.saveTo(path, SaverOptions{overwrite, name, version, comment});
                });
            },
            py::arg("path"), py::arg("overwrite"), py::arg("source_name"), py::arg("source_version"),
            py::arg("source_comment"))
        .def("close",
             [](SavedModel& model) {
                 const py::gil_scoped_release released;
                 model.close();
             })
        .def(
            "add_node",
            [](SavedModel& model, int type, const std::string& name, const py::sequence& attributes) {
                const auto converted = toAttributes(attributes);
                return model.run(
                    [&](Model& it) { return it.addNode(static_cast<NodeType>(type), name, converted); });
            },
            py::arg("type"), py::arg("name"), py::arg("attributes"))
        .def(
            "set_current_node_id",
            [](SavedModel& model, unsigned int id) {
                model.run([&](Model& it) { it.setCurrentNodeId(id); });
            },
            py::arg("id"))
        .def("move_to_parent_node",
             [](SavedModel& model) { model.run([](Model& it) { it.moveToParentNode(); }); })
        .def(
            "get_node_id",
            [](SavedModel& model, const std::string& path, const std::string& separator) {
                return model.run([&](Model& it) { return it.getNodeId(path, separator); });
            },
            py::arg("path"), py::arg("separator"))
        .def(
            "get_node_id_of",
            [](SavedModel& model, const std::vector<std::string>& names) {
                return model.run([&](Model& it) { return it.getNodeId(names); });
            },
            py::arg("names"))
        .def(
            "set_node_data",
            [](SavedModel& model, unsigned int id, const py::sequence& properties,
               const py::sequence& attributes) {
                const auto values = toProperties(properties);
                const auto converted = toAttributes(attributes);
                model.run([&](Model& it) { it.setNodeData(id, values, converted); });
            },
            py::arg("id"), py::arg("properties"), py::arg("attributes"))
        .def(
            "add_assembly_components",
            [](SavedModel& model, const std::vector<std::string>& paths, const std::string& separator) {
                return toList(
                    model.run([&](Model& it) { return it.addAssemblyComponents(paths, separator); }));
            },
            py::arg("paths"), py::arg("separator"))
        .def(
            "add_assembly_components_with",
            [](SavedModel& model, const py::sequence& items, const std::string& separator) {
                std::map<std::string, Attributes> paths;
                for (const py::handle item : items) {
                    const auto [path, attributes] = item.cast<std::pair<std::string, py::sequence>>();
                    paths.emplace(path, toAttributes(attributes));
                }
                return toList(
                    model.run([&](Model& it) { return it.addAssemblyComponents(paths, separator); }));
            },
            py::arg("paths"), py::arg("separator"))
        .def("add_array", &addAnyArray, py::arg("name"), py::arg("type"), py::arg("array"), py::arg("ids"),
             py::arg("steps"), py::arg("attributes"));
}

void defineCompressor(py::module_& module) {
    module.def("choose_compressor", &Compressor::choose, py::arg("name"));
    module.def("compressor", &Compressor::current);
    module.def("deflate_calls", &Compressor::deflateCalls);
}

} // namespace

} // namespace MoxPython

PYBIND11_MODULE(_writer, module) {
    module.attr("INVALID_ID") = Qel::Mox2::Model::INVALID_ID;
    module.attr("DEFAULT_PATH_SEPARATOR") = Qel::Mox2::Model::defaultPathSeparator();
    MoxPython::translateErrors();
    MoxPython::defineModel(module);
    MoxPython::defineCompressor(module);
}
