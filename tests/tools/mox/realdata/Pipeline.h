#pragma once

#include "../common/MoxRun.h"
#include "../export/vtk/VtkReading.h"
#include "ModelContent.h"
#include "Support/TemporaryFolder.h"

#include <functional>
#include <ostream>
#include <set>
#include <string>
#include <vector>

/// A file of another program, and how to read it without mox.
struct PipelineCase {
    std::string name; ///< The name of the case in the tests.
    /// Returns the path, perhaps of a file that it has just written into the folder; empty if there is none.
    std::function<std::string(const Support::TemporaryFolder&)> file;
    std::function<ModelContent(const std::string&)> read;

    friend std::ostream& operator<<(std::ostream& stream, const PipelineCase& shown) {
        return stream << shown.name;
    }
};

/// One case for each file with such an extension among the data; if there is none, one that has no file.
std::vector<PipelineCase> casesOfData(const std::set<std::string>& extensions,
                                      const std::function<ModelContent(const std::string&)>& read);

inline std::string nameOfCase(const testing::TestParamInfo<PipelineCase>& info) {
    return info.param.name;
}

/// Takes a file through all of mox: import, check, dump, and export to the formats that others read. The
/// tests are in PipelineTest.cpp; the files of each format are in a source of its own.
class Pipeline : public testing::TestWithParam<PipelineCase> {
protected:
    /// Imports the file.
    void SetUp() override;

    std::string model() const { return folder.path("model.mox"); }
    /// Exports the model. @return the path of the output.
    std::string exported(const std::string& extension) const;

    /// Exports the model for VTK, has it read in the given way, and compares it.
    void compareVtk(const std::string& way);
    /// Its files in the order of time, after their times have been checked.
    std::vector<std::string> vtkFiles();

    Support::TemporaryFolder folder;
    VtkReading reading;
    ModelContent original;
};
