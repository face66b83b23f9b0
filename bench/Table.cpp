#include "Table.h"

#include <array>
#include <cmath>
#include <cstdio>

#include "Machine.h"

namespace kd::bench {

namespace {

enum class Part { Cpu, Wall };
enum class Floor { Lines, CopyAndChange, CopiesToDisk };

/// A figure that has a target, a ratio to its floor.
struct Row {
    const char* title;
    const char* figure;
    double target;
    Part part = Part::Cpu;
    Floor floor = Floor::Lines;
};

constexpr std::array<Row, 22> Rows{{
    {"read into twin records", "read", 2.0},
    {"the same, all grid texts filled", "texts", 3.0},
    {"whole load in the program, painted", "load", 7.0},
    {"start until Manage Applications", "start", 4.0},
    {"filter opened, half of it applied", "filter", 1.5},
    {"Show Paths off", "show paths off", 0.5},
    {"Show Paths on", "show paths on", 0.5},
    {"Show Only Numeric Variables off", "numeric only off", 0.5},
    {"Show Only Numeric Variables on", "numeric only on", 0.5},
    {"Show All Properties on", "all properties on", 0.5},
    {"Show All Properties off", "all properties off", 0.5},
    {"Clear All Filters", "clear filters", 0.5},
    {"Restore", "restore", 3.0},
    {"Fill, constant", "fill constant", 3.0},
    {"Fill, calculation", "fill calculation", 3.0},
    {"Paste", "paste", 3.0},
    {"Replace", "replace", 3.0},
    {"ValidateLimits", "validate", 0.1},
    {"one repaint while scrolling", "scroll", 0.1},
    {"commit of all views", "commit all", 3.0, Part::Cpu, Floor::CopyAndChange},
    {"commit of all views, wall time", "commit all", 3.0, Part::Wall, Floor::CopiesToDisk},
    {"commit of one view", "commit one", 0.3},
}};

constexpr double MostPeakMiB = 180;
constexpr double MostGrowth = 1.2;
constexpr std::array<const char*, 4> Growing{"load", "filter", "fill constant", "commit all"};

const char* NameOf(Floor floor) {
    switch (floor) {
        case Floor::CopyAndChange:
            return "cp -r + sed -i";
        case Floor::CopiesToDisk:
            return "(cp -r; sync) twice";
        default:
            return "wc -l";
    }
}

double CostOf(const Medians& medians, Floor floor) {
    switch (floor) {
        case Floor::CopyAndChange:
            return medians.Of("cp").cpuMs + medians.Of("sed").cpuMs;
        case Floor::CopiesToDisk:
            return medians.Of("cp and sync, twice").wallMs;
        default:
            return medians.Of("wc").cpuMs;
    }
}

void PrintLine(const char* title, const std::string& cost, const std::string& floor, double ratio,
               double target) {
    std::printf("| %-36s | %11s | %-29s | %6.2f | %6.1f | %-3s |\n", title, cost.c_str(), floor.c_str(),
                ratio, target, ratio <= target ? "yes" : "NO");
}

std::string Ms(double value) {
    std::array<char, 32> text{};
    (void)std::snprintf(text.data(), text.size(), value < 10 ? "%.2f ms" : "%.0f ms", value);
    return text.data();
}

void PrintFloors(const Medians& medians) {
    std::printf("| Floor                    |         CPU |        wall |\n");
    std::printf("|--------------------------|------------:|------------:|\n");
    for (const char* floor : {"wc", "cat", "cp", "cp and sync, twice", "sed", "office"}) {
        if (medians.Has(floor)) {
            std::printf("| %-24s | %11s | %11s |\n", floor, Ms(medians.Of(floor).cpuMs).c_str(),
                        Ms(medians.Of(floor).wallMs).c_str());
        }
    }
}

void PrintFigures(const std::vector<Size>& sizes) {
    const Medians& medians = sizes.front().medians;
    std::printf("| %-36s | %11s | %-29s | %6s | %6s | %-3s |\n", "Figure", "cost", "floor", "ratio", "target",
                "met");
    std::printf("|%s|%s:|%s|%s:|%s:|%s|\n", std::string(38, '-').c_str(), std::string(12, '-').c_str(),
                std::string(31, '-').c_str(), std::string(7, '-').c_str(), std::string(7, '-').c_str(),
                std::string(5, '-').c_str());
    for (const Row& row : Rows) {
        const Cost cost = medians.Of(row.figure);
        const double value = row.part == Part::Wall ? cost.wallMs : cost.cpuMs;
        const double floor = CostOf(medians, row.floor);
        PrintLine(row.title, Ms(value), std::string(NameOf(row.floor)) + ", " + Ms(floor), value / floor,
                  row.target);
    }
    const double peak = medians.Of("load").peakMiB;
    PrintLine("peak memory, all loaded and shown", std::to_string(std::lround(peak)) + " MiB", "MiB", peak,
              MostPeakMiB);
    if (sizes.size() > 1) {
        for (const char* figure : Growing) {
            const Size& large = sizes.front();
            const Size& small = sizes.back();
            const double each = large.medians.Of(figure).cpuMs / large.Variables() * 1e3;
            const double eachSmall = small.medians.Of(figure).cpuMs / small.Variables() * 1e3;
            std::array<char, 64> cost{};
            std::array<char, 64> floor{};
            (void)std::snprintf(cost.data(), cost.size(), "%.1f us", each);
            (void)std::snprintf(floor.data(), floor.size(), "%.0f variables, %.1f us", small.Variables(),
                                eachSmall);
            PrintLine((std::string("a variable's cost: ") + figure).c_str(), cost.data(), floor.data(),
                      each / eachSmall, MostGrowth);
        }
    }
}

void PrintSizes(const std::vector<Size>& sizes) {
    std::printf("| %-36s |", "CPU time by variables");
    for (const Size& size : sizes) {
        std::printf(" %10.0f |", size.Variables());
    }
    std::printf("\n|%s|", std::string(38, '-').c_str());
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        std::printf("%s:|", std::string(11, '-').c_str());
    }
    std::printf("\n| %-36s |", "wc -l");
    for (const Size& size : sizes) {
        std::printf(" %10s |", Ms(size.medians.Of("wc").cpuMs).c_str());
    }
    for (const Row& row : Rows) {
        std::printf("\n| %-36s |", row.title);
        for (const Size& size : sizes) {
            const Cost cost = size.medians.Of(row.figure);
            std::printf(" %10s |", Ms(row.part == Part::Wall ? cost.wallMs : cost.cpuMs).c_str());
        }
    }
    std::printf("\n");
}

}  // namespace

double Size::Variables() const {
    return static_cast<double>(files) * VariablesPerFile;
}

void PrintTables(const std::vector<Size>& sizes) {
    PrintFloors(sizes.front().medians);
    std::printf("\n");
    PrintFigures(sizes);
    if (sizes.size() > 1) {
        std::printf("\n");
        PrintSizes(sizes);
    }
}

}  // namespace kd::bench
