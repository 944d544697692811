#pragma once

#include "Axis.h"
#include "Export.h"
#include "Nullable.h"

#include <KaMath.h>

#include <array>
#include <cstdint>

namespace SteelDesign {

// The record of one cross-section verification: every resistance, utilization and interaction
// decision that ResistanceVerifications writes, for the host to read back. Owned by the host.
//
// The utilization table and the MRd / MRdLimit tables are keyed tables held in fixed arrays with
// presence flags (no allocation). After reset() the utilization table holds the keys Axial, Torsion,
// Bending, ShearY, ShearZ, Shear, ShearBendingY, ShearBendingZ, ShearBending, AxialBending, Reserved14,
// Reserved15 and AxialShearBending, each empty; BendingY, BendingZ, AxialBendingY and AxialBendingZ
// have no entry until a check writes them (an absent key and an empty value both read as "no
// utilization"). reset() keeps A, MRdLimit, the two shear reduction factors, NRd and NRdLimit, so
// values of an earlier run stay readable until the next run overwrites them.
class STEELDESIGN_API VerificationResults {
public:
    enum UtilizationType {
        Axial = 0,
        Torsion = 1,
        BendingY = 2,
        BendingZ = 3,
        Bending = 4,
        ShearY = 5,
        ShearZ = 6,
        Shear = 7,
        ShearBendingY = 8,
        ShearBendingZ = 9,
        ShearBending = 10,
        AxialBendingY = 11,
        AxialBendingZ = 12,
        AxialBending = 13,
        Reserved14 = 14,  // no check writes it; present and empty after reset
        Reserved15 = 15,  // likewise
        AxialShearBending = 16,
    };
    static constexpr int utilizationTypeCount = 17;
    // The name of a type ("Axial" ... "AxialShearBending"), or "" outside 0..16.
    static const char* nameOf(UtilizationType type);

    VerificationResults();

    void reset();

    // The table accessors are defined here, inline: a cross-section check reads and writes the table
    // about a hundred times.
    kat::Nullable<double> getUtilization(UtilizationType type) const
    {
        if (!inRange(type) || !utilizationEntries_[type]) return {};
        return utilizations_[type];
    }
    void setUtilization(UtilizationType type, double value)
    {
        if (!inRange(type)) return;
        utilizations_[type] = value;
        utilizationEntries_[type] = true;
    }
    // Whether the table holds a key for the type (with or without a value).
    bool hasUtilizationEntry(UtilizationType type) const { return inRange(type) && utilizationEntries_[type]; }

    // u <= 1.0 within KaMath::getEpsReal(): the only comparison of a utilization with its limit.
    bool isVerified(double u) const { return KaMath::isFuzzySmallerEqual(u, 1.0, KaMath::getEpsReal()); }
    bool isValid(double x) const { return !KaMath::isFuzzyZero(x, KaMath::getEpsMin()); }
    bool isFulfilled(UtilizationType type) const
    {
        const kat::Nullable<double> u = getUtilization(type);
        return u.hasValue() && isVerified(u.value());
    }
    // Axial, Torsion, Bending, Shear, AxialBending, ShearBending and AxialShearBending all present and
    // fulfilled (evaluated in this order, stopping at the first failure).
    bool verifyAllUtilizations() const;

