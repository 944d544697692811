#include "InteractionFactors.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace design {

namespace {

double ratio(double M, double MRd, bool signedMoment)
{
    const double m = signedMoment ? M : std::fabs(M);
    if (m == 0.0) return 0.0;
    if (MRd == 0.0) return std::copysign(std::numeric_limits<double>::infinity(), m);
    return m / MRd;
}

} // namespace

InteractionResult interaction(const InteractionInput& in)
{
    InteractionResult r;
    const double ny = in.ny, nz = in.nz, ly = in.lambdaY, lz = in.lambdaZ;
    if (in.plastic) {
        r.kyy = std::min(in.Cmy * (1.0 + (ly - 0.2) * ny), in.Cmy * (1.0 + 0.8 * ny));
        const double Ckzz = in.kzzWithCmy ? in.Cmy : in.Cmz;
        r.kzz = in.iSection ? std::min(Ckzz * (1.0 + (2.0 * lz - 0.6) * nz), Ckzz * (1.0 + 1.4 * nz))
                            : std::min(in.Cmz * (1.0 + (lz - 0.2) * nz), in.Cmz * (1.0 + 0.8 * nz));
        r.kyz = 0.6 * r.kzz;
    } else {
        r.kyy = std::min(in.Cmy * (1.0 + 0.6 * ly * ny), in.Cmy * (1.0 + 0.6 * ny));
        r.kzz = std::min(in.Cmz * (1.0 + 0.6 * lz * nz), in.Cmz * (1.0 + 0.6 * nz));
        r.kyz = r.kzz;
    }
    if (in.torsionallyDeformable) {
        const double d = in.CmLT - 0.25;
        if (in.plastic) {
            r.kzy = lz < 0.4 ? std::min(0.6 + lz, 1.0 - 0.1 * lz * nz / d)
                             : std::max(1.0 - 0.1 * lz * nz / d, 1.0 - 0.1 * nz / d);
        } else {
            r.kzy = std::max(1.0 - 0.05 * lz * nz / d, 1.0 - 0.05 * nz / d);
        }
    } else if (in.iSection && in.kzyZeroWithoutMz && in.Mz == 0.0) {
        r.kzy = 0.0;
    } else {
        r.kzy = (in.plastic ? 0.6 : 0.8) * r.kyy;
    }
    const double my61 = ratio(in.My, in.MyRd61, in.signedMoments);
    // The library's (6.62) reads |My| / Mb,Rd, the lateral-torsional utilization: by magnitude in both.
    const double my62 = ratio(in.My, in.MyRd62, false);
    const double mz = ratio(in.Mz, in.MzRd, in.signedMoments);
    r.eq661 = ny + r.kyy * my61 + r.kyz * mz;
    r.eq662 = nz + r.kzy * my62 + r.kzz * mz;
    return r;
}

} // namespace design
