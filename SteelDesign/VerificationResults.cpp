#include "VerificationResults.h"

#include <KaMath.h>

namespace SteelDesign {

namespace {

constexpr const char* utilizationNames[VerificationResults::utilizationTypeCount] = {
    "Axial",         "Torsion",       "BendingY",      "BendingZ",     "Bending",      "ShearY",
    "ShearZ",        "Shear",         "ShearBendingY", "ShearBendingZ", "ShearBending", "AxialBendingY",
    "AxialBendingZ", "AxialBending",  "Reserved14",    "Reserved15",   "AxialShearBending"};

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

bool VerificationResults::verifyAllUtilizations() const
{
    for (UtilizationType type : {Axial, Torsion, Bending, Shear, AxialBending, ShearBending, AxialShearBending})
        if (!isFulfilled(type)) return false;
    return true;
}

} // namespace SteelDesign
