#pragma once

#include "Export.h"

namespace SteelDesign {

// The six design internal forces at one point of a member: N (kN, compression negative), My, Mz, Mt
// (kNm), Vy, Vz (kN). The constructor takes them in the order N, My, Mz, Mt, Vy, Vz.
class STEELDESIGN_API Forces {
public:
    constexpr Forces() = default;
    constexpr Forces(double N, double My, double Mz, double Mt, double Vy, double Vz)
        : N_(N), My_(My), Mz_(Mz), Mt_(Mt), Vy_(Vy), Vz_(Vz)
    {
    }

    constexpr double getN() const { return N_; }
    constexpr double getMy() const { return My_; }
    constexpr double getMz() const { return Mz_; }
    constexpr double getMt() const { return Mt_; }
    constexpr double getVy() const { return Vy_; }
    constexpr double getVz() const { return Vz_; }

private:
    double N_ = 0.0;
    double My_ = 0.0;
    double Mz_ = 0.0;
    double Mt_ = 0.0;
    double Vy_ = 0.0;
    double Vz_ = 0.0;
};

} // namespace SteelDesign
