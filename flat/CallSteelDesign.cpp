// CALL_STEEL_DESIGN: the flat entry. Validates the caller's arrays stage by stage (the stage code stays in
// status[0] when a check fails), runs the cross-section stage, the lateral-torsional buckling stage and the
// compression-member check on its own zero-filled blocks, and writes the results into the caller's arrays.
// Array sizes and the meaning of each index: steeldesign_flat.h and docs/flat-interface.md.

#include "FlatInternal.h"

#include <algorithm>
#include <cmath>

namespace SteelDesign::Flat {
namespace {

// A 16-bit switch: the low half of the 32-bit entry, signed.
int low16(std::int32_t v) { return static_cast<std::int16_t>(static_cast<std::uint16_t>(v & 0xFFFF)); }

bool positive(double v) { return v > 0.0001; }

// Equivalent moment factor beta_M of the moment diagram (M1, Mm, M2) for design mode 1: 1.8 - 0.7 psi for
// end moments, 1.4 (point load) .. 1.3 (uniform load) for a span load, mixed in the ratio of the span
// moment to the moment range.
double defaultBetaM(double M1, double Mm, double M2, double share)
{
    double psi = std::fabs(M2) > std::fabs(M1) ? M1 / M2 : (std::fabs(M1) > 0.0 ? M2 / M1 : 1.0);
    psi = std::clamp(psi, -1.0, 1.0);
    const double betaPsi = 1.8 - 0.7 * psi;
    const double M0 = Mm - (M1 + M2) / 2;
    if (std::fabs(M0) < 0.001) return betaPsi;
    const double betaQ = 1.4 - 0.1 * std::clamp(share, 0.0, 1.0);
    if (std::fabs(M1) < 0.001 && std::fabs(M2) < 0.001) return betaQ;
    const double hi = std::max({M1, Mm, M2}), lo = std::min({M1, Mm, M2});
    const double range = hi * lo < 0.0 ? hi - lo : std::max(std::fabs(hi), std::fabs(lo));
    return betaPsi + std::min(std::fabs(M0) / range, 1.0) * (betaQ - betaPsi);
}

bool sectionKindAdmitted(const SectionBlock& s)
{
    const double* d = s.dims;
    const double* v = s.props;
    switch (s.kind) {
    case 1:
    case 2:
    case 3: return positive(v[11]);
    case 8: return positive(d[13]) && positive(d[14]) && positive(v[11]) && positive(v[19]);
    case 9: return positive(d[14]) && positive(v[11]);
    case 10: return positive(d[13]) && positive(v[11]);
    case 11: return positive(v[19]);
    case 15:
    case 16:
    case 20:
    case 21: return true;
    default: return false;
    }
}

void fillMemberBlock(MemberBlock& m, const ControlBlock& cb, const SectionBlock& sb, const SetupBlock& s,
                     const Actions& act, const std::int32_t* control, const double* values)
{
    m.act = act;
    m.kind = sb.kind;
    m.mode = cb.mode;
    m.manufacturing = sb.manufacturing;
    m.highStrength = cb.highStrength;
    m.E = cb.E;
    m.G = cb.G;
    m.gammaM1 = cb.gammaM1;
    m.fy = s.fy;
    m.A = s.A;
    m.Iy = s.Iy;
    m.Iz = s.Iz;
    m.It = s.It;
    m.Iw = s.Iw;
    m.Wely = s.Wely;
    m.Wply = s.Wply;
    m.Welz = s.Welz;
    m.Wplz = s.Wplz;
    m.h = sb.dims[0];
    m.b = sb.dims[1];
    m.t = s.tGov;
    m.tf = std::max(s.tf1, s.tf2);
    m.zM = s.zM;
    m.L = values[10];
    m.LT = values[24] > 0.001 ? values[24] : values[10];
    m.cTheta = values[13];
    m.loadPosition = low16(control[2]);
    m.zetaGiven = values[14];
    m.kcGiven = values[15];
    m.McrGiven = values[16];
    m.M1 = values[17];
    m.Mm = values[18];
    m.M2 = values[19];
    m.spanLoadShare = values[20];
    if (std::fabs(m.M1) < 0.001 && std::fabs(m.Mm) < 0.001 && std::fabs(m.M2) < 0.001) {
        // no diagram given: constant moment My, the least favourable diagram
        m.M1 = m.Mm = m.M2 = act.My;
        m.spanLoadShare = 0.0;
    }
    m.classComputed = s.cs.classified;
    m.sectionClass = s.cs.sectionClass;
    m.nSystem = values[21] > 0.0001 ? values[21] : (isRolledKind(sb.kind) ? 2.5 : 2.0);
    m.betaMy = values[22] > 0.0001 ? values[22] : defaultBetaM(m.M1, m.Mm, m.M2, m.spanLoadShare);
    m.betaMz = values[23] > 0.0001 ? values[23] : 1.1;
}

} // namespace
} // namespace SteelDesign::Flat