    double getResistanceVyRd() const { return resistanceVyRd_; }
    void setResistanceVyRd(double v) { resistanceVyRd_ = v; }
    double getResistanceVzRd() const { return resistanceVzRd_; }
    void setResistanceVzRd(double v) { resistanceVzRd_ = v; }
    double getResistanceVyTRd() const { return resistanceVyTRd_; }
    void setResistanceVyTRd(double v) { resistanceVyTRd_ = v; }
    double getResistanceVzTRd() const { return resistanceVzTRd_; }
    void setResistanceVzTRd(double v) { resistanceVzTRd_ = v; }
    double getUtilizationShearTorsionAxisY() { return utilizationShearTorsionAxisY_; }
    void setUtilizationShearTorsionAxisY(double v) { utilizationShearTorsionAxisY_ = v; }
    bool getVerifiedShearTorsionAxisY() { return verifiedShearTorsionAxisY_; }
    void setVerifiedShearTorsionAxisY(bool v) { verifiedShearTorsionAxisY_ = v; }
    double getUtilizationShearTorsionAxisZ() { return utilizationShearTorsionAxisZ_; }
    void setUtilizationShearTorsionAxisZ(double v) { utilizationShearTorsionAxisZ_ = v; }
    bool getVerifiedShearTorsionAxisZ() { return verifiedShearTorsionAxisZ_; }
    void setVerifiedShearTorsionAxisZ(bool v) { verifiedShearTorsionAxisZ_ = v; }
    bool getRequiredShearBending() const { return requiredShearBending_; }
    void setRequiredShearBending(bool v) { requiredShearBending_ = v; }
    double getAlpha() const { return alpha_; }
    void setAlpha(double v) { alpha_ = v; }
    double getBeta() const { return beta_; }
    void setBeta(double v) { beta_ = v; }
    double getA() const { return A_; }
    void setA(double v) { A_ = v; }
    std::int32_t getClass() const { return class_; }
    void setClass(std::int32_t v) { class_ = v; }
    std::int32_t getNumberOfStressPoints() const { return numberOfStressPoints_; }
    void setNumberOfStressPoints(std::int32_t v) { numberOfStressPoints_ = v; }
    bool getRequiredAxialBending() const { return requiredAxialBending_; }
    void setRequiredAxialBending(bool v) { requiredAxialBending_ = v; }
    bool getRequiredAxialShearBending() const { return requiredAxialShearBending_; }
    void setRequiredAxialShearBending(bool v) { requiredAxialShearBending_ = v; }
    bool getBiaxialBending() const { return biaxialBending_; }
    void setBiaxialBending(bool v) { biaxialBending_ = v; }

    // Always present: the stored moment for the axis, or 0.0 when the axis has no entry.
    kat::Nullable<double> getMRd(Axis axis) const { return MRd_.get(axis); }
    void setMRd(Axis axis, double value) { MRd_.set(axis, value); }
    kat::Nullable<double> getMRdLimit(Axis axis) const { return MRdLimit_.get(axis); }
    void setMRdLimit(Axis axis, double value) { MRdLimit_.set(axis, value); }

    kat::Nullable<double> getShearReductionFactorY() const { return shearReductionFactorY_; }
    void setShearReductionFactorY(double v) { shearReductionFactorY_ = v; }
    kat::Nullable<double> getShearReductionFactorZ() const { return shearReductionFactorZ_; }
    void setShearReductionFactorZ(double v) { shearReductionFactorZ_ = v; }
    kat::Nullable<double> getNRd() const { return NRd_; }
    void setNRd(double v) { NRd_ = v; }
    kat::Nullable<double> getNRdLimit() const { return NRdLimit_; }
    void setNRdLimit(double v) { NRdLimit_ = v; }

private:
    // A keyed table of an axis: a value and a presence flag per axis.
    struct AxisTable {
        std::array<double, 2> value{0.0, 0.0};
        std::array<bool, 2> present{false, false};
        static int indexOf(Axis axis) { return axis == Axis::z ? 1 : 0; }
        kat::Nullable<double> get(Axis axis) const
        {
            const int i = indexOf(axis);
            return kat::Nullable<double>(present[i] ? value[i] : 0.0);
        }
        void set(Axis axis, double v)
        {
            const int i = indexOf(axis);
            value[i] = v;
            present[i] = true;
        }
    };

    static bool inRange(int type) { return type >= 0 && type < utilizationTypeCount; }

    std::array<kat::Nullable<double>, utilizationTypeCount> utilizations_;
    std::array<bool, utilizationTypeCount> utilizationEntries_{};
    double resistanceVyRd_ = 0.0;
    double resistanceVzRd_ = 0.0;
    double resistanceVyTRd_ = 0.0;
    double resistanceVzTRd_ = 0.0;
    double utilizationShearTorsionAxisY_ = 0.0;
    bool verifiedShearTorsionAxisY_ = false;
    double utilizationShearTorsionAxisZ_ = 0.0;
    bool verifiedShearTorsionAxisZ_ = false;
    bool requiredShearBending_ = false;
    double alpha_ = 0.0;
    double beta_ = 0.0;
    double A_ = 0.0;
    std::int32_t class_ = 0;
    std::int32_t numberOfStressPoints_ = 0;
    bool requiredAxialBending_ = false;
    bool requiredAxialShearBending_ = false;
    AxisTable MRd_;
    AxisTable MRdLimit_;
    kat::Nullable<double> shearReductionFactorY_;
    kat::Nullable<double> shearReductionFactorZ_;
    kat::Nullable<double> NRd_;
    kat::Nullable<double> NRdLimit_;
    bool biaxialBending_ = false;
};

} // namespace SteelDesign
