#pragma once

#include <optional>
#include <string>
#include <vector>

namespace Workloads {

/// Seconds that a process has used.
struct Usage {
    double wall = 0;
    double cpu = 0;
    double user = 0;
    double system = 0;
    /// The part of `cpu` that was spent inside compress2(); no value unless libmoxbench-compress is loaded.
    std::optional<double> compress;
};

/// Measures a work phase by phase. What happens while it stands still does not count.
class Stopwatch {
public:
    struct Phase {
        std::string name;
        Usage usage;
    };

    /// Ends the present phase, if there is one, and begins another.
    void start(const std::string& phase);
    /// Ends the present phase.
    void stop();

    const std::vector<Phase>& phases() const { return phases_; }

private:
    std::vector<Phase> phases_;
    std::optional<Usage> begin_;
    std::string name_;
};

} // namespace Workloads