extern "C" STEELDESIGN_FLAT_API int32_t CALL_STEEL_DESIGN(double N, double My, double load3, double Mz, double load5,
                                                          double load6, double load7, double load8,
                                                          const double* sectionDims, const double* sectionValues,
                                                          const int32_t* control, const double* values,
                                                          int32_t* status, double* results)
{
    using namespace SteelDesign::Flat;

    // 1. requests
    status[0] = STEELDESIGN_FLAT_STAGE_REQUEST;
    const std::int32_t request = control[0];
    const bool wantSection = (request & 1) != 0, wantLtb = (request & 2) != 0, wantCompression = (request & 4) != 0;
    if (!wantSection && !wantLtb && !wantCompression) return 0;

    // 2. control block and material segments
    status[0] = 8;
    status[0] = STEELDESIGN_FLAT_STAGE_SEGMENTS;
    ControlBlock cb;
    clearControlBlock(cb);
    const std::int32_t segments = control[10];
    if (segments < 1 || segments > kMaxSegments) return 0;
    cb.segmentCount = segments;
    cb.mode = control[1];
    cb.highStrength = low16(control[9]);
    cb.elasticOnly = low16(control[17]);
    for (int j = 0; j < segments; ++j) {
        for (int k = 0; k < 4; ++k) cb.segments[j][k] = values[30 + 4 * j + k];
        if (!(cb.segments[j][0] > -0.0001)) return 0;
        for (int k = 1; k < 4; ++k)
            if (!positive(cb.segments[j][k])) return 0;
    }

    // 3. elastic constants and partial factors
    cb.E = values[0];
    cb.G = values[1];
    cb.gammaM0 = values[5];
    cb.gammaM1 = positive(values[6]) ? values[6] : values[5];
    if (!positive(values[5])) return 0;

    // 4. section block
    status[0] = STEELDESIGN_FLAT_STAGE_SECTION;
    SectionBlock sb;
    clearSectionBlock(sb);
    sb.kind = low16(control[5]);
    sb.manufacturing = low16(control[7]);
    if (sb.kind < 1) return 0;
    std::copy(sectionDims, sectionDims + STEELDESIGN_FLAT_SECTION_DIMS_SIZE, sb.dims);
    std::copy(sectionValues, sectionValues + STEELDESIGN_FLAT_SECTION_VALUES_SIZE, sb.props);
    for (int i : {0, 1, 2, 7})
        if (!positive(sb.dims[i])) return 0;
    if (sb.kind != 15 && sb.kind != 16 && !positive(sb.dims[3])) return 0;
    for (int i : {1, 2, 6, 7})
        if (!positive(sb.props[i])) return 0;

    // 5. admissible section kinds
    if (!sectionKindAdmitted(sb)) return 0;
    if ((std::fabs(load7) > 0.001 || std::fabs(load8) > 0.001) && !isWarpingKind(sb.kind)) return 0;

    // 6. data of the member checks
    if (wantLtb) {
        status[0] = STEELDESIGN_FLAT_STAGE_LTB_DATA;
        if (!positive(values[0]) || !positive(values[1]) || !(values[10] > 0.001)) return 0;
    }
    if (wantCompression) {
        status[0] = STEELDESIGN_FLAT_STAGE_BUCKLING_DATA;
        if (!positive(values[0]) || !positive(values[1])) return 0;
        if (!(values[11] > 0.001) && !(values[12] > 0.001)) return 0;
        if (cb.mode != 1) {
            cb.axisYLoaded = std::fabs(My) > 0.001;
            cb.axisZLoaded = std::fabs(Mz) > 0.001;
        }
    }
    cb.loadPosition = low16(control[2]);

    // 7. set-up
    status[0] = STEELDESIGN_FLAT_STAGE_DONE;
    SetupBlock setup;
    setUpSection(cb, sb, setup);
    setup.shearOff = low16(control[16]);
    setup.sectionPointsOff = low16(control[11]);
    const int loadCount = std::max<std::int32_t>(status[3], 0);
    StressPointBlock spb;
    clearStressPointBlock(spb);
    const int pointCount = setUpStressPoints(setup, sb.kind, loadCount, spb);
    status[4] = pointCount;
    MemberBlock mb;
    clearMemberBlock(mb);

    const Actions act{N, My, Mz, load3, load5, load6, load7, load8};
    const int kind = sb.kind;
    auto pointAt = [&](int i) -> StressPoint {
        if (i < spb.sectionCount) return spb.points[i];
        const double* rec = results + kLoadPointBase + kLoadPointStride * (i - spb.sectionCount);
        return locatePoint(setup, kind, rec[0], rec[1]);
    };

    // 8. elastic path: point stresses, stress evaluation, classification
    CrossSectionState& cs = setup.cs;
    if (cb.mode == 1) {
        for (int i = 0; i < pointCount; ++i) {
            const double sigma = pointStress(setup, pointAt(i), act);
            if (i < spb.sectionCount)
                spb.points[i].sigma = sigma;
            else
                results[kLoadPointBase + kLoadPointStride * (i - spb.sectionCount) + 2] = sigma;
        }
        spb.limit[0] = kLimitStart;
        spb.limit[1] = kLimitStart;
        evaluateStresses(setup, spb, act, 0);
        evaluateStresses(setup, spb, act, 1);
        const bool computed = checkCrossSection(setup, cb, kind, act);
        if (computed && cs.sectionClass > 3) status[0] = STEELDESIGN_FLAT_STAGE_SECTION_CLASS4;
    }
    status[10] = cs.classified ? cs.sectionClass : 0;
    status[11] = cs.classified ? cs.webClass : 0;
    status[12] = cs.classified ? cs.flangeClass : 0;

    // 9. cross-section routine by kind at every stress point
    status[5] = 0;
    status[6] = 0;
    for (int i = 0; i < 4; ++i) results[i] = 0.0;
    computeResistances(setup, cb, kind, act);
    double governing = -1.0, sigmaMax = -kLimitStart, sigmaMin = kLimitStart, tauMax = 0.0;
    for (int i = 0; i < pointCount; ++i) {
        StressPoint p = pointAt(i);
        double local[kLoadPointStride] = {};
        double* out = local;
        if (i >= spb.sectionCount) {
            out = results + kLoadPointBase + kLoadPointStride * (i - spb.sectionCount);
            if (cb.mode == 1) p.sigma = out[2];
        } else {
            p.sigma = spb.points[i].sigma;
        }
        if (cb.mode == 1) {
            crossSectionByKindElastic(setup, kind, p, act, out);
            cs.sigmaVMax = std::max(cs.sigmaVMax, out[5]);
        } else {
            p.sigma = pointStress(setup, p, act);
            crossSectionByKindAlternative(setup, kind, p, act, out);
            cs.sigmaVMax = std::max(cs.sigmaVMax, std::fabs(p.sigma));
        }
        const double u = out[8];
        if (u > 1.0 + 1e-6) ++status[5];
        if (u > governing) {
            governing = u;
            status[6] = i;
        }
        sigmaMax = std::max(sigmaMax, p.sigma);
        sigmaMin = std::min(sigmaMin, p.sigma);
        tauMax = std::max(tauMax, out[3] + out[4]);
    }
    if (pointCount > 0) {
        results[0] = governing;
        results[1] = sigmaMax;
        results[2] = sigmaMin;
        results[3] = tauMax;
    }
    results[4] = setup.fy;
    results[5] = setup.fyd;
    results[6] = setup.eps;
    if (cb.mode == 1) {
        results[7] = spb.limit[0];
        results[8] = spb.limit[1];
        results[9] = cs.psiWeb;
        results[10] = cs.alphaWeb;
        results[11] = cs.ctWeb;
        results[12] = cs.ctFlange;
    }
    results[13] = cs.uN;
    results[14] = cs.uMy;
    results[15] = cs.uMz;
    results[16] = cs.uVz;
    results[17] = cs.uVy;
    results[18] = cs.rhoZ;
    results[19] = cs.uNM;
    results[21] = std::max({cs.uN, cs.uMy, cs.uMz, cs.uVz, cs.uVy, cs.uNM, results[0]});
    results[22] = cs.rhoY;
    results[23] = cs.classUsed;
    results[27] = setup.Avz;
    results[28] = setup.Avy;
    results[29] = setup.zM;
    const double resistances[10] = {cs.NplRd, cs.MyRd,  cs.MzRd,  cs.VzRd,       cs.VyRd,
                                    cs.MNyRd, cs.MNzRd, cs.MyVRd, cs.sigmaVMax, setup.fyd};
    for (int i = 0; i < 10; ++i) results[90 + i] = resistances[i] * 1000.0;

    fillMemberBlock(mb, cb, sb, setup, act, control, values);

    // 10. lateral-torsional buckling
    if (wantLtb) {
        if (cb.mode == 1) {
            mb.NpldGiven = results[68];
            mb.MplydGiven = results[69];
            mb.MplzdGiven = results[70];
        } else {
            mb.MbRdGiven = results[80];
            mb.chiLTmodGiven = results[36];
        }
        flatLateralTorsionalBuckling(mb);
        results[30] = mb.utilisation;
        results[32] = mb.NcrZ;
        results[33] = mb.Mcr;
        results[37] = mb.zeta;
        if (cb.mode == 1) {
            results[31] = mb.kappaM;
            results[34] = mb.ky;
            results[35] = mb.kz;
            results[65] = mb.lambdaM;
            results[66] = mb.lambdaK;
            results[67] = mb.kappa;
            results[68] = mb.Npld;
            results[69] = mb.Mplyd;
            results[70] = mb.Mplzd;
            results[71] = mb.c;
            results[72] = mb.zp;
            results[73] = mb.nSystem;
            results[74] = mb.betaMy;
            results[75] = mb.betaMz;
            results[76] = mb.ay;
            results[77] = mb.az;
        } else {
            results[31] = mb.chiLT;
            results[36] = mb.chiLTmod;
            results[78] = mb.kc;
            results[79] = mb.f;
            results[80] = mb.MbRd;
            results[81] = mb.beta;
            results[82] = mb.lambdaLT;
            results[83] = mb.lambdaLT0;
            results[84] = mb.alphaLT;
            results[85] = mb.Phi;
            results[86] = mb.c;
            results[87] = mb.zp;
            status[7] = mb.ignoreCode;
        }
        status[9] = curveCode(mb.curve);
    }

    // 11. compression-member check
    if (wantCompression) {
        CompressionInput in;
        in.Lcry = values[11] * 1000.0;
        in.Lcrz = values[12] * 1000.0;
        in.momentY = cb.axisYLoaded;
        in.momentZ = cb.axisZLoaded;
        if (cb.mode == 1) {
            in.NcryGiven = results[57];
            in.NcrzGiven = results[58];
            in.NpldGiven = results[59];
        } else {
            in.NbRdGiven = results[56];
            in.NcryGiven = results[57];
            in.NcrzGiven = results[58];
            in.CmyGiven = results[25];
            in.CmzGiven = results[26];
        }
        const double chiLT = mb.ltbDone ? (cb.mode == 1 ? mb.kappaM : mb.chiLTmod) : 1.0;
        CompressionResult r;
        compressionMemberCheck(mb, in, chiLT, r);
        status[20] = static_cast<std::uint16_t>(r.code);
        results[20] = r.utilisation;
        if (!(r.code & kTensionSkipped)) {
            const double out[18] = {r.lambdaY, r.lambdaZ, r.chiY,  r.chiZ,  r.NcrY, r.NcrZ,
                                    r.NbyRd,   r.NbzRd,   r.alphaY, r.alphaZ, r.PhiY, r.PhiZ,
                                    r.kyy,     r.kzz,     r.uY,    r.uZ,    r.u661, r.u662};
            for (int i = 0; i < 18; ++i) results[38 + i] = out[i];
            results[57] = r.NcrY;
            results[58] = r.NcrZ;
            if (cb.mode == 1) {
                results[59] = r.NRk / mb.gammaM1;
            } else {
                results[56] = r.NbRd;
                results[25] = r.Cmy;
                results[26] = r.Cmz;
            }
        }
    }
    return 1;
}
