#pragma once

namespace vantor {

/// The kinds of logs that runs are made from. Each has its selection screen and its review screen.
enum class LogKind {
    GpsLaptop,    ///< Roamlap: ".gdf", ".gd2"
    ObdLaptop,    ///< Revlap: ".odf", ".od2"
    GpsHandheld,  ///< Roampad: ".mdb", ".pdb"
    ObdHandheld,  ///< Revpad: ".mdb", ".pdb"
    GpsObd,       ///< combined GPS and OBD: ".ddf"
    Battelle,     ///< Battelle GPS text: ".txt"
};

}  // namespace vantor
