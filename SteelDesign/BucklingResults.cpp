#include "BucklingResults.h"

#include <KaMath.h>

namespace SteelDesign {

BucklingResults::BucklingResults() { reset(); }

void BucklingResults::reset()
{
    *this = BucklingResults(ResetTag{});
}

bool BucklingResults::isVerified(double utilization) const
{
    return KaMath::isFuzzySmallerEqual(utilization, 1.0, KaMath::getEpsReal());
}

bool BucklingResults::isFulfilled(UtilizationType type) const
{
    const kat::Nullable<double> u = getUtilization(type);
    return u.hasValue() && isVerified(u.value());
}

bool BucklingResults::verifyAllUtilizations() const
{
    for (std::size_t i = 0; i < utilizationTypeCount; ++i)
        if (!isFulfilled(static_cast<UtilizationType>(i))) return false;
    return true;
}

const char* toString(BucklingResults::UtilizationType type)
{
    using U = BucklingResults::UtilizationType;
    switch (type) {
    case U::CompressionAxisY: return "CompressionAxisY";
    case U::CompressionAxisZ: return "CompressionAxisZ";
    case U::Compression: return "Compression";
    case U::BendingAxisY: return "BendingAxisY";
    case U::BendingAxisZ: return "BendingAxisZ";
    case U::Bending: return "Bending";
    case U::CompressionBendingAxisY: return "CompressionBendingAxisY";
    case U::CompressionBendingAxisZ: return "CompressionBendingAxisZ";
    case U::CompressionBending: return "CompressionBending";
    }
    return "";
}

const char* toString(BucklingResults::SectionParts part)
{
    using P = BucklingResults::SectionParts;
    switch (part) {
    case P::Web: return "Web";
    case P::Flange: return "Flange";
    case P::Total: return "Total";
    }
    return "";
}

const char* toString(BucklingResults::InteractionFactorkxx factor)
{
    using K = BucklingResults::InteractionFactorkxx;
    switch (factor) {
    case K::kyy: return "kyy";
    case K::kzz: return "kzz";
    case K::kyz: return "kyz";
    case K::kzy: return "kzy";
    }
    return "";
}

} // namespace SteelDesign
