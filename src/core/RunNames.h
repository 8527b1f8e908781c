#pragma once

#include <bitset>
#include <cstddef>
#include <string>

namespace vantor {

/// What the names of a set of runs are made of.
struct RunNameTemplate {
    std::string BaseName;
    std::string Direction = "NB";
    std::string RunNumber = "001";
};

/// Base name without the blanks around it + "-" + direction + "-" + run number.
std::string RunNameOf(const RunNameTemplate& parts);
/// The run number after this one as three digits: "001" gives "002" and, on purpose, "999" gives "000".
std::string NextRunNumber(const std::string& runNumber);

/// The run numbers 000 to 999 that are taken.
using TakenNumbers = std::bitset<1000>;
/// Takes the number of a run whose name has the template's base name and direction, letter case ignored; other names
/// take none.
void TakeNumberOf(TakenNumbers& taken, const RunNameTemplate& parts, const std::string& name);
/// The lowest number from "001" on from which `count` numbers in a row are free; empty where there are not so many.
std::string FreeRunNumber(const TakenNumbers& taken, std::size_t count);

}  // namespace vantor
