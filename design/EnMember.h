#pragma once

// The member checks of EN 1993-1-1 6.3 with every rule EN 1993-1-1's at once: flexural buckling (6.46)
// to (6.50) with the curves of Table 6.2, class 4 with Aeff (6.48); lateral-torsional buckling with Mcr
// of EnCriticalMoment.h (or the numerical one when asked for), chiLT of 6.3.2.2 or 6.3.2.3 with
// chiLT,mod <= 1 and <= 1 / lambdaLT^2, class 4 with Weff; (6.61) and (6.62) with the interaction
// factors of Annex B (Table B.2 for members free to twist, that is whose lateral-torsional buckling is
// checked; Table B.1 where the request says the member is restrained against twist), Cm of Table B.3,
// the moments' magnitudes, class 4 with Aeff, Weff and the moments N eN; tension with bending by
// lateral-torsional buckling under the moment alone (the tension's help ignored); bending about z alone
// or about y and z without compression by (6.61)/(6.62) with N = 0; shear buckling of EN 1993-1-5 5 with
// the flange contribution of 5.4.
//
// Units are the class interface's: m, kN, kNm, kN/m². Compression negative.

#include "EnCrossSection.h"
#include "MemberCheck.h"
#include "Trace.h"

#include <SteelDesign/Nullable.h>

#include <array>
#include <cstdint>
#include <vector>

namespace design {

struct EnMember {
    // memberCompression, memberBending, memberCompressionBending, memberShearBuckling: the slots of
    // DesignSummary::member. A slot is empty where its check does not apply to these actions (no
    // compression, no bending, ...) or EN 1993-1-1 gives no rule in our scope (a flag in limitations
    // says which). No utilization is negative.
    std::array<kat::Nullable<double>, 4> utilization{};
    std::uint32_t limitations = 0;  // Limitation flags (Verdict.h)
    int sectionClass = 0;           // the class the member checks used (of EnCrossSection)
    // Flexural buckling (0 where not computed).
    double NcrY = 0.0, NcrZ = 0.0, lambdaY = 0.0, lambdaZ = 0.0, chiY = 0.0, chiZ = 0.0, NbyRd = 0.0, NbzRd = 0.0;
    // Lateral-torsional buckling.
    double Mcr = 0.0, C1 = 0.0, lambdaLT = 0.0, chiLT = 0.0, chiLTmod = 0.0, MbRd = 0.0;
    bool rolledMethod = false;      // chiLT of 6.3.2.3
    // Interaction (Annex B).
    double Cmy = 0.0, Cmz = 0.0, CmLT = 0.0, kyy = 0.0, kyz = 0.0, kzy = 0.0, kzz = 0.0, eq661 = 0.0, eq662 = 0.0;
    // Shear buckling (EN 1993-1-5 5).
    double VbRd = 0.0;
    // Added beside the fields above: chiLT of My,Rd in (6.61) and (6.62) (1 where lateral-torsional
    // buckling is not checked or not possible; the curve's value otherwise, see EnMember.cpp), ny and nz
    // of the interaction (chiY and chiZ above are those of memberCompression, with 6.3.1.2(4)), whether
    // the interaction took Annex B Table B.2, whether 6.3.2.2(4) let lateral-torsional buckling be
    // ignored in memberBending (Mb,Rd = Mc,y,Rd), and the two parts of Vb,Rd (governing web direction).
    double chiLTinteraction = 0.0;
    double ny = 0.0, nz = 0.0;  // NEd / (chi NRk / gammaM1) of (6.61), (6.62), chi of the curve (6.49)
    bool tableB2 = false;
    bool ltbNegligible = false;
    double VbwRd = 0.0, VbfRd = 0.0;
    // Torsional and torsional-flexural buckling (6.3.1.4) of open sections: I (doubly symmetric: torsional
    // only; unequal flanges), Z (torsional only), tees, channels (U, WU, C), angles; 0 where not computed.
    // Ncr,T about the shear centre over the length lT (L_LT when given, else L_cr,z; fork conditions at the
    // ends), Ncr,TF coupled with flexure about the axis of symmetry (u for an equal angle; 0 for a doubly
    // or point-symmetric section) or, for an unequal angle, the lowest root of the cubic with flexure about
    // u and v, lambdaT of (6.52)/(6.53) with Ncr = min(Ncr,T, Ncr,TF), chiT (1 where 6.3.1.2(4) lets
    // buckling be ignored), Nb,T,Rd; y0 the distance of the shear centre from the centroid, u0 and v0 its
    // coordinates in the principal axes of an angle.
    double NcrT = 0.0, NcrTF = 0.0, lambdaT = 0.0, chiT = 0.0, NbTRd = 0.0;
    double lT = 0.0, y0 = 0.0, u0 = 0.0, v0 = 0.0;
};

// The EN 1993-1-1 member checks of the request. cross is the EN cross-section check of the same section
// and steel under the member's forces (its class, fy, effective properties and resistances).
// numericalMcr: the critical moment of the finite-element analysis when the request asks for it (0:
// none, EnCriticalMoment is used). With trace, its steps are appended; nothing is allocated without it.
void evaluateEnMember(const MemberRequest& request, const EnCrossSection& cross, double numericalMcr, EnMember& out,
                      std::vector<TraceLine>* trace = nullptr);

} // namespace design
