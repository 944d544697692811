/*
 * steeldesign_flat.h - the flat calculation interface of the steeldesign library.
 *
 * Two plain functions with the C calling convention, exported unmangled from libsteeldesign.so, for host
 * programs that hand over plain numbers and arrays instead of using the class interface. The flat path is
 * self-contained: it uses neither the classes of namespace SteelDesign nor the host libraries.
 *
 * Units of the flat interface (fixed):
 *   forces kN, moments kNm, bimoment kNm^2, member lengths m,
 *   section dimensions and point coordinates mm (y to the side, z downwards, origin at the centroid),
 *   section values (sectionValues) in cm: A, Av cm^2, Iy Iz It cm^4, W cm^3, Iw cm^6, zM cm,
 *   E, G, fy, fu and all stresses N/mm^2 (= MN/m^2),
 *   design resistances written to results[68..70] in MN and MNm, all other resistances in kN and kNm.
 * Internally the member routines work in metres (A m^2, I m^4, W m^3, Iw m^6) with E and fy in MN/m^2, so
 * that W fy is in MNm, Npl,d = A fy / gammaM1 in MN and Ncr = 1000 pi^2 E I / L^2 in kN.
 *
 * The meaning of every array index is listed in docs/flat-interface.md; the sizes below are the number of
 * entries the library may read or write, so a caller that allocates exactly these sizes is safe.
 *
 * Plain C (C99); compiles with a C and with a C++ compiler.
 */
#ifndef STEELDESIGN_FLAT_H
#define STEELDESIGN_FLAT_H

#include <stdint.h>

#if defined(__GNUC__) || defined(__clang__)
#define STEELDESIGN_FLAT_API __attribute__((visibility("default")))
#else
#define STEELDESIGN_FLAT_API
#endif

/* Array sizes of CALL_STEEL_DESIGN. */
#define STEELDESIGN_FLAT_SECTION_DIMS_SIZE 20
#define STEELDESIGN_FLAT_SECTION_VALUES_SIZE 30
#define STEELDESIGN_FLAT_CONTROL_SIZE 18
/* values: 30 fixed entries followed by four per material segment (segment count = control[10], 1..3). */
#define STEELDESIGN_FLAT_VALUES_SIZE(segments) (30 + 4 * (segments))
#define STEELDESIGN_FLAT_STATUS_SIZE 21
/* results: 100 fixed entries followed by nine per load point (load point count = status[3]). */
#define STEELDESIGN_FLAT_RESULTS_SIZE(loadPoints) (100 + 9 * (loadPoints))

/* Stage codes left in status[0]. */
#define STEELDESIGN_FLAT_STAGE_DONE 0           /* every validation passed */
#define STEELDESIGN_FLAT_STAGE_REQUEST 1        /* nothing requested in control[0] */
#define STEELDESIGN_FLAT_STAGE_SEGMENTS 2       /* segment count, segment data or gammaM0 invalid */
#define STEELDESIGN_FLAT_STAGE_SECTION 4        /* section kind or section data invalid */
#define STEELDESIGN_FLAT_STAGE_SECTION_CLASS4 16 /* run completed, but the section is of class 4 */
#define STEELDESIGN_FLAT_STAGE_LTB_DATA 64      /* data of the lateral-torsional buckling request invalid */
#define STEELDESIGN_FLAT_STAGE_BUCKLING_DATA 128 /* data of the compression-member request invalid */

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Flat member design to EN 1993-1-1: cross-section check (6.2), lateral-torsional buckling (6.3.2) and
 * compression-member check (6.3.1, 6.3.3).
 *
 * N, My, Mz        design axial force (compression negative) and bending moments
 * load3, load5     shear forces Vz and Vy
 * load6            St. Venant torsional moment Mt
 * load7, load8     warping torsional moment Mw and bimoment B (admitted for section kinds 1, 2, 3, 10 only)
 * sectionDims      20 section dimensions, sectionValues 30 section properties (read only)
 * control          18 integer switches (read only), values 30 + 4 * control[10] doubles (read only)
 * status           21 integers: status[3] is read, the others are written
 * results          100 + 9 * status[3] doubles: some entries are read as caller-given values, all results
 *                  are written here
 *
 * Returns 1 when every requested stage ran, 0 when a validation stage failed; status[0] then holds the
 * code of the failed stage.
 */
STEELDESIGN_FLAT_API int32_t CALL_STEEL_DESIGN(double N, double My, double load3, double Mz, double load5,
                                               double load6, double load7, double load8, const double* sectionDims,
                                               const double* sectionValues, const int32_t* control, const double* values,
                                               int32_t* status, double* results);

/*
 * Moment coefficient zeta of the elastic critical moment for lateral-torsional buckling of a single span,
 * from the end moments M1, M2, the mid-span moment Mm and the share of the span moment that comes from a
 * distributed load (0: concentrated load at mid-span, 1: uniformly distributed load).
 *
 * *formulaFlag (set it to 1 before the call) is 1 on return when zeta belongs to the end-moment formula
 * Mcr = zeta * Ncr,z * (sqrt(c^2 + 0.25 zp^2) + 0.5 zp), 0 when it was taken from the span-load table and
 * belongs to the span-moment formula; it is left unchanged when all moments are negligible or the span-load
 * case has no table value (zeta is then 1.0).
 */
STEELDESIGN_FLAT_API double momentenbeiwert_drill_zeta(double M1, double Mm, double M2, double spanLoadShare,
                                                       uint16_t* formulaFlag);

#ifdef __cplusplus
}
#endif

#endif /* STEELDESIGN_FLAT_H */
