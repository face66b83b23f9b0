#pragma once

#include <string>
#include <vector>

#include "Machine.h"
#include "grid/Desk.h"

namespace kd::bench {

/// The program without its window, before its first load of the applications below a folder.
struct Bench {
    explicit Bench(const std::string& folder);

    /// All files into twin records, bounds and rule letters finished; no grid.
    void Read();
    /// The program's load.
    void Load();
    /// @throws std::runtime_error unless every variable has its twin and all that a load gives it.
    void ExpectRead() const;

    std::vector<std::string> files;
    Machine machine;
    Desk desk{machine.g};
};

}  // namespace kd::bench
