#include "CoreRole.h"

#include <fstream>

#include "CoreBench.h"
#include "Measure.h"

namespace kd::bench {

void RunRead(const std::string& folder) {
    Bench bench(folder);
    Meter meter;
    bench.Read();
    const Cost cost = meter.Stop();
    bench.ExpectRead();
    Report("read", cost);
}

void RunTexts(const std::string& folder) {
    Bench bench(folder);
    Meter meter;
    bench.Load();
    const Cost cost = meter.Stop();
    bench.ExpectRead();
    Expect(bench.desk.Grid.Rows() == bench.desk.g.gFields->Count() + 1, "every variable has its row");
    Report("texts", cost);
}

void WriteGrid(const std::string& folder, const std::string& path) {
    Bench bench(folder);
    bench.Load();
    std::ofstream file(path, std::ios::binary);
    const VSFlexGrid& grid = bench.desk.Grid;
    for (std::int32_t row = 0; row < grid.Rows(); ++row) {
        for (std::int32_t col = 0; col < grid.Cols(); ++col) {
            Text cell(grid.TextMatrix(row, col));  // the corpus has no quotation marks
            file << (col == 0 ? "\"" : ",\"") << cell << '"';
        }
        file << "\r\n";
    }
    Expect(file.flush().good(), "the grid is written");
}

}  // namespace kd::bench
