#include "VerificationResults.h"

#include <KaMath.h>

namespace SteelDesign {

namespace {

constexpr const char* utilizationNames[VerificationResults::utilizationTypeCount] = {
    "Axial",         "Torsion",       "BendingY",      "BendingZ",     "Bending",      "ShearY",
    "ShearZ",        "Shear",         "ShearBendingY", "ShearBendingZ", "ShearBending", "AxialBendingY",
    "AxialBendingZ", "AxialBending",  "Reserved14",    "Reserved15",   "AxialShearBending"};

bool inRange(int type) { return type >= 0 && type < VerificationResults::utilizationTypeCount; }

int axisIndex(Axis axis) { return axis == Axis::z ? 1 : 0; }

} // namespace

const char* VerificationResults::nameOf(UtilizationType type)
{
    return inRange(type) ? utilizationNames[type] : "";
}

VerificationResults::VerificationResults() { reset(); }

void VerificationResults::reset()
{
    for (int i = 0; i < utilizationTypeCount; ++i) {
        utilizations_[i].reset();
        utilizationEntries_[i] = !(i == BendingY || i == BendingZ || i == AxialBendingY || i == AxialBendingZ);
    }
    resistanceVyRd_ = 0.0;
    resistanceVzRd_ = 0.0;
    resistanceVyTRd_ = 0.0;
    resistanceVzTRd_ = 0.0;
    utilizationShearTorsionAxisY_ = 0.0;
    verifiedShearTorsionAxisY_ = false;
    utilizationShearTorsionAxisZ_ = 0.0;
    verifiedShearTorsionAxisZ_ = false;
    requiredShearBending_ = false;
    alpha_ = 0.0;
    beta_ = 0.0;
    class_ = 0;
    numberOfStressPoints_ = 0;
    requiredAxialBending_ = false;
    requiredAxialShearBending_ = false;
    MRd_ = AxisTable{};
    MRd_.set(Axis::y, 0.0);
    MRd_.set(Axis::z, 0.0);
    biaxialBending_ = false;
}

kat::Nullable<double> VerificationResults::getUtilization(UtilizationType type) const
{
    if (!inRange(type) || !utilizationEntries_[type]) return {};
    return utilizations_[type];
}

void VerificationResults::setUtilization(UtilizationType type, double value)
{
    if (!inRange(type)) return;
    utilizations_[type] = value;
    utilizationEntries_[type] = true;
}

bool VerificationResults::hasUtilizationEntry(UtilizationType type) const
{
    return inRange(type) && utilizationEntries_[type];
}

bool VerificationResults::isVerified(double u) const
{
    return KaMath::isFuzzySmallerEqual(u, 1.0, KaMath::getEpsReal());
}

bool VerificationResults::isValid(double x) const { return !KaMath::isFuzzyZero(x, KaMath::getEpsMin()); }

bool VerificationResults::isFulfilled(UtilizationType type) const
{
    const kat::Nullable<double> u = getUtilization(type);
    return u.hasValue() && isVerified(u.value());
}

bool VerificationResults::verifyAllUtilizations() const
{
    for (UtilizationType type : {Axial, Torsion, Bending, Shear, AxialBending, ShearBending, AxialShearBending})
        if (!isFulfilled(type)) return false;
    return true;
}

kat::Nullable<double> VerificationResults::AxisTable::get(Axis axis) const
{
    const int i = axisIndex(axis);
    return kat::Nullable<double>(present[i] ? value[i] : 0.0);
}

void VerificationResults::AxisTable::set(Axis axis, double v)
{
    const int i = axisIndex(axis);
    value[i] = v;
    present[i] = true;
}

kat::Nullable<double> VerificationResults::getMRd(Axis axis) const { return MRd_.get(axis); }
void VerificationResults::setMRd(Axis axis, double value) { MRd_.set(axis, value); }
kat::Nullable<double> VerificationResults::getMRdLimit(Axis axis) const { return MRdLimit_.get(axis); }
void VerificationResults::setMRdLimit(Axis axis, double value) { MRdLimit_.set(axis, value); }

} // namespace SteelDesign
